// SPDX-License-Identifier: MIT
#include "materialx/identity.h"
#include "tests/materialx/documents.h"
#include "tests/support/testmain.h"

#include <set>

using materialx::Error;
using materialx::Library;
using materialx::ReadLibrary;

namespace
{

/// Reads and describes; a fault is a line of its own, which no expectation equals.
QStringList ReadLines(const QString& in_path)
{
    Library library;
    const std::optional<Error> error = ReadLibrary(in_path, library);
    return error ? QStringList(error->GetText()) : Describe(library);
}

QStringList Lines(std::initializer_list<const char*> in_lines)
{
    QStringList lines;
    for (const char* line : in_lines)
        lines.append(QString::fromUtf8(line));
    return lines;
}

QByteArray Document(const QByteArray& in_content)
{
    return "<materialx version=\"1.39\">" + in_content + "</materialx>";
}

} // namespace

/// What becomes of the declarations of well-formed documents.
class ReadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRuleOfTheLibraryFolder();
    void everyItemOfAWholeLibrary();
    void sourcesAreTheTopFoldersAndTheOpenedOne();
    void singleFileIsASourceOfItsOwn();
    void openedFolderMayBeCalledInAnyWay_data();
    void openedFolderMayBeCalledInAnyWay();
    void relativePathsAreOpened();
    void documentsComeInPathOrder();
    void rootAndTopFolderOfOneNameAreTwoSources();
    void tagsAreDistinctAndInOrder();
    void sameDeclarationTwiceIsTwoItems();
    void formsOfXml_data();
    void formsOfXml();
    void linksThatLeadOutsideAreNotFollowed();
    void includesAreNotFollowed();
    void identitiesFollowKindAndName();
    void earlierLibraryIsReplaced();
};

