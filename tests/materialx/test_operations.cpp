// SPDX-License-Identifier: MIT
#include "materialx/moving.h"
#include "materialx/newnode.h"
#include "materialx/operations.h"

#include "materialx/identity.h"
#include "materialx/textedits.h"
#include "tests/materialx/memorylibrary.h"
#include "tests/support/costs.h"
#include "tests/support/testmain.h"

#include <memory>
#include <set>

using materialx::Item;
using materialx::Library;
using materialx::Plan;

namespace
{

QByteArray Bytes(const std::string& in_text)
{
    return QByteArray(in_text.data(), static_cast<int>(in_text.size()));
}

QByteArray BytesAt(const Library& in_library, const char* in_path)
{
    for (const materialx::LibraryDocument& document : in_library.m_documents)
        if (document.m_relativePath == QString::fromUtf8(in_path))
            return Bytes(document.m_document.GetBytes());
    return "no such document";
}

void Make(const Plan& in_plan, Library& io_library)
{
    if (!in_plan.m_refusal.empty())
        throw std::runtime_error(in_plan.m_refusal);
    if (const std::optional<materialx::Fault> fault = Apply(in_plan.m_change, io_library))
        throw std::runtime_error(fault->m_reason);
}

std::size_t IndexOf(const Library& in_library, const char* in_folder)
{
    for (std::size_t i = 0; i < in_library.m_sources.size(); ++i)
        if (in_library.m_sources[i].m_folder == QString::fromUtf8(in_folder))
            return i;
    throw std::runtime_error("There is no such source");
}

const char gTagsDefinition[] =
    "<attributedef name=\"AD_tags\" attrname=\"tags\" type=\"string\" value=\"\" elements=\"nodedef,nodegraph\"/>";

/// One step on one document: the bytes in between, and whether undoing brings back those at the start.
void CheckStep(Library& io_library, const Plan& in_plan, const char* in_path, const QByteArray& in_expected)
{
    const std::vector<std::string> before = BytesOf(io_library);
    Make(in_plan, io_library);
    QCOMPARE(BytesAt(io_library, in_path), in_expected);
    for (const materialx::LibraryDocument& document : io_library.m_documents)
    {
        const std::optional<std::string> difference =
            FindDifference(document.m_document, document.m_document.GetBytes());
        QVERIFY2(!difference, difference ? difference->c_str() : "");
    }
    QVERIFY(!Apply(Inverse(in_plan.m_change), io_library));
    QVERIFY(BytesOf(io_library) == before);
}

} // namespace

/// What people do with items, and what of it reaches the bytes.
class OperationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rename_data();
    void rename();
    void tags_data();
    void tags();
    void tagsAreDeclaredOnce();
    void newNode_data();
    void newNode();
    void identifiersAreNewInTheWholeLibrary();
    void newNodeInADocumentWithoutBytes();
    void compoundHasTheOutputsOfItsBase();
    void moveIntoTheDocumentOfTheSameName();
    void moveMakesADocument();
    void moveTakesAlongWhatTheDocumentSaid();
    void elementsOfAnItem();
    void documentsOfItemsAreThoseOfTheirElements_data();
    void documentsOfItemsAreThoseOfTheirElements();
    void documentsOfManyElementsOfOneName_data();
    void documentsOfManyElementsOfOneName();
    void removedElementsTakeTheirCommentsAlong();
    void whatOthersNeedIsNotRemoved();
    void refusals();
    void documentsInOtherEncodingsAreRefused_data();
    void documentsInOtherEncodingsAreRefused();
    void failedChangeChangesNothing();
    void differences();
    void differenceOfBytes_data();
    void differenceOfBytes();
};

