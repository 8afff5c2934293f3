// SPDX-License-Identifier: MIT
#include "tests/materialx/documents.h"
#include "tests/support/costs.h"
#include "tests/support/random.h"
#include "tests/support/testmain.h"

#include <QScopeGuard>

#include <algorithm>
#include <filesystem>
#include <system_error>

using materialx::Error;
using materialx::Library;
using materialx::ReadLibrary;

namespace
{

const char gGoodDocument[] = "<materialx><typedef name='a'/></materialx>";

/// A valid document with every element that the reader knows and every form of XML that it may meet.
QByteArray ReadRichDocument()
{
    QFile file(QStringLiteral(TEST_DATA_FOLDER "/everyform.mtlx"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A library that a fault must leave alone.
Library MakeMarkedLibrary()
{
    Library library;
    library.m_sources.push_back({QStringLiteral("marked"), QString(), QString()});
    library.m_documents.emplace_back();
    return library;
}

bool IsMarked(const Library& in_library)
{
    return in_library.m_sources.size() == 1 && in_library.m_sources[0].m_name == QStringLiteral("marked") &&
           in_library.m_documents.size() == 1;
}

QByteArray Repeated(const QByteArray& in_text, int in_times)
{
    return in_text.repeated(in_times);
}

/// How many times as much it costs to read a document of four times the size. The disk plays no part.
template <class MakeText> double ReadingGrowth(MakeText in_makeText, int in_size)
{
    return GrowthOf(
        [&in_makeText](int in_sizeNow) {
            return [text = QByteArray(in_makeText(in_sizeNow)).toStdString()] {
                materialx::Document document;
                document.Read(text);
            };
        },
        in_size);
}

} // namespace

/// Hostile and damaged input: every fault is told with its place, and nothing is half read.
class FaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentFaults_data();
    void documentFaults();
    void missingFile();
    void missingFolder();
    void emptyPath();
    void folderWithoutDocuments_data();
    void folderWithoutDocuments();
    void linkThatLeadsNowhere();
    void nameThatIsNoText_data();
    void nameThatIsNoText();
    void documentLargerThanTheMemory();
    void oneBadDocumentFailsTheFolder();
    void firstBadDocumentInPathOrderIsTold();
    void reasonIsOneLine();
    void everyTruncationOfAValidDocument();
    void randomMutationsOfAValidDocument();
    void hundredThousandDefinitionsWithGraphs();
    void hundredThousandNodesInAGraph();
    void hundredThousandDefinitionsOfOneNode();
    void nameOfAMillionCharacters();
    void deepNesting();
    void entitiesAreNotExpanded();
    void elementWithTwoHundredThousandAttributes();
    void documentOfTwentyMegabytes();
};

void FaultsTest::documentFaults_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<QString>("part");
    const auto row = [](const char* in_name, const QByteArray& in_document, qint64 in_line, const char* in_part = "") {
        QTest::newRow(in_name) << in_document << in_line << QString::fromLatin1(in_part);
    };
    row("empty file", QByteArray(), 1);
    row("only white space", "\n\n \n", 4);
    row("no XML", "hello\nworld\n", 1);
    row("binary",
        QByteArray("\x7f"
                   "ELF\0\0\1\2",
                   8),
        1);
    row("only zero bytes", QByteArray(100, '\0'), 1);
    row("other root", "<?xml version='1.0'?>\n<html>\n</html>", 2, "No MaterialX document");
    row("root of another namespace", "<m:materialx xmlns:m='urn:m'/>", 1, "No MaterialX document");
    row("root inside another root", "<a>\n<materialx/></a>", 1, "No MaterialX document");
    row("unclosed root", "<materialx>\n<typedef name='a'/>\n", 3);
    row("wrong closing tag", "<materialx>\n<typedef name='a'>\n</nodedef>\n</materialx>", 3);
    row("unquoted attribute", "<materialx>\n\n<typedef name=a/></materialx>", 3);
    row("same attribute twice", "<materialx>\n<typedef name='a' name='b'/></materialx>", 2);
    row("cut in a tag", "<materialx>\n<typedef name='a", 2);
    row("cut in a comment", "<materialx>\n<!-- typedef", 2);
    row("second root", "<materialx/>\n<materialx/>", 2);
    row("text after the root", "<materialx/>\n\nmore", 3);
    row("fault in a skipped element", "<materialx>\n<look>\n<a></b></look></materialx>", 3);
    row("fault inside a unitdef", "<materialx><unitdef name='u'>\n<unit name='m'></unitdef></materialx>", 2);
    row("fault inside a node graph", "<materialx><nodegraph name='g'>\n<a name='n'><b></a></nodegraph></materialx>", 2);
    row("unknown entity", "<materialx>\n<typedef name='&unknown;'/></materialx>", 2);
    row("bare ampersand", "<materialx>\n<typedef name='a & b'/></materialx>", 2);
    row("zero character", "<materialx>\n<typedef name='&#0;'/></materialx>", 2);
    row("control character by reference", "<materialx>\n<typedef name='&#7;'/></materialx>", 2);
    row("control character", "<materialx>\n<typedef name='\x07'/></materialx>", 2);
    row("reference beyond Unicode", "<materialx>\n<typedef name='&#x110000;'/></materialx>", 2);
    row("bytes that are no UTF-8", "<materialx>\n<typedef name='\xFF\xFE'/></materialx>", 2);
    row("UTF-8 cut short", "<materialx>\n<typedef name='\xC3'/></materialx>", 2);
    row("bytes that are no UTF-8 after a byte order mark", "\xEF\xBB\xBF<materialx>\n\n\xA0</materialx>", 3);
    row("bytes that are no UTF-8 behind many lines",
        "<materialx>" + Repeated("<look name='\xC3\xA4'/>\n", 5000) + "\xFF</materialx>", 5001);
    row("fault before bytes that are no UTF-8",
        "<materialx>\n<typedef name=a/>" + Repeated("<look/>\n", 50000) + "\xFF</materialx>", 2);
    row("fault behind Latin-1 text", "<?xml version='1.0' encoding='ISO-8859-1'?><materialx>\xE4\n</x>", 2);
    QByteArray utf16 = QByteArray("\xFF\xFE", 2);
    for (const char byte : QByteArray("<materialx>\n\n</x>"))
        utf16.append(byte).append('\0');
    row("fault in UTF-16", utf16, 3);
    row("surrogate in UTF-8", "<materialx>\n<typedef name='\xED\xA0\x80'/></materialx>", 2);
    row("unknown encoding", "<?xml version='1.0' encoding='no-such-encoding'?>\n<materialx/>", 1);
    row("XML of the future", "<?xml version='2.0'?>\n<materialx/>", 1);
    row("document type behind the root", "<materialx/>\n<!DOCTYPE materialx>", 2);
    row("two document types", "<!DOCTYPE materialx>\n<!DOCTYPE materialx>\n<materialx/>", 2);
    row("declaration inside", "<materialx>\n<?xml version='1.0'?></materialx>", 2);
    row("two hyphens in a comment", "<materialx>\n<!-- a -- b --></materialx>", 2);
    row("no space between attributes", "<materialx>\n<typedef name='a'semantic='b'/></materialx>", 2);
    row("less-than sign in an attribute", "<materialx>\n<typedef name='a<b'/></materialx>", 2);
    row("end of a CDATA section without its start", "<materialx>\n]]></materialx>", 2);
    row("bare ampersand in text", "<materialx>\nthis & that</materialx>", 2);
    row("the same attribute among many",
        "<materialx>\n<typedef name='a' a='' b='' c='' d='' e='' f='' g='' h='' i='' j='' k='' l='' m='' n='' d=''/>"
        "</materialx>",
        2, "there already");
    row("half a character of UTF-16", utf16 + ' ', 3);
}

void FaultsTest::documentFaults()
{
    QFETCH(QByteArray, document);
    QFETCH(qint64, line);
    QFETCH(QString, part);
    const DocumentFolder folder;
    const QString path = folder.Write(QStringLiteral("d.mtlx"), document);
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(path, library);
    QVERIFY(error);
    QCOMPARE(error->m_file, path);
    QCOMPARE(error->m_line, line);
    QVERIFY(!error->m_reason.isEmpty());
    QVERIFY2(error->m_reason.contains(part), qPrintable(error->m_reason));
    QCOMPARE(error->GetText(), QStringLiteral("%1:%2: %3").arg(path).arg(line).arg(error->m_reason));
    QVERIFY(IsMarked(library));
}

void FaultsTest::missingFile()
{
    const DocumentFolder folder;
    const QString path = folder.GetPath(QStringLiteral("none.mtlx"));
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(path, library);
    QVERIFY(error);
    QVERIFY2(error->GetText().startsWith(path + QStringLiteral(":1: ")), qPrintable(error->GetText()));
    QVERIFY(!error->m_reason.isEmpty());
    QVERIFY(IsMarked(library));
}

void FaultsTest::missingFolder()
{
    const DocumentFolder folder;
    Library library;
    const std::optional<Error> error = ReadLibrary(folder.GetPath(QStringLiteral("none/")), library);
    QVERIFY(error);
    QCOMPARE(error->m_line, qint64(1));
}

void FaultsTest::emptyPath()
{
    Library library;
    const std::optional<Error> error = ReadLibrary(QString(), library);
    QVERIFY(error);
    QCOMPARE(error->m_line, qint64(1));
    QVERIFY(!error->m_reason.isEmpty());
}

void FaultsTest::folderWithoutDocuments_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("other files") << QStringLiteral("sub/readme.txt");
    QTest::newRow("hidden document") << QStringLiteral(".a.mtlx");
    QTest::newRow("document in a hidden folder") << QStringLiteral("sub/.git/a.mtlx");
    QTest::newRow("folder called like a document") << QStringLiteral("a.mtlx/readme.txt");
    QTest::newRow("longer ending") << QStringLiteral("a.mtlx.bak");
}