void ReadingTest::everyRuleOfTheLibraryFolder()
{
    const QStringList lines = ReadLines(QStringLiteral(TEST_DATA_FOLDER "/library"));
    const QStringList expected = Lines({
        "type float [] @alpha",
        "type color3 [color] @alpha",
        "type ramp [] @library",
        "type Größe 長さ [Maß] @stdlib",
        "constant meter [distance] @alpha",
        "constant furlong [distance] @alpha",
        "constant step [] @alpha",
        "polymorphic blend [math;compositing;ramps;alpha] @alpha",
        "solver ND_blend_float [math;alpha] @alpha of blend",
        "compound ND_blend_color3 [compositing;alpha] @alpha of blend",
        "signature ND_blend_ramp [ramps] @library of blend",
        "solver noise [procedural;alpha] @alpha",
        "compound tint [colour;alpha] @alpha",
        "compound wood [procedural;alpha] @alpha",
        "compound both [alpha] @alpha",
        "signature lamp [alpha] @alpha",
        "signature nameless [alpha] @alpha",
        "polymorphic twice [alpha] @alpha",
        "signature ND_twice [alpha] @alpha of twice",
        "solver ripple [] @library",
        "polymorphic shade [shader;stdlib] @stdlib",
        "signature ND_shade_a [shader;stdlib] @stdlib of shade",
        "signature ND_shade_b [shader;stdlib] @stdlib of shade",
        "compound free [beta] @beta",
        "compound lamp [] @library",
        "polymorphic mixed [beta] @beta in NG_tint",
        "solver grain [beta] @beta in NG_tint",
        "signature painted [beta] @beta in NG_tint",
        "compound tinted [beta] @beta in NG_not_here",
        "compound oak [beta] @beta in free",
    });
    QCOMPARE(lines.join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

/// Documents as a library has them, in four sources; which rule each line follows is said in the documents.
void ReadingTest::everyItemOfAWholeLibrary()
{
    const QStringList lines = ReadLines(QStringLiteral(TEST_DATA_FOLDER "/observatory"));
    const QStringList expected = Lines({
        "type photon [] @observatory",
        "type starlight [light] @sky",
        "type float [] @stdlib",
        "type color3 [color] @stdlib",
        "type surfaceshader [shader] @stdlib",
        "constant parsec [distance] @sky",
        "constant degree [angle] @sky",
        "constant radian [angle] @sky",
        "compound lens [optics;glass] @glass",
        "polymorphic mix [compositing;colour;stdlib] @observatory",
        "signature ND_mix_starlight [compositing] @observatory of mix",
        "solver ND_mix_float [compositing;stdlib] @stdlib of mix",
        "solver ND_mix_color3 [colour;stdlib] @stdlib of mix",
        "polymorphic add [astronomy;math;sky;stdlib] @sky",
        "compound ND_add_starlight [astronomy;sky] @sky of add",
        "solver ND_add_float [math;stdlib] @stdlib of add",
        "compound night_sky [astronomy;sky] @sky",
        "solver twinkle [astronomy;sky] @sky",
        "signature aurora [sky] @sky",
        "solver noise2d [procedural2d;stdlib] @stdlib",
        "compound checkerboard [procedural2d;stdlib] @stdlib",
        "signature surface_unlit [shader;stdlib] @stdlib",
        "compound kaleidoscope [glass] @glass",
        "compound milky_way [sky] @sky",
        "polymorphic halo [glass] @glass in NG_lens",
        "compound mirrors [glass] @glass in kaleidoscope",
        "compound eyepiece [glass] @glass in kaleidoscope",
        "polymorphic sum [sky] @sky in NG_add_starlight",
        "solver stars [sky] @sky in NG_night_sky",
        "signature curtain [sky] @sky in NG_night_sky",
        "compound backdrop_sky [sky] @sky in milky_way",
        "solver flicker [sky] @sky in milky_way",
        "signature haze [sky] @sky in milky_way",
        "signature board [stdlib] @stdlib in NG_checkerboard",
    });
    QCOMPARE(lines.join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

void ReadingTest::sourcesAreTheTopFoldersAndTheOpenedOne()
{
    Library library;
    QVERIFY(!ReadLibrary(QStringLiteral(TEST_DATA_FOLDER "/library"), library));
    QStringList sources;
    for (const materialx::Source& source : library.m_sources)
        sources.append(source.m_name + QLatin1Char(' ') + QDir::fromNativeSeparators(source.m_location));
    const QString folder = QStringLiteral(TEST_DATA_FOLDER "/library");
    QCOMPARE(sources, QStringList() << QStringLiteral("alpha ") + folder + QStringLiteral("/alpha")
                                    << QStringLiteral("beta ") + folder + QStringLiteral("/beta")
                                    << QStringLiteral("library ") + folder
                                    << QStringLiteral("stdlib ") + folder + QStringLiteral("/stdlib"));
}

void ReadingTest::singleFileIsASourceOfItsOwn()
{
    const DocumentFolder folder;
    const QString path =
        folder.Write(QStringLiteral("sub/my.nodes.xml"), Document("<nodedef name='ND_a' node='a' nodegroup='math'/>"));
    QCOMPARE(ReadLines(path), Lines({"signature a [math] @my.nodes"}));
}

void ReadingTest::openedFolderMayBeCalledInAnyWay_data()
{
    QTest::addColumn<QString>("ending");
    QTest::newRow("plain") << QString();
    QTest::newRow("slash") << QStringLiteral("/");
    QTest::newRow("dot") << QStringLiteral("/.");
    QTest::newRow("detour") << QStringLiteral("/top/..");
}

void ReadingTest::openedFolderMayBeCalledInAnyWay()
{
    QFETCH(QString, ending);
    const DocumentFolder folder;
    folder.Write(QStringLiteral("opened/a.mtlx"), Document("<nodedef name='ND_a' node='a'/>"));
    folder.Write(QStringLiteral("opened/top/below/b.mtlx"), Document("<nodedef name='ND_b' node='b'/>"));
    QCOMPARE(ReadLines(folder.GetPath(QStringLiteral("opened")) + ending),
             Lines({"signature a [] @opened", "signature b [top] @top"}));
}

void ReadingTest::relativePathsAreOpened()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("opened/a.mtlx"), Document("<nodedef name='ND_a' node='a'/>"));
    folder.Write(QStringLiteral("opened/top/b.mtlx"), Document("<nodedef name='ND_b' node='b'/>"));
    const QStringList expected = Lines({"signature a [] @opened", "signature b [top] @top"});
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.GetPath()));
    const QStringList below = ReadLines(QStringLiteral("opened"));
    QVERIFY(QDir::setCurrent(folder.GetPath(QStringLiteral("opened/top"))));
    const QStringList above = ReadLines(QStringLiteral(".."));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(below, expected);
    QCOMPARE(above, expected);
}