void OperationsTest::rename_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const char* in_before, const char* in_item, const char* in_to,
                        const char* in_after) {
        QTest::newRow(in_name) << QByteArray(in_before) << QByteArray(in_item) << QByteArray(in_to)
                               << QByteArray(in_after);
    };
    row("definition", "<materialx><nodedef name='D' node='n'/></materialx>", "n", "New & old",
        "<materialx><nodedef name='D' node='n' uiname='New &amp; old'/></materialx>");
    row("free graph", "<materialx><nodegraph name='g'><n name='i'/></nodegraph></materialx>", "g", "G",
        "<materialx><nodegraph name='g' uiname='G'><n name='i'/></nodegraph></materialx>");
    row("to the name of the rules", "<materialx><nodedef name='D' uiname='U' node='n'/></materialx>", "n", "n",
        "<materialx><nodedef name='D' node='n'/></materialx>");
    row("to the name that is shown", "<materialx><nodedef name='D' uiname='U' node='n'/></materialx>", "n", "U",
        "<materialx><nodedef name='D' uiname='U' node='n'/></materialx>");
    row("several definitions", "<materialx><nodedef name='D' node='n'/><nodedef name='E' node='n'/></materialx>", "n",
        "N", "<materialx><nodedef name='D' node='n' uiname='N'/><nodedef name='E' node='n'/></materialx>");
    row("one of several definitions", "<materialx><nodedef name='D' node='n'/><nodedef name='E' node='n'/></materialx>",
        "E", "N", "<materialx><nodedef name='D' node='n'/><nodedef name='E' node='n' uiname='N'/></materialx>");
    row("CRLF, tabs, byte order mark, comment, entities",
        "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- a -->\r\n<materialx>\r\n\t<!-- b --><nodedef\tname='&#68;'\r\n\t\t"
        "node='n'/><!-- c -->\r\n</materialx>",
        "n", "N",
        "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- a -->\r\n<materialx>\r\n\t<!-- b --><nodedef\tname='&#68;'\r\n\t\t"
        "node='n'\r\n\t\tuiname='N'/><!-- c -->\r\n</materialx>");
}

void OperationsTest::rename()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, item);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, after);
    Library library = MakeLibrary({{"d.mtlx", before.toStdString()}});
    const Plan plan = Rename(library, FindItem(library, item.toStdString()), name.toStdString());
    CheckStep(library, plan, "d.mtlx", after);
    Make(plan, library);
    QCOMPARE(Bytes(FindItem(library, item.toStdString()).m_shownName), name);
}

void OperationsTest::tags_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("tags");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char* in_name, const QByteArray& in_before, const char* in_tags,
                        const QByteArray& in_after) {
        QTest::newRow(in_name) << in_before << QByteArray(in_tags) << in_after;
    };
    const QByteArray definition = gTagsDefinition;
    row("first tags of a document", "<materialx>\n <nodedef name='D' node='n'/>\n</materialx>", "a;b",
        "<materialx>\n <nodedef name='D' node='n' tags='a;b'/>\n " + definition + "\n</materialx>");
    row("other tags",
        "<materialx>\n <attributedef name='x' attrname='tags'/>\n <nodedef tags='a' node='n'/>\n</materialx>", "b",
        "<materialx>\n <attributedef name='x' attrname='tags'/>\n <nodedef tags='b' node='n'/>\n</materialx>");
    row("no tags", "<materialx>\n <nodedef tags='a' node='n'/>\n " + definition + "\n</materialx>", "",
        "<materialx>\n <nodedef tags='' node='n'/>\n " + definition + "\n</materialx>");
    row("those of the rules", "<materialx>\n <nodedef tags='a' node='n' nodegroup='g'/>\n</materialx>", "g;top",
        "<materialx>\n <nodedef node='n' nodegroup='g'/>\n</materialx>");
    row("those that are there", "<materialx>\n <nodedef node='n' nodegroup='g'/>\n</materialx>", "g;top",
        "<materialx>\n <nodedef node='n' nodegroup='g'/>\n</materialx>");
    row("the name of the declaration is taken",
        "<materialx>\n <look name='AD_tags'/>\n <nodedef node='n'/>\n</materialx>", "a",
        "<materialx>\n <look name='AD_tags'/>\n <nodedef node='n' tags='a'/>\n " +
            QByteArray(definition).replace("AD_tags", "AD_tags_") + "\n</materialx>");
    row("signs that divide nothing", "<materialx>\n <nodedef tags='' node='n'/>\n " + definition + "\n</materialx>",
        ";a;; b ;", "<materialx>\n <nodedef tags=';a;; b ;' node='n'/>\n " + definition + "\n</materialx>");
}