void FaultsTest::folderWithoutDocuments()
{
    QFETCH(QString, file);
    const DocumentFolder folder;
    folder.Write(file, gGoodDocument);
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(folder.GetPath(), library);
    QVERIFY(error);
    QCOMPARE(error->GetText(), folder.GetPath() + QStringLiteral(":1: The folder has no MaterialX documents"));
    QVERIFY(IsMarked(library));
}

void FaultsTest::linkThatLeadsNowhere()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("a.mtlx"), gGoodDocument);
    const QString link = folder.GetPath(QStringLiteral("b.mtlx"));
    if (!QFile::link(folder.GetPath(QStringLiteral("nowhere")), link) || !QFileInfo(link).isSymLink())
        QSKIP("This system makes no links to files");
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(folder.GetPath(), library);
    QVERIFY(error);
    QCOMPARE(error->m_file, link);
    QCOMPARE(error->m_line, qint64(1));
    QVERIFY(IsMarked(library));
}

void FaultsTest::nameThatIsNoText_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("isDocument");
    QTest::newRow("document") << QByteArray("\xE4.mtlx") << true;
    QTest::newRow("document in such a folder") << QByteArray("sub\xE4/b.mtlx") << true;
    QTest::newRow("other file") << QByteArray("\xE4.txt") << false;
    QTest::newRow("hidden document") << QByteArray(".\xE4.mtlx") << false;
    QTest::newRow("document in a hidden folder") << QByteArray(".sub/\xE4.mtlx") << false;
}