void ReadingTest::documentsComeInPathOrder()
{
    const DocumentFolder folder;
    const char* const names[] = {"b.mtlx", "a/z.mtlx", "Z.mtlx", "a.mtlx", "a/b/c.mtlx", "c.mtlx/d.mtlx", "ä.mtlx"};
    for (const char* name : names)
        folder.Write(QString::fromUtf8(name), Document(QByteArray("<typedef name='") + name + "'/>"));
    Library library;
    QVERIFY(!ReadLibrary(folder.GetPath(), library));
    QStringList read;
    for (const materialx::Item& item : MakeItems(library))
        read.append(QString::fromStdString(item.m_name));
    QCOMPARE(read, Lines({"Z.mtlx", "a.mtlx", "a/b/c.mtlx", "a/z.mtlx", "b.mtlx", "c.mtlx/d.mtlx", "ä.mtlx"}));
}

void ReadingTest::rootAndTopFolderOfOneNameAreTwoSources()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("same/same/a.mtlx"), Document("<nodedef name='ND_a' node='a'/>"));
    folder.Write(QStringLiteral("same/b.mtlx"), Document("<nodedef name='ND_b' node='b'/>"));
    Library library;
    QVERIFY(!ReadLibrary(folder.GetPath(QStringLiteral("same")), library));
    QCOMPARE(Describe(library), Lines({"signature b [] @same", "signature a [same] @same"}));
    QCOMPARE(library.m_sources.size(), std::size_t(2));
    QVERIFY(library.m_sources[0].m_location != library.m_sources[1].m_location);
}

void ReadingTest::tagsAreDistinctAndInOrder()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("math/a.mtlx"), Document("<nodedef name='1' node='n' nodegroup='pbr'/>"
                                                         "<nodedef name='2' node='n' nodegroup='math'/>"
                                                         "<nodedef name='3' node='n' nodegroup=''/>"));
    folder.Write(QStringLiteral("zoo/b.mtlx"), Document("<nodedef name='4' node='n' nodegroup='pbr'/>"
                                                        "<nodedef name='5' node='n' nodegroup='Math'/>"));
    QCOMPARE(ReadLines(folder.GetPath()).value(0), QStringLiteral("polymorphic n [pbr;math;Math;zoo] @math"));
}

void ReadingTest::sameDeclarationTwiceIsTwoItems()
{
    const DocumentFolder folder;
    const QByteArray twice = "<typedef name='t'/><nodedef name='ND_n' node='n'/><nodegraph name='g'/>";
    const QString path = folder.Write(QStringLiteral("d.mtlx"), Document(twice + twice));
    QCOMPARE(ReadLines(path), Lines({"type t [] @d", "type t [] @d", "polymorphic n [] @d", "signature ND_n [] @d of n",
                                     "signature ND_n [] @d of n", "compound g [] @d", "compound g [] @d"}));
}