void OperationsTest::tags()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, tags);
    QFETCH(QByteArray, after);
    Library library = MakeLibrary({{"top/d.mtlx", before.toStdString()}});
    const Plan plan = SetTags(library, FindItem(library, "n"), tags.toStdString());
    CheckStep(library, plan, "top/d.mtlx", after);
    Make(plan, library);
    QByteArray joined;
    for (const std::string& tag : FindItem(library, "n").m_tags)
        joined += ';' + Bytes(tag);
    QCOMPARE(joined.mid(1), tags);
}

void OperationsTest::tagsAreDeclaredOnce()
{
    Library library = MakeLibrary({{"d.mtlx", "<materialx><nodedef node='n'/><nodegraph name='g'/></materialx>"}});
    Make(SetTags(library, FindItem(library, "n"), "a"), library);
    Make(SetTags(library, FindItem(library, "g"), "b"), library);
    QCOMPARE(BytesAt(library, "d.mtlx").count("<attributedef"), 1);
    QCOMPARE(FindItem(library, "g").m_tags, std::vector<std::string>{"b"});
}

void OperationsTest::newNode_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QByteArray>("inherit");
    QTest::addColumn<QByteArray>("elements");
    const auto row = [](const char* in_name, materialx::eNewKind in_kind, const char* in_shown, const char* in_category,
                        const char* in_inherit, const char* in_elements) {
        QTest::newRow(in_name) << static_cast<int>(in_kind) << QByteArray(in_shown) << QByteArray(in_category)
                               << QByteArray(in_inherit) << QByteArray(in_elements);
    };
    using materialx::eNewKind;
    row("signature", eNewKind::eSignature, "Blend", "", "",
        "\t<nodedef name=\"ND_Blend\" node=\"Blend\" uiname=\"Blend\" />\r\n");
    row("compound", eNewKind::eCompound, "Blend", "math & more", "",
        "\t<nodedef name=\"ND_Blend\" node=\"Blend\" uiname=\"Blend\" nodegroup=\"math &amp; more\" />\r\n"
        "\t<nodegraph name=\"NG_Blend\" nodedef=\"ND_Blend\" />\r\n");
    row("loop compound", eNewKind::eLoopCompound, "Loop", "", "",
        "\t<nodedef name=\"ND_Loop\" node=\"Loop\" uiname=\"Loop\" loop=\"true\" />\r\n"
        "\t<nodegraph name=\"NG_Loop\" nodedef=\"ND_Loop\" />\r\n");
    row("base class", eNewKind::eSignature, "S", "", "ND_there",
        "\t<nodedef name=\"ND_S\" node=\"S\" uiname=\"S\" inherit=\"ND_there\" />\r\n");
    row("unknown base class", eNewKind::eSignature, "S", "", "ND_missing",
        "\t<nodedef name=\"ND_S\" node=\"S\" uiname=\"S\" />\r\n");
    row("name of many signs", eNewKind::eSignature, "2 \xC3\xA4/\xE9\x95\xB7.\"", "", "",
        "\t<nodedef name=\"ND_node_2______\" node=\"node_2______\" uiname=\"2 \xC3\xA4/\xE9\x95\xB7.&quot;\" />\r\n");
    row("name of an element", eNewKind::eSignature, "input", "", "",
        "\t<nodedef name=\"ND_input_2\" node=\"input_2\" uiname=\"input\" />\r\n");
    row("name that is taken", eNewKind::eSignature, "there", "", "",
        "\t<nodedef name=\"ND_there_2\" node=\"there_2\" uiname=\"there\" />\r\n");
    row("no name", eNewKind::eSignature, "", "", "", "\t<nodedef name=\"ND_node_\" node=\"node_\" />\r\n");
}