void FaultsTest::nameThatIsNoText()
{
    QFETCH(QByteArray, path);
    QFETCH(bool, isDocument);
    const DocumentFolder folder;
    folder.Write(QStringLiteral("a.mtlx"), gGoodDocument);
    const std::filesystem::path file = QFile::encodeName(folder.GetPath()).toStdString() + '/' + path.toStdString();
    std::error_code error;
    // The toolkit removes no such files either.
    const auto remove = qScopeGuard([&file, isInside = path.contains('/')] {
        std::error_code ignored;
        std::filesystem::remove_all(isInside ? file.parent_path() : file, ignored);
    });
    std::filesystem::create_directories(file.parent_path(), error);
    std::filesystem::copy_file(QFile::encodeName(folder.GetPath(QStringLiteral("a.mtlx"))).toStdString(), file, error);
    if (error || QFile::encodeName(QFile::decodeName(path)) == path)
        QSKIP("Here each name is a text");
    Library library = MakeMarkedLibrary();
    const std::optional<Error> fault = ReadLibrary(folder.GetPath(), library);
    QCOMPARE(fault.has_value(), isDocument);
    if (!fault)
        return;
    QVERIFY2(fault->m_file.startsWith(folder.GetPath()) && fault->m_file.endsWith(QLatin1String(".mtlx")),
             qPrintable(fault->m_file));
    QVERIFY2(fault->m_reason.contains(QLatin1String("encoding")), qPrintable(fault->m_reason));
    QVERIFY(IsMarked(library));
}

