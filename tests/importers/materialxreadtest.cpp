// SPDX-License-Identifier: MIT
#include "tests/importers/documents.h"
#include "tests/support/testmain.h"

using importers::MaterialXContent;
using importers::MaterialXError;
using importers::ReadMaterialX;

namespace
{

/// Reads and describes; a fault is a line of its own, which no expectation equals.
QStringList ReadLines(const QString& in_path)
{
    MaterialXContent content;
    const std::optional<MaterialXError> error = ReadMaterialX(in_path, content);
    return error ? QStringList(error->GetText()) : Describe(content);
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
class MaterialXReadTest : public QObject
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
    void linkToAFileIsReadAndLinkToAFolderIsNot();
    void earlierContentIsReplaced();
};

void MaterialXReadTest::everyRuleOfTheLibraryFolder()
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
void MaterialXReadTest::everyItemOfAWholeLibrary()
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

void MaterialXReadTest::sourcesAreTheTopFoldersAndTheOpenedOne()
{
    MaterialXContent content;
    QVERIFY(!ReadMaterialX(QStringLiteral(TEST_DATA_FOLDER "/library"), content));
    QStringList sources;
    for (const importers::MaterialXSource& source : content.m_sources)
        sources.append(source.m_name + QLatin1Char(' ') + QDir::fromNativeSeparators(source.m_location));
    const QString folder = QStringLiteral(TEST_DATA_FOLDER "/library");
    QCOMPARE(sources, QStringList() << QStringLiteral("alpha ") + folder + QStringLiteral("/alpha")
                                    << QStringLiteral("beta ") + folder + QStringLiteral("/beta")
                                    << QStringLiteral("library ") + folder
                                    << QStringLiteral("stdlib ") + folder + QStringLiteral("/stdlib"));
}

void MaterialXReadTest::singleFileIsASourceOfItsOwn()
{
    const DocumentFolder folder;
    const QString path =
        folder.Write(QStringLiteral("sub/my.nodes.xml"), Document("<nodedef name='ND_a' node='a' nodegroup='math'/>"));
    QCOMPARE(ReadLines(path), Lines({"signature a [math] @my.nodes"}));
}

void MaterialXReadTest::openedFolderMayBeCalledInAnyWay_data()
{
    QTest::addColumn<QString>("ending");
    QTest::newRow("plain") << QString();
    QTest::newRow("slash") << QStringLiteral("/");
    QTest::newRow("dot") << QStringLiteral("/.");
    QTest::newRow("detour") << QStringLiteral("/top/..");
}

void MaterialXReadTest::openedFolderMayBeCalledInAnyWay()
{
    QFETCH(QString, ending);
    const DocumentFolder folder;
    folder.Write(QStringLiteral("opened/a.mtlx"), Document("<nodedef name='ND_a' node='a'/>"));
    folder.Write(QStringLiteral("opened/top/below/b.mtlx"), Document("<nodedef name='ND_b' node='b'/>"));
    QCOMPARE(ReadLines(folder.GetPath(QStringLiteral("opened")) + ending),
             Lines({"signature a [] @opened", "signature b [top] @top"}));
}

void MaterialXReadTest::relativePathsAreOpened()
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

void MaterialXReadTest::documentsComeInPathOrder()
{
    const DocumentFolder folder;
    const char* const names[] = {"b.mtlx", "a/z.mtlx", "Z.mtlx", "a.mtlx", "a/b/c.mtlx", "c.mtlx/d.mtlx", "ä.mtlx"};
    for (const char* name : names)
        folder.Write(QString::fromUtf8(name), Document(QByteArray("<typedef name='") + name + "'/>"));
    MaterialXContent content;
    QVERIFY(!ReadMaterialX(folder.GetPath(), content));
    QStringList read;
    for (const importers::MaterialXItem& item : content.m_items)
        read.append(item.m_name);
    QCOMPARE(read, Lines({"Z.mtlx", "a.mtlx", "a/b/c.mtlx", "a/z.mtlx", "b.mtlx", "c.mtlx/d.mtlx", "ä.mtlx"}));
}

void MaterialXReadTest::rootAndTopFolderOfOneNameAreTwoSources()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("same/same/a.mtlx"), Document("<nodedef name='ND_a' node='a'/>"));
    folder.Write(QStringLiteral("same/b.mtlx"), Document("<nodedef name='ND_b' node='b'/>"));
    MaterialXContent content;
    QVERIFY(!ReadMaterialX(folder.GetPath(QStringLiteral("same")), content));
    QCOMPARE(Describe(content), Lines({"signature b [] @same", "signature a [same] @same"}));
    QCOMPARE(content.m_sources.size(), std::size_t(2));
    QVERIFY(content.m_sources[0].m_location != content.m_sources[1].m_location);
}