void OperationsTest::newNode()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, category);
    QFETCH(QByteArray, inherit);
    QFETCH(QByteArray, elements);
    const QByteArray begin = "<materialx version='1.39'>\r\n\t<nodedef name='ND_there' node='there' />\r\n";
    Library library = MakeLibrary({{"d.mtlx", (begin + "</materialx>").toStdString()}});
    std::string nodeDef;
    const Plan plan = AddNode(
        library, 0,
        {static_cast<materialx::eNewKind>(kind), name.toStdString(), category.toStdString(), inherit.toStdString()},
        &nodeDef);
    CheckStep(library, plan, "d.mtlx", begin + elements + "</materialx>");
    Make(plan, library);
    const Item item = FindItem(library, nodeDef.substr(3));
    QVERIFY(item.m_specializes.empty());
    QCOMPARE(item.m_kind == materialx::eKind::eCompound, kind != static_cast<int>(materialx::eNewKind::eSignature));
    QCOMPARE(item.m_isLoop, kind == static_cast<int>(materialx::eNewKind::eLoopCompound));
    if (!name.isEmpty())
        QCOMPARE(Bytes(item.m_shownName), name);
}

void OperationsTest::identifiersAreNewInTheWholeLibrary()
{
    Library library = MakeLibrary(
        {{"a/d.mtlx", "<materialx><nodedef name='q' node='x'/><look name='x_2'/><implementation nodedef='ND_x_3'/>"
                      "</materialx>"},
         {"b/d.mtlx", "<materialx><nodegraph name='NG_x_4'><x_5 name='i'/></nodegraph></materialx>"},
         {"local/local.mtlx", "<materialx/>"}});
    for (const char* const expected : {"ND_x_6", "ND_x_7", "ND_x_8"})
    {
        std::string nodeDef;
        Make(AddNode(library, 2, {materialx::eNewKind::eCompound, "x", "", ""}, &nodeDef), library);
        QCOMPARE(Bytes(nodeDef), QByteArray(expected));
    }
}

void OperationsTest::newNodeInADocumentWithoutBytes()
{
    Library library = MakeLibrary({{"stdlib/d.mtlx", "<materialx/>"}});
    const std::size_t local = FindOrAddDocument(QStringLiteral("local/local.mtlx"), library);
    QCOMPARE(FindOrAddDocument(QStringLiteral("local/local.mtlx"), library), local);
    QCOMPARE(library.m_documents[local].m_file, QStringLiteral("/lib/local/local.mtlx"));
    const Plan plan = AddNode(library, local, {materialx::eNewKind::eCompound, "N", "", ""});
    CheckStep(library, plan, "local/local.mtlx",
              "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n"
              "  <nodedef name=\"ND_N\" node=\"N\" uiname=\"N\"/>\n"
              "  <nodegraph name=\"NG_N\" nodedef=\"ND_N\"/>\n</materialx>\n");
    Make(plan, library);
    QCOMPARE(FindItem(library, "N").m_tags, std::vector<std::string>{"local"});
}

void OperationsTest::compoundHasTheOutputsOfItsBase()
{
    Library library = MakeLibrary(
        {{"d.mtlx", "<materialx>\n  <nodedef name='B' node='b' inherit='A'><output name='o' type='float'/></nodedef>\n"
                    "  <nodedef name='A' node='a' inherit='B'>\n<input name='i'/><output name='o' type='color3'/>"
                    "<output name='p' type='a&amp;b'/></nodedef>\n</materialx>"}});
    const Plan plan = AddNode(library, 0, {materialx::eNewKind::eCompound, "N", "", "B"});
    Make(plan, library);
    QVERIFY(BytesAt(library, "d.mtlx")
                .endsWith("\n  <nodegraph name=\"NG_N\" nodedef=\"ND_N\">\n    <output name=\"o\" type=\"float\"/>\n"
                          "    <output name=\"p\" type=\"a&amp;b\"/>\n  </nodegraph>\n</materialx>"));
}