void FaultsTest::documentLargerThanTheMemory()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("The sanitizer ends a program that asks for so much");
#endif
    const DocumentFolder folder;
    const QString path = folder.Write(QStringLiteral("d.mtlx"), gGoodDocument);
    if (!MakeLargerThanTheMemory(path))
        QSKIP("The file system takes no such file");
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(path, library);
    QVERIFY(error);
    QCOMPARE(error->GetText(), path + QStringLiteral(":1: There is not enough memory for it"));
    QVERIFY(IsMarked(library));
}

void FaultsTest::oneBadDocumentFailsTheFolder()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("a/a.mtlx"), gGoodDocument);
    const QString bad = folder.Write(QStringLiteral("b/deep/er/b.mtlx"), "<materialx>\n\n<typedef</materialx>");
    folder.Write(QStringLiteral("c/c.mtlx"), gGoodDocument);
    Library library = MakeMarkedLibrary();
    const std::optional<Error> error = ReadLibrary(folder.GetPath(), library);
    QVERIFY(error);
    QCOMPARE(error->m_file, bad);
    QCOMPARE(error->m_line, qint64(3));
    QVERIFY(IsMarked(library));
}

void FaultsTest::firstBadDocumentInPathOrderIsTold()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("z.mtlx"), "no XML");
    const QString first = folder.Write(QStringLiteral("m/b.mtlx"), "no XML");
    folder.Write(QStringLiteral("m/a.mtlx"), gGoodDocument);
    Library library;
    const std::optional<Error> error = ReadLibrary(folder.GetPath(), library);
    QVERIFY(error);
    QCOMPARE(error->m_file, first);
}

void FaultsTest::reasonIsOneLine()
{
    const Error error = {QStringLiteral("a  b.mtlx"), 7, QStringLiteral("Expected '\n', but got\r\n'x'.")};
    QCOMPARE(error.GetText(), QStringLiteral("a  b.mtlx:7: Expected ' ', but got 'x'."));
}

void FaultsTest::everyTruncationOfAValidDocument()
{
    const DocumentFolder folder;
    const QByteArray document = ReadRichDocument();
    QVERIFY(document.size() > 500);
    const int rootEnd = static_cast<int>(document.lastIndexOf('>')) + 1;
    for (int length = 0; length <= document.size(); ++length)
    {
        const QString path = folder.Write(QStringLiteral("d.mtlx"), document.left(length));
        Library library = MakeMarkedLibrary();
        const std::optional<Error> error = ReadLibrary(path, library);
        QVERIFY2(error.has_value() == (length < rootEnd), qPrintable(QString::number(length)));
        if (!error)
            continue;
        const qint64 lastLine = document.left(length).count('\n') + 1;
        QVERIFY2(error->m_line >= 1 && error->m_line <= lastLine, qPrintable(error->GetText()));
        QVERIFY(IsMarked(library));
    }
}