void ReadingTest::formsOfXml_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("lines");
    const QStringList a = Lines({"type a [] @d"});
    const QByteArray plain = Document("<typedef name='a'/>");
    QTest::newRow("no declaration") << plain << a;
    QTest::newRow("empty root") << QByteArray("<materialx/>") << QStringList();
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + plain << a;
    QTest::newRow("UTF-8 text") << Document("<typedef name='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'/>")
                                << Lines({"type ä€😀 [] @d"});
    QTest::newRow("declared Latin-1") << "<?xml version='1.0' encoding='ISO-8859-1'?>" +
                                             Document("<typedef name='\xE4'/>")
                                      << Lines({"type ä [] @d"});
    QByteArray utf16 = QByteArray("\xFF\xFE", 2);
    for (const char byte : plain)
        utf16.append(byte).append('\0');
    QTest::newRow("UTF-16") << utf16 << a;
    QTest::newRow("line ends of other systems")
        << QByteArray("<materialx>\r\n<typedef\r\nname='a'/>\r</materialx>\r\n") << a;
    QTest::newRow("default namespace") << QByteArray("<materialx xmlns='urn:any'><typedef name='a'/></materialx>") << a;
    QTest::newRow("element of another namespace")
        << QByteArray(
               "<materialx xmlns:o='urn:other'><o:typedef name='b'/><typedef name='a' o:semantic='c'/></materialx>")
        << a;
    QTest::newRow("undeclared prefix") << Document("<xi:include href='x'/><typedef name='a'/>") << a;
    QTest::newRow("include inside a graph")
        << Document("<nodegraph name='g'><xi:include href='x'/></nodegraph>") << Lines({"compound g [] @d"});
    QTest::newRow("name with a colon") << Document("<nodedef name='o:ND' node='o:n'/>"
                                                   "<nodegraph name='o:g' nodedef='o:ND'><o:n name='i'/></nodegraph>")
                                       << Lines({"compound o:n [] @d", "compound i [] @d in o:g"});
    QTest::newRow("comments, instructions and text")
        << QByteArray("<!-- <typedef name='b'/> --><?go on?><materialx>text<!-- x --><typedef name='a'/>"
                      "<![CDATA[<typedef name='b'/>]]></materialx><!-- end -->")
        << a;
    QTest::newRow("the same between elements")
        << Document("<typedef name='a'/>text<!-- x --><?go on?><![CDATA[<typedef name='b'/>]]><typedef name='c'/>")
        << Lines({"type a [] @d", "type c [] @d"});
    QTest::newRow("references") << Document("<typedef name='&lt;&amp;&quot;&#xe4;&#65;'/>")
                                << Lines({"type <&\"äA [] @d"});
    QTest::newRow("own entity") << "<!DOCTYPE materialx [<!ENTITY e 'a'>]>" + Document("<typedef name='&e;'/>")
                                << Lines({"type &e; [] @d"});
    QTest::newRow("external subset is not fetched")
        << "<!DOCTYPE materialx SYSTEM 'file:///etc/hostname'>" + Document("<typedef name='a'/>") << a;
    QTest::newRow("unknown elements, nested")
        << Document("<other><materialx><typedef name='b'/></materialx></other><typedef name='a'/>") << a;
    QTest::newRow("attributes of unknown names") << Document("<typedef colour='b' name='a' Name='c'/>") << a;
    QTest::newRow("shown name and tags")
        << Document("<nodedef name='ND' node='n' uiname='N &amp; M' tags='a;b c' nodegroup='g'/>"
                    "<nodegraph name='g' uiname='\xE9\x95\xB7' tags=''/><typedef name='t' uiname='T' tags='x'/>")
        << Lines({"type t [] @d", "signature n [a;b c] @d as N & M", "compound g [] @d as 長"});
    QTest::newRow("shown names and tags of several definitions")
        << Document("<nodedef name='A' node='n' uiname='N' nodegroup='g'/><nodedef name='B' node='n' uiname='M'/>"
                    "<nodedef name='C' node='m'/><nodedef name='D' node='m' tags='x' uiname=''/>")
        << Lines({"polymorphic n [g] @d as N", "signature A [g] @d of n as N", "signature B [] @d of n as M",
                  "polymorphic m [] @d", "signature C [] @d of m", "signature D [x] @d of m"});
    QTest::newRow("separators of paths in names")
        << Document("<typedef name='../../etc'/><nodegraph name='a/b'><c\xC2\xB7 name='\\d'/></nodegraph>")
        << Lines({"type ../../etc [] @d", "compound a/b [] @d", "signature \\d [] @d in a/b"});
    QTest::newRow("element names in other letters") << Document("<TypeDef name='b'/><typedef name='a'/>") << a;
}

void ReadingTest::formsOfXml()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, lines);
    const DocumentFolder folder;
    QCOMPARE(ReadLines(folder.Write(QStringLiteral("d.mtlx"), document)), lines);
}