void OperationsTest::moveIntoTheDocumentOfTheSameName()
{
    const char from[] = "<materialx version='1'>\n  <!-- about n -->\n  <nodedef name='D' node='n' tags='t'>\n    "
                        "<input name='i'/>\n  </nodedef>\n\n  <nodedef name='E' node='m'/>\n  <nodegraph name='G'/>\n"
                        "  <implementation name='I' nodedef='D' nodegraph='G'/>\n</materialx>";
    const char to[] = "<materialx version='1'>\r\n\t<typedef name='t'/>\r\n</materialx>\r\n";
    Library library = MakeLibrary({{"a/defs.mtlx", from}, {"b/defs.mtlx", to}, {"b/x/defs.mtlx", "<materialx/>"}});
    const Plan plan = Move(library, FindItem(library, "n"), IndexOf(library, "b"));
    const std::string definition = std::string("\t") + gTagsDefinition + "\r\n";
    CheckStep(library, plan, "b/defs.mtlx",
              Bytes("<materialx version='1'>\r\n\t<typedef name='t'/>\r\n\t<!-- about n -->\r\n\t<nodedef name='D' "
                    "node='n' tags='t'>\r\n    <input name='i'/>\r\n  </nodedef>\r\n\t<nodegraph name='G'/>\r\n"
                    "\t<implementation name='I' nodedef='D' nodegraph='G'/>\r\n" +
                    definition + "</materialx>\r\n"));
    CheckStep(library, plan, "a/defs.mtlx", "<materialx version='1'>\n\n  <nodedef name='E' node='m'/>\n</materialx>");
    Make(plan, library);
    const Item moved = FindItem(library, "n");
    QCOMPARE(moved.m_source, IndexOf(library, "b"));
    QVERIFY(moved.m_kind == materialx::eKind::eCompound);
    const Plan again = Move(library, moved, IndexOf(library, "b"));
    QVERIFY(again.m_change.empty() && again.m_refusal.empty());
}

void OperationsTest::moveMakesADocument()
{
    Library library =
        MakeLibrary({{"a/defs.mtlx", "<materialx version='1.38'>\n  <nodedef name='D' node='n'/>\n</materialx>"},
                     {"a/graphs.mtlx", "<materialx version='1.38'>\n  <nodegraph name='G' nodedef='D'/>\n</materialx>"},
                     {"b/other.mtlx", "<materialx version='1.38'/>"}});
    const Plan plan = Move(library, FindItem(library, "n"), IndexOf(library, "b"));
    QCOMPARE(library.m_documents.size(), std::size_t(4));
    CheckStep(library, plan, "b/b.mtlx",
              "<?xml version=\"1.0\"?>\n<materialx version=\"1.38\">\n  <nodedef name='D' node='n'/>\n"
              "  <nodegraph name='G' nodedef='D'/>\n</materialx>\n");
    CheckStep(library, plan, "a/defs.mtlx", "<materialx version='1.38'>\n</materialx>");
    CheckStep(library, plan, "a/graphs.mtlx", "<materialx version='1.38'>\n</materialx>");
}

void OperationsTest::moveTakesAlongWhatTheDocumentSaid()
{
    Library library = MakeLibrary(
        {{"a/d.mtlx", "<materialx colorspace='acescg' fileprefix='a&amp;b/'>\n  <nodedef name='D' node='n'/>\n  "
                      "<nodegraph name='G' colorspace='raw' nodedef='D'/>\n  <typedef name='t'/>\n</materialx>"},
         {"b/d.mtlx", "<materialx colorspace='acescg'>\n</materialx>"}});
    const Plan plan = Move(library, FindItem(library, "n"), IndexOf(library, "b"));
    CheckStep(library, plan, "b/d.mtlx",
              "<materialx colorspace='acescg'>\n  <nodedef name='D' node='n' fileprefix='a&amp;b/'/>\n  "
              "<nodegraph name='G' colorspace='raw' nodedef='D' fileprefix='a&amp;b/'/>\n</materialx>");
    CheckStep(library, Move(library, FindItem(library, "t"), IndexOf(library, "b")), "b/d.mtlx",
              "<materialx colorspace='acescg'>\n  <typedef name='t'/>\n</materialx>");
}