void MaterialXReadTest::tagsAreDistinctAndInOrder()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("math/a.mtlx"), Document("<nodedef name='1' node='n' nodegroup='pbr'/>"
                                                         "<nodedef name='2' node='n' nodegroup='math'/>"
                                                         "<nodedef name='3' node='n' nodegroup=''/>"));
    folder.Write(QStringLiteral("zoo/b.mtlx"), Document("<nodedef name='4' node='n' nodegroup='pbr'/>"
                                                        "<nodedef name='5' node='n' nodegroup='Math'/>"));
    QCOMPARE(ReadLines(folder.GetPath()).value(0), QStringLiteral("polymorphic n [pbr;math;Math;zoo] @math"));
}

void MaterialXReadTest::sameDeclarationTwiceIsTwoItems()
{
    const DocumentFolder folder;
    const QByteArray twice = "<typedef name='t'/><nodedef name='ND_n' node='n'/><nodegraph name='g'/>";
    const QString path = folder.Write(QStringLiteral("d.mtlx"), Document(twice + twice));
    QCOMPARE(ReadLines(path), Lines({"type t [] @d", "type t [] @d", "polymorphic n [] @d", "signature ND_n [] @d of n",
                                     "signature ND_n [] @d of n", "compound g [] @d", "compound g [] @d"}));
}

void MaterialXReadTest::formsOfXml_data()
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
    QTest::newRow("references") << Document("<typedef name='&lt;&amp;&quot;&#xe4;&#65;'/>")
                                << Lines({"type <&\"äA [] @d"});
    QTest::newRow("own entity") << "<!DOCTYPE materialx [<!ENTITY e 'a'>]>" + Document("<typedef name='&e;'/>") << a;
    QTest::newRow("external subset is not fetched")
        << "<!DOCTYPE materialx SYSTEM 'file:///etc/hostname'>" + Document("<typedef name='a'/>") << a;
    QTest::newRow("unknown elements, nested")
        << Document("<other><materialx><typedef name='b'/></materialx></other><typedef name='a'/>") << a;
    QTest::newRow("attributes of unknown names") << Document("<typedef colour='b' name='a' Name='c'/>") << a;
    QTest::newRow("element names in other letters") << Document("<TypeDef name='b'/><typedef name='a'/>") << a;
}

void MaterialXReadTest::formsOfXml()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, lines);
    const DocumentFolder folder;
    QCOMPARE(ReadLines(folder.Write(QStringLiteral("d.mtlx"), document)), lines);
}

void MaterialXReadTest::linkToAFileIsReadAndLinkToAFolderIsNot()
{
    const DocumentFolder folder;
    const QString document = folder.Write(QStringLiteral("elsewhere/d.mtlx"), Document("<typedef name='a'/>"));
    folder.Write(QStringLiteral("opened/b.mtlx"), Document("<typedef name='b'/>"));
    const QString opened = folder.GetPath(QStringLiteral("opened"));
    if (!QFile::link(document, opened + QStringLiteral("/a.mtlx")) ||
        !QFileInfo(opened + QStringLiteral("/a.mtlx")).isFile())
        QSKIP("This system makes no links to files");
    QVERIFY(QFile::link(folder.GetPath(QStringLiteral("elsewhere")), opened + QStringLiteral("/c.mtlx")));
    QVERIFY(QFile::link(opened, opened + QStringLiteral("/loop")));
    QCOMPARE(ReadLines(opened), Lines({"type a [] @opened", "type b [] @opened"}));
}

void MaterialXReadTest::earlierContentIsReplaced()
{
    const DocumentFolder folder;
    MaterialXContent content;
    QVERIFY(!ReadMaterialX(folder.Write(QStringLiteral("a.mtlx"), Document("<typedef name='a'/>")), content));
    QVERIFY(!ReadMaterialX(folder.Write(QStringLiteral("b.mtlx"), Document("<typedef name='b'/>")), content));
    QCOMPARE(Describe(content), Lines({"type b [] @b"}));
    QCOMPARE(content.m_sources.size(), std::size_t(1));
}

NODEBROWSER_TEST_MAIN(MaterialXReadTest)
#include "materialxreadtest.moc"