void ReadingTest::linksThatLeadOutsideAreNotFollowed()
{
    const DocumentFolder folder;
    const QString outside = folder.Write(QStringLiteral("opened2/d.mtlx"), Document("<typedef name='a'/>"));
    const QString opened = folder.GetPath(QStringLiteral("opened"));
    const QString inside = folder.Write(QStringLiteral("opened/b.mtlx"), Document("<typedef name='b'/>"));
    const QString other = folder.Write(QStringLiteral("opened/other.xml"), Document("<typedef name='o'/>"));
    if (!QFile::link(outside, opened + QStringLiteral("/a.mtlx")) ||
        !QFileInfo(opened + QStringLiteral("/a.mtlx")).isFile())
        QSKIP("This system makes no links to files");
    QVERIFY(QFile::link(folder.GetPath(QStringLiteral("opened2")), opened + QStringLiteral("/c.mtlx")));
    QVERIFY(QFile::link(opened, opened + QStringLiteral("/loop")));
    QVERIFY(QFile::link(inside, opened + QStringLiteral("/again.mtlx")));
    QVERIFY(QFile::link(other, opened + QStringLiteral("/o1.mtlx")));
    QVERIFY(QFile::link(QStringLiteral("o1.mtlx"), opened + QStringLiteral("/o2.mtlx")));
    const QStringList expected = Lines({"type b [] @opened", "type o [] @opened"});
    QCOMPARE(ReadLines(opened), expected);
    QVERIFY(QFile::link(opened, folder.GetPath(QStringLiteral("way"))));
    QCOMPARE(ReadLines(folder.GetPath(QStringLiteral("way"))),
             Lines({"type b [] @way", "type o [] @way"})); // what is opened may be a link itself
}

void ReadingTest::includesAreNotFollowed()
{
    const DocumentFolder folder;
    const QByteArray other = "<xi:include href='b.mtlx'/><xi:include href='a.mtlx'/><xi:include href='/etc/hostname'/>";
    folder.Write(QStringLiteral("o/a.mtlx"), Document(other + "<typedef name='a'/>"));
    folder.Write(QStringLiteral("o/b.mtlx"), Document("<typedef name='b'/>" + other));
    QCOMPARE(ReadLines(folder.GetPath(QStringLiteral("o"))), Lines({"type a [] @o", "type b [] @o"}));
    QCOMPARE(ReadLines(folder.GetPath(QStringLiteral("o/a.mtlx"))), Lines({"type a [] @a"}));
}

void ReadingTest::identitiesFollowKindAndName()
{
    const DocumentFolder folder;
    const auto identities = [&folder](const QByteArray& in_content) {
        Library library;
        if (ReadLibrary(folder.Write(QStringLiteral("d.mtlx"), Document(in_content)), library))
            return std::vector<QUuid>();
        return materialx::MakeIdentities(MakeItems(library));
    };
    const std::vector<QUuid> first =
        identities("<typedef name='a'/><nodedef name='ND' node='a'/><nodegraph name='g'><b name='a'/></nodegraph>");
    QCOMPARE(first.size(), std::size_t(4));
    QCOMPARE(std::set<QUuid>(first.begin(), first.end()).size(), std::size_t(4));
    for (const QUuid& identity : first)
        QCOMPARE(identity.version(), QUuid::Sha1);
    QCOMPARE(first[0].toString(), QStringLiteral("{70571bb3-49bd-5bd8-a239-09c77dc746d9}"));
    // Another order, other words around it and another way to write the same letters change nothing.
    const std::vector<QUuid> second =
        identities("<nodegraph name='g' uiname='G'><c name='a'/></nodegraph><look/><nodedef name='MD' node='&#97;' "
                   "uiname='A' tags='t'/><typedef semantic='s' name='a'/>");
    QVERIFY(first == second);
    const std::vector<QUuid> twice = identities("<typedef name='a'/><typedef name='a'/><typedef name='a'/>");
    QCOMPARE(twice.size(), std::size_t(3));
    QCOMPARE(twice[0], first[0]);
    QCOMPARE(std::set<QUuid>(twice.begin(), twice.end()).size(), std::size_t(3));
    QVERIFY(identities("<typedef name='a'/><typedef name='a'/><typedef name='a'/>") == twice);
}

void ReadingTest::earlierLibraryIsReplaced()
{
    const DocumentFolder folder;
    Library library;
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("a.mtlx"), Document("<typedef name='a'/>")), library));
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("b.mtlx"), Document("<typedef name='b'/>")), library));
    QCOMPARE(Describe(library), Lines({"type b [] @b"}));
    QCOMPARE(library.m_sources.size(), std::size_t(1));
}

NODEBROWSER_TEST_MAIN(ReadingTest)
#include "test_reading.moc"