void OperationsTest::elementsOfAnItem()
{
    const Library library = MakeLibrary(
        {{"b.mtlx", "<materialx><nodegraph name='G1'/><nodegraph name='G2' nodedef='D2'/><nodegraph name='G3'/>"
                    "</materialx>"},
         {"a.mtlx", "<materialx><nodedef name='D1' node='n'/><nodedef name='D2' node='n'/><nodedef name='D3' node='m'/>"
                    "<implementation name='I1' nodedef='D1' nodegraph='G1'/><implementation name='I2' nodedef='D2'/>"
                    "<implementation name='I3' nodegraph='G3'/></materialx>"}});
    const auto names = [&library](const char* in_item) {
        std::string found;
        for (const materialx::DeclarationIndex& index : ElementsOf(library, FindItem(library, in_item)))
            found += DeclarationOf(library, index).m_name + ' ';
        return Bytes(found);
    };
    QCOMPARE(names("n"), QByteArray("D1 D2 I1 I2 G1 G2 "));
    QCOMPARE(names("D1"), QByteArray("D1 I1 G1 "));
    QCOMPARE(names("m"), QByteArray("D3 "));
}

void OperationsTest::documentsOfItemsAreThoseOfTheirElements_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("corner cases") << QStringLiteral(TEST_DATA_FOLDER "/library");
    QTest::newRow("a small library") << QStringLiteral(TEST_DATA_FOLDER "/observatory");
}

void OperationsTest::documentsOfItemsAreThoseOfTheirElements()
{
    QFETCH(QString, folder);
    Library library;
    QVERIFY(!ReadLibrary(folder, library));
    const std::vector<Item> items = MakeItems(library);
    const materialx::ItemDocuments all = DocumentsOf(library, items);
    QCOMPARE(all.GetSize(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        std::set<std::size_t> documents;
        for (const materialx::DeclarationIndex& element : ElementsOf(library, items[i]))
            documents.insert(element.m_document);
        QVERIFY2(std::equal(all[i].begin(), all[i].end(), documents.begin(), documents.end()), items[i].m_name.c_str());
    }
}

void OperationsTest::documentsOfManyElementsOfOneName_data()
{
    // Each line once for each number, which stands for "%".
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("definitions and implementations")
        << QByteArray("<nodedef name='ND' node='n%'/><implementation nodedef='ND'/>");
    QTest::newRow("definitions of one node") << QByteArray("<nodedef name='ND' node='n'/><nodegraph nodedef='ND'/>");
    QTest::newRow("implementations that name one graph")
        << QByteArray("<nodedef name='ND' node='n%'/><implementation nodedef='ND' nodegraph='NG'/>"
                      "<nodegraph name='NG'/>");
    QTest::newRow("implementations that name many graphs")
        << QByteArray("<nodedef name='ND' node='n%'/><implementation nodedef='ND' nodegraph='NG%'/>"
                      "<nodegraph name='NG%'/>");
}

void OperationsTest::documentsOfManyElementsOfOneName()
{
    QFETCH(QByteArray, lines);
    const double growth = GrowthOf(
        [&lines](int in_size) {
            QByteArray text = "<materialx>";
            for (int i = 0; i < in_size; ++i)
                text += QByteArray(lines).replace('%', QByteArray::number(i));
            auto library = std::make_shared<Library>(MakeLibrary({{"a.mtlx", (text + "</materialx>").toStdString()}}));
            return [library, items = MakeItems(*library)] {
                const materialx::ItemDocuments all = DocumentsOf(*library, items);
                for (std::size_t i = 0; i < items.size(); ++i)
                    if (all[i].end() - all[i].begin() != 1 || *all[i].begin() != 0)
                        throw std::runtime_error("These are not the documents");
            };
        },
        5000);
    QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
}

void OperationsTest::removedElementsTakeTheirCommentsAlong()
{
    Library library = MakeLibrary({{"a.mtlx", "<materialx>\n  <!-- one -->\n  <nodedef name='ND_n' node='n'/>\n\n"
                                              "  <nodedef name='ND_m' node='m'/>\n</materialx>\n"},
                                   {"b.mtlx", "<materialx>\n  <implementation name='I' nodedef='ND_n' nodegraph='G'/>\n"
                                              "  <nodegraph name='G'/>\n</materialx>\n"}});
    const std::vector<std::string> before = BytesOf(library);
    const Plan plan = Remove(library, FindItem(library, "n"));
    Make(plan, library);
    QCOMPARE(BytesAt(library, "a.mtlx"),
             QByteArray("<materialx>\n\n  <nodedef name='ND_m' node='m'/>\n</materialx>\n"));
    QCOMPARE(BytesAt(library, "b.mtlx"), QByteArray("<materialx>\n</materialx>\n"));
    QVERIFY(!Apply(Inverse(plan.m_change), library));
    QVERIFY(BytesOf(library) == before);
}

void OperationsTest::whatOthersNeedIsNotRemoved()
{
    const Library library =
        MakeLibrary({{"a.mtlx", "<materialx><nodedef name='A1' node='a'/><nodedef name='A2' node='a'/>"
                                "<nodedef name='B' node='b'/><nodedef name='C' node='c'/>"
                                "<implementation name='I' nodedef='B' nodegraph='G'/>"
                                "<implementation name='J' nodedef='C' nodegraph='G'/><nodegraph name='G'/>"
                                "<unitdef unittype='t'><unit name='u'/></unitdef></materialx>"}});
    for (const char* const name : {"a", "b", "c", "u"})
        QVERIFY2(!Remove(library, FindItem(library, name)).m_refusal.empty(), name);
}

void OperationsTest::documentsInOtherEncodingsAreRefused_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << false;
    QTest::newRow("Latin-1") << QByteArray("ISO-8859-1") << true;
    QTest::newRow("ASCII") << QByteArray("US-ASCII") << true; // it lacks what an edit may bring
    QTest::newRow("ASCII, short") << QByteArray("ascii") << true;
}