void FaultsTest::randomMutationsOfAValidDocument()
{
    const DocumentFolder folder;
    const QByteArray original = ReadRichDocument();
    QVERIFY(original.size() > 500);
    const QByteArray dictionary = QByteArrayLiteral("<>/&;#'\"=! -[]?:\0\xFF\xC3\n\r\taex0");
    Random random(TestSeed(20240229));
    const auto below = [&random](qsizetype in_limit) { return random.Below(static_cast<int>(in_limit)); };
    int readable = 0;
    int faulty = 0;
    for (int round = 0; round < 5000; ++round)
    {
        QByteArray document = original;
        for (int change = below(2); change >= 0; --change)
        {
            const int place = below(document.size());
            const int length = below(16);
            switch (below(5))
            {
            case 0:
                document[place] = dictionary[below(dictionary.size())];
                break;
            case 1:
                document.insert(place, dictionary[below(dictionary.size())]);
                break;
            case 2:
                document.remove(place, length);
                break;
            case 3:
                document.insert(place, document.mid(below(document.size()), length * 4));
                break;
            default:
                document[place] = static_cast<char>(below(256));
                break;
            }
        }
        const QString path = folder.Write(QStringLiteral("d.mtlx"), document);
        Library library = MakeMarkedLibrary();
        const std::optional<Error> error = ReadLibrary(path, library);
        ++(error ? faulty : readable);
        if (error)
        {
            QVERIFY2(error->m_line >= 1 && !error->m_reason.isEmpty() && IsMarked(library), document.constData());
            continue;
        }
        QCOMPARE(library.m_sources.size(), std::size_t(1));
        for (const materialx::Item& item : MakeItems(library))
            QVERIFY2(!item.m_name.empty() && item.m_source == 0, document.constData());
    }
    QVERIFY(readable > 500);
    QVERIFY(faulty > 500);
}

void FaultsTest::hundredThousandDefinitionsWithGraphs()
{
    const DocumentFolder folder;
    QByteArray document = "<materialx>";
    for (int i = 0; i < 100000; ++i)
    {
        const QByteArray number = QByteArray::number(i);
        document += "<nodedef name='ND_" + number + "' node='node" + number + "' nodegroup='group" + number +
                    "'/><nodegraph name='NG_" + number + "' nodedef='ND_" + number + "'><node" + number +
                    " name='inner'/></nodegraph>\n";
    }
    Library library;
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("d.mtlx"), document + "</materialx>"), library));
    const std::vector<materialx::Item> items = MakeItems(library);
    QCOMPARE(items.size(), std::size_t(200000));
    QCOMPARE(items[99999].m_name, std::string("node99999"));
    QVERIFY(items[99999].m_kind == materialx::eKind::eCompound);
}

void FaultsTest::hundredThousandNodesInAGraph()
{
    const DocumentFolder folder;
    const QString path = folder.Write(QStringLiteral("d.mtlx"), "<materialx><nodegraph name='g'>" +
                                                                    Repeated("<add name='n' type='float'/>\n", 100000) +
                                                                    "</nodegraph></materialx>");
    Library library;
    QVERIFY(!ReadLibrary(path, library));
    const std::vector<materialx::Item> items = MakeItems(library);
    QCOMPARE(items.size(), std::size_t(100001));
    QCOMPARE(items.back().m_parent, std::string("g"));
}

void FaultsTest::hundredThousandDefinitionsOfOneNode()
{
    QByteArray document = "<materialx>";
    for (int i = 0; i < 100000; ++i)
        document += "<nodedef name='ND' node='n' nodegroup='" + QByteArray::number(i % 50000) + "'/>\n";
    const DocumentFolder folder;
    Library library;
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("d.mtlx"), document + "</materialx>"), library));
    const std::vector<materialx::Item> items = MakeItems(library);
    QCOMPARE(items.size(), std::size_t(100001));
    QCOMPARE(items.front().m_tags.size(), std::size_t(50000));
}

void FaultsTest::nameOfAMillionCharacters()
{
    const DocumentFolder folder;
    const QByteArray name(1000000, 'n');
    const QString path =
        folder.Write(QStringLiteral("d.mtlx"), "<materialx><typedef name='" + name + "'/></materialx>");
    Library library;
    QVERIFY(!ReadLibrary(path, library));
    const std::vector<materialx::Item> items = MakeItems(library);
    QCOMPARE(items.size(), std::size_t(1));
    QVERIFY(items[0].m_name == name.toStdString());
}