void OperationsTest::documentsInOtherEncodingsAreRefused()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, isRefused);
    Library library = MakeLibrary({{"a.mtlx", ("<?xml version='1.0' encoding='" + encoding +
                                               "'?><materialx><nodedef name='D' node='n'/></materialx>")
                                                  .toStdString()}});
    const Plan plan = Rename(library, FindItem(library, "n"), "\xC3\xA4");
    QCOMPARE(plan.m_refusal, isRefused ? std::string(materialx::gNotUtf8) : std::string());
    QCOMPARE(plan.m_change.empty(), isRefused);
    if (isRefused)
        QVERIFY(Apply({{0, {40, "", " "}}}, library));
}

void OperationsTest::refusals()
{
    Library library = MakeLibrary(
        {{"a/d.mtlx", "<materialx version='1'><nodedef name='D' node='n'/><typedef name='t'/><unitdef><unit name='u'/>"
                      "</unitdef><nodegraph name='g'><n name='i'/></nodegraph></materialx>"},
         {"b/d.mtlx", "<materialx version='2'/>"},
         {"c/d.mtlx", "<materialx version='1' namespace='c'/>"},
         {"d/d.mtlx", "<materialx version='1' colorspace='acescg'/>"},
         {"e/d.mtlx", "<?xml version='1.0' encoding='ISO-8859-1'?><materialx version='1'><nodegraph name='\xE4'/>"
                      "</materialx>"}});
    const auto isRefused = [](const Plan& in_plan) { return !in_plan.m_refusal.empty() && in_plan.m_change.empty(); };
    const Item node = FindItem(library, "n");
    QVERIFY(isRefused(Rename(library, FindItem(library, "t"), "x")));
    QVERIFY(isRefused(SetTags(library, FindItem(library, "u"), "x")));
    Item inner = node;
    inner.m_parent = "g";
    QVERIFY(isRefused(Rename(library, inner, "x")));
    QVERIFY(isRefused(Move(library, inner, IndexOf(library, "d"))));
    QVERIFY(isRefused(Move(library, FindItem(library, "u"), IndexOf(library, "b"))));
    QVERIFY(isRefused(Rename(library, node, "a\x01")));
    QVERIFY(isRefused(Rename(library, node, "\xE4")));
    QVERIFY(isRefused(SetTags(library, node, std::string(1, '\0'))));
    QVERIFY(isRefused(AddNode(library, 0, {materialx::eNewKind::eCompound, "\x1B", "", ""})));
    QVERIFY(isRefused(AddNode(library, 4, {materialx::eNewKind::eCompound, "x", "", ""})));
    QVERIFY(isRefused(Rename(library, FindItem(library, "\xC3\xA4"), "x")));
    for (const char* const source : {"b", "c", "d", "e"})
        QVERIFY2(isRefused(Move(library, node, IndexOf(library, source))), source);
    QVERIFY(!isRefused(Rename(library, node, "x")));
}

void OperationsTest::failedChangeChangesNothing()
{
    Library library = MakeLibrary({{"a.mtlx", "<materialx><a/></materialx>"}, {"b.mtlx", "<materialx/>"}});
    const std::vector<std::string> before = BytesOf(library);
    const materialx::Change changes[] = {
        {{0, {11, "<a/>", "<b/>"}}, {1, {0, "<materialx/>", "<materialx>"}}},
        {{0, {11, "<a/>", ""}}, {0, {11, "", "<!-- "}}},
        {{0, {11, "", "<typedef name='t'/>"}}, {0, {11, "not there", ""}}},
        {{1, {0, "", " "}}, {1, {100, "", "x"}}},
        {{0, {11, "<a/>", "&e;"}}},
        {{0, {0, "", "<?xml version='1.0' encoding='ISO-8859-1'?>"}}},
    };
    for (const materialx::Change& change : changes)
    {
        QVERIFY(Apply(change, library));
        QVERIFY(BytesOf(library) == before);
        QCOMPARE(library.m_documents[0].m_document.GetDeclarations().size(), std::size_t(1));
    }
}

void OperationsTest::differences()
{
    Library library = MakeLibrary({{"d.mtlx", "<materialx><nodedef name='D' node='n'/><typedef name='t'/>"
                                              "<nodegraph name='g'/></materialx>"}});
    const std::vector<Item> before = MakeItems(library);
    QVERIFY(Compare(before, before).IsEmpty());
    Make(Rename(library, FindItem(library, "n"), "N"), library);
    Make(AddNode(library, 0, {materialx::eNewKind::eSignature, "new", "", ""}), library);
    const auto graph = library.m_documents[0].m_document.GetDeclarations().at(2).m_span;
    QVERIFY(!Apply({{0, RemoveElement(library.m_documents[0].m_document, graph)}}, library));
    const std::vector<Item> after = MakeItems(library);
    const materialx::Differences differences = Compare(before, after);
    QCOMPARE(differences.m_gone.size(), std::size_t(1));
    QCOMPARE(Bytes(before[differences.m_gone[0]].m_name), QByteArray("g"));
    QCOMPARE(differences.m_new.size(), std::size_t(1));
    QCOMPARE(Bytes(after[differences.m_new[0]].m_name), QByteArray("new"));
    QCOMPARE(differences.m_changed.size(), std::size_t(1));
    QCOMPARE(Bytes(after[differences.m_changed[0].second].m_shownName), QByteArray("N"));
}

void OperationsTest::differenceOfBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("difference");
    const auto row = [](const char* in_name, const char* in_bytes, const char* in_difference) {
        QTest::newRow(in_name) << QByteArray(in_bytes) << QByteArray(in_difference);
    };
    row("same", "<materialx>\n<nodedef name='D' node='n' uiname='U'/></materialx>", "");
    row("written in another way", "<materialx><!-- c --><nodedef node='&#110;' name=\"D\" uiname='U'/></materialx>",
        "");
    row("other name", "<materialx>\n<nodedef name='D' node='n' uiname='V'/></materialx>", "Line 2: The element \"D\"");
    row("tags", "<materialx>\n<nodedef name='D' node='n' uiname='U' tags=''/></materialx>",
        "Line 2: The element \"D\"");
    row("one more", "<materialx><nodedef name='D' node='n' uiname='U'/><look/></materialx>", "There are 2 elements");
    row("cut", "<materialx>\n<nodedef name='D' node='n'", "Line 2: The document ends");
    row("nothing", "", "Line 1: ");
}

void OperationsTest::differenceOfBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, difference);
    const materialx::Document document =
        MakeDocument("<materialx>\n<nodedef name='D' node='n' uiname='U'/></materialx>");
    const std::optional<std::string> found = FindDifference(document, bytes.toStdString());
    QCOMPARE(found.has_value(), !difference.isEmpty());
    QVERIFY2(!found || Bytes(*found).startsWith(difference), found ? found->c_str() : "");
}

NODEBROWSER_TEST_MAIN(OperationsTest)
#include "test_operations.moc"