void FaultsTest::deepNesting()
{
    const DocumentFolder folder;
    const int depth = 100000;
    const QByteArray opened = Repeated("<a>\n", depth);
    const QByteArray closed = Repeated("</a>", depth);
    Library library;
    const QString whole = folder.Write(QStringLiteral("whole.mtlx"),
                                       "<materialx>" + opened + closed + "<typedef name='after'/></materialx>");
    QVERIFY(!ReadLibrary(whole, library));
    const std::vector<materialx::Item> items = MakeItems(library);
    QCOMPARE(items.size(), std::size_t(1));
    const std::optional<Error> error =
        ReadLibrary(folder.Write(QStringLiteral("open.mtlx"), "<materialx>" + opened), library);
    QVERIFY(error);
    QCOMPARE(error->m_line, qint64(depth + 1));
    for (const char* const end : {"</a>", ""})
    {
        const double growth = ReadingGrowth(
            [end](int in_depth) {
                return "<materialx>" + Repeated("<a>\n", in_depth) + Repeated(end, in_depth) + "</materialx>";
            },
            depth / 4);
        QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
    }
}

void FaultsTest::entitiesAreNotExpanded()
{
    QByteArray types = "<!DOCTYPE m [<!ENTITY a0 'aaaaaaaaaa'><!ENTITY file SYSTEM 'file:///etc/hostname'>"
                       "<!ENTITY b '&c;'><!ENTITY c '&b;'>";
    for (int level = 1; level < 12; ++level)
        types += "<!ENTITY a" + QByteArray::number(level) + " '" +
                 Repeated("&a" + QByteArray::number(level - 1) + ";", 10) + "'>";
    const QByteArray document =
        types +
        "]><materialx>&a11;<typedef name='&a11;'/><typedef name='&file;'/><typedef name='&b;&amp;'/></materialx>";
    const DocumentFolder folder;
    Library library;
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("d.mtlx"), document), library));
    QCOMPARE(Describe(library), QStringList()
                                    << QStringLiteral("type &a11; [] @d") << QStringLiteral("type &file; [] @d")
                                    << QStringLiteral("type &b;& [] @d"));
}

void FaultsTest::elementWithTwoHundredThousandAttributes()
{
    QByteArray document = "<materialx>\n<typedef name='many'";
    for (int i = 0; i < 200000; ++i)
        document += " a" + QByteArray::number(i) + "='v'";
    const DocumentFolder folder;
    Library library;
    QVERIFY(!ReadLibrary(folder.Write(QStringLiteral("d.mtlx"), document + "/></materialx>"), library));
    QCOMPARE(Describe(library), QStringList() << QStringLiteral("type many [] @d"));
    const std::optional<Error> error =
        ReadLibrary(folder.Write(QStringLiteral("e.mtlx"), document + " a77777='w'/></materialx>"), library);
    QVERIFY(error);
    QCOMPARE(error->m_line, qint64(2));
    for (const char* const last : {"", " a7='w'"})
    {
        const double growth = ReadingGrowth(
            [last](int in_count) {
                QByteArray text = "<materialx><typedef name='many'";
                for (int i = 0; i < in_count; ++i)
                    text += " a" + QByteArray::number(i) + "='v'";
                return text + last + "/></materialx>";
            },
            20000);
        QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
    }
}

void FaultsTest::documentOfTwentyMegabytes()
{
    const QByteArray line = "<look name='" + QByteArray(1000, 'l') + "'><!-- &no; --><![CDATA[<&>]]></look>\n";
    const DocumentFolder folder;
    Library library;
    const QString path = folder.Write(QStringLiteral("d.mtlx"),
                                      "<materialx>\n" + Repeated(line, 20000) + "<typedef name='last'/></materialx>");
    QVERIFY(!ReadLibrary(path, library));
    QCOMPARE(Describe(library), QStringList() << QStringLiteral("type last [] @d"));
    const std::optional<Error> error = ReadLibrary(
        folder.Write(QStringLiteral("e.mtlx"), "<materialx>\n" + Repeated(line, 20000) + "<typedef/>"), library);
    QVERIFY(error);
    QCOMPARE(error->m_line, qint64(20002));
    for (const char* const end : {"</materialx>", ""})
    {
        const double growth = ReadingGrowth(
            [&line, end](int in_count) { return "<materialx>\n" + Repeated(line, in_count) + end; }, 2500);
        QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
    }
}

NODEBROWSER_TEST_MAIN(FaultsTest)
#include "test_faults.moc"
