// SPDX-License-Identifier: MIT
// What the library and the boundary in front of it show of documents.

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/item.h"
#include "datamodel/itemtoc.h"
#include "tests/support/costs.h"
#include "tests/support/testmain.h"
#include "tests/workspace/openedfolder.h"

#include <algorithm>
#include <map>

using memorymodel::Library;
using vireo::datamodel::ItemID;

namespace
{

/// The kind in the library, by what the boundary tells of the item.
std::string KindOf(vireo::datamodel::ItemAccessor& in_item)
{
    using namespace vireo::datamodel;
    const char* const type = in_item.GetItemID().GetType();
    if (type == LibType::gType)
        return "type";
    if (type == VireoType::gGlobalConstant)
        return "constant";
    if (type == VireoType::gPolymorphicSolver)
        return "polymorphic";
    if (type == VireoType::gSolver)
        return "solver";
    return Helpers::IsAbstractFunction(in_item) ? "signature" : "compound";
}

/// The names of the listed items, that is, those without "Parent" and "Specializes", by kind.
std::map<std::string, QStringList> ListedNames(const Library& in_library)
{
    using namespace vireo::datamodel;
    const ItemTOCAccessor toc = GetTOC(in_library.GetAccessor());
    std::map<std::string, QStringList> names;
    for (const char* const type : {LibType::gType, VireoType::gGlobalConstant, VireoType::gPolymorphicSolver,
                                   VireoType::gSolver, VireoType::gCompound})
        for (ItemIterator items = toc.IterateItems(type); !items.IsAtEnd(); items.Next())
        {
            ItemAccessor item = items.GetItem();
            if (item.GetValue(gParentKey).IsValid() || item.GetValue(gSpecializesKey).IsValid())
                continue;
            const std::string name = in_library.GetAccessor().GetItemName(item.GetItemID(), true, nullptr);
            names[KindOf(item)].append(QString::fromLatin1(name.c_str()));
        }
    return names;
}

QStringList Words(const char* in_words)
{
    return QString::fromLatin1(in_words).split(QLatin1Char(' '));
}

std::string TagsOf(const Library& in_library, const char* in_name)
{
    return in_library.GetAccessor().GetItemTags(in_library.FindByName(in_name), vireo::datamodel::gApplicationTagsKey);
}

std::string SourceOf(const Library& in_library, const char* in_name)
{
    const memorymodel::DataSource* source = in_library.GetSourceOf(in_library.FindByName(in_name));
    return source ? source->GetName() : std::string();
}

/// The folder with the node libraries of the standard; a variable of the environment may name another place.
QString StandardLibraryFolder()
{
    const QString named = qEnvironmentVariable("NODEBROWSER_MATERIALX_FOLDER");
    return named.isEmpty() ? QStringLiteral(STANDARD_LIBRARY_FOLDER) : named;
}

} // namespace

/// What the library and the boundary in front of it show of a content.
class TestOpening : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindIsListedAsItself();
    void everyItemOfAWholeLibraryIsListed();
    void tagsReachTheLibrary();
    void sourcesOfTheLibrary();
    void newItemsGoToLocal();
    void textBecomesLatin1_data();
    void textBecomesLatin1();
    void aDocumentWithoutItems();
    void aHundredThousandItemsAreAllAdded();
    void manyItemsOfOneName();
    void standardLibrariesHave266ListedItems();
    void standardLibrariesTagsAndSources();
};

void TestOpening::everyKindIsListedAsItself()
{
    Opened opened(QStringLiteral(TEST_DATA_FOLDER "/library"));
    std::map<std::string, QStringList> names = ListedNames(opened.GetLibrary());
    QCOMPARE(names["type"], Words("float color3 ramp") + QStringList(QString::fromLatin1("Gr\xF6\xDF"
                                                                                         "e ??")));
    QCOMPARE(names["constant"], Words("meter furlong step"));
    QCOMPARE(names["polymorphic"], Words("blend twice shade"));
    QCOMPARE(names["solver"], Words("noise ripple"));
    QCOMPARE(names["compound"], Words("tint wood both free lamp"));
    QCOMPARE(names["signature"], Words("lamp nameless"));
    QCOMPARE(opened.GetLibrary().GetItemCount(), std::size_t(30));
}

void TestOpening::everyItemOfAWholeLibraryIsListed()
{
    Opened opened(QStringLiteral(TEST_DATA_FOLDER "/observatory"));
    std::map<std::string, QStringList> names = ListedNames(opened.GetLibrary());
    QCOMPARE(names["type"], Words("photon starlight float color3 surfaceshader"));
    QCOMPARE(names["constant"], Words("parsec degree radian"));
    QCOMPARE(names["polymorphic"], Words("mix add"));
    QCOMPARE(names["solver"], Words("twinkle noise2d"));
    QCOMPARE(names["compound"], Words("lens night_sky checkerboard kaleidoscope milky_way"));
    QCOMPARE(names["signature"], Words("aurora surface_unlit"));
    QCOMPARE(names.size(), std::size_t(6));
    QCOMPARE(opened.GetLibrary().GetItemCount(), std::size_t(34));

    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : opened.GetLibrary().GetDataSources())
        sources.append(QString::fromLatin1(source->GetName().c_str()));
    QCOMPARE(sources, Words("Local glass observatory sky stdlib"));
    QCOMPARE(opened.GetLibrary().GetDataSources().back()->GetFlags(),
             unsigned(memorymodel::eReadOnlySource | memorymodel::eFactorySource));
    QCOMPARE(TagsOf(opened.GetLibrary(), "surfaceshader"), std::string("shader"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "parsec"), std::string("distance"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "noise2d"), std::string("procedural2d;stdlib"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "add"), std::string("astronomy;math;sky;stdlib"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "noise2d"), std::string("stdlib"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "add"), std::string("sky"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "mix"), std::string("observatory"));
}

void TestOpening::tagsReachTheLibrary()
{
    Opened opened(QStringLiteral(TEST_DATA_FOLDER "/library"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "float"), std::string());
    QCOMPARE(TagsOf(opened.GetLibrary(), "color3"), std::string("color"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "meter"), std::string("distance"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "blend"), std::string("math;compositing;ramps;alpha"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "free"), std::string("beta"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "Gr\xF6\xDF"
                                         "e ??"),
             std::string("Ma\xDF"));
}

void TestOpening::sourcesOfTheLibrary()
{
    Opened opened(QStringLiteral(TEST_DATA_FOLDER "/library"));
    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : opened.GetLibrary().GetDataSources())
        sources.append(QStringLiteral("%1 %2")
                           .arg(QString::fromLatin1(source->GetName().c_str()))
                           .arg(source->GetFlags() & memorymodel::eFactorySource));
    QCOMPARE(sources, QStringList() << QStringLiteral("Local 0") << QStringLiteral("alpha 0")
                                    << QStringLiteral("beta 0") << QStringLiteral("library 0")
                                    << QStringLiteral("stdlib 2"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "blend"), std::string("alpha"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "ripple"), std::string("library"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "shade"), std::string("stdlib"));
    for (const ItemID& item : opened.GetLibrary().GetItems())
        QVERIFY(opened.GetLibrary().GetSourceOf(item)->GetName() != "Local");
}

void TestOpening::newItemsGoToLocal()
{
    const DocumentFolder folder;
    CopyDocuments(QStringLiteral(TEST_DATA_FOLDER "/library"), folder);
    Opened opened(folder.GetPath());
    vireo::datamodel::CompoundModifierAccessor modifier;
    const ItemID item =
        modifier.CreateAndSetFromNewCompound(opened.GetLibrary().GetAccessor(), "Mine", false, "", "", nullptr);
    QVERIFY(item.IsValid());
    QCOMPARE(SourceOf(opened.GetLibrary(), "Mine"), std::string("Local"));
    QVERIFY(!opened.GetLibrary().GetAccessor().ItemIsReadOnly(item));
}

void TestOpening::textBecomesLatin1_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("latin1");
    QTest::newRow("ASCII") << QStringLiteral("a b_c") << QByteArray("a b_c");
    QTest::newRow("last of Latin-1") << QString(QChar(0xFF)) << QByteArray("\xFF");
    QTest::newRow("first beyond it") << QString(QChar(0x100)) << QByteArray("?");
    QTest::newRow("two units, one character") << QString::fromUtf8("x\xF0\x9F\x98\x80y") << QByteArray("x?y");
    QTest::newRow("two such characters") << QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x98\x80") << QByteArray("??");
    QTest::newRow("base and accent") << QString::fromUtf8("e\xCC\x81") << QByteArray("e?");
    QTest::newRow("tab and line end") << QStringLiteral("a\tb\nc") << QByteArray("a\tb\nc");
}

void TestOpening::textBecomesLatin1()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, latin1);
    const DocumentFolder folder;
    const QByteArray value = text.toHtmlEscaped().toUtf8().replace("\t", "&#9;").replace("\n", "&#10;");
    folder.Write(QStringLiteral("a.mtlx"), "<materialx version=\"1.39\"><nodedef name=\"ND_a\" node=\"a\" uiname=\"" +
                                               value + "\" tags=\"" + value + "\"/></materialx>");
    Opened opened(folder.GetPath());
    const ItemID item = opened.GetLibrary().GetItems().at(0);
    QCOMPARE(opened.Get().GetItemName(item, true, nullptr), latin1.toStdString());
    QCOMPARE(opened.Get().GetItemTags(item, vireo::datamodel::gApplicationTagsKey), latin1.toStdString());
}

void TestOpening::aDocumentWithoutItems()
{
    const DocumentFolder folder;
    folder.Write(QStringLiteral("a.mtlx"), "<materialx version=\"1.39\"/>");
    Opened opened(folder.GetPath());
    QCOMPARE(opened.GetLibrary().GetItemCount(), std::size_t(0));
    QCOMPARE(opened.GetLibrary().GetDataSources().size(), std::size_t(2));
    QCOMPARE(opened.GetLibrary().GetDataSources()[0]->GetName(), std::string("Local"));
}

void TestOpening::aHundredThousandItemsAreAllAdded()
{
    QByteArray document = "<materialx version=\"1.39\">\n";
    for (int i = 0; i < 100000; ++i)
        document += "<nodedef name=\"ND_" + QByteArray::number(i) + "\" node=\"n" + QByteArray::number(i) + "\"/>\n";
    const DocumentFolder folder;
    folder.Write(QStringLiteral("a.mtlx"), document + "</materialx>\n");
    QCOMPARE(Opened(folder.GetPath()).GetLibrary().GetItemCount(), std::size_t(100000));
}

void TestOpening::manyItemsOfOneName()
{
    const double growth = GrowthOf(
        [](int in_size) {
            const auto folder = std::make_shared<DocumentFolder>();
            const QByteArray line = "<nodedef name=\"ND\" node=\"n\"/><nodegraph name=\"ND\" nodedef=\"ND\"/>\n";
            const QString path = folder->Write(QStringLiteral("a.mtlx"), "<materialx version=\"1.39\">\n" +
                                                                             line.repeated(in_size) + "</materialx>");
            return [folder, path, in_size] {
                if (Opened(path).GetLibrary().GetItemCount() != std::size_t(in_size) + 1)
                    throw std::runtime_error("These are not the items");
            };
        },
        25000);
    QVERIFY2(growth < gMostGrowth, qPrintable(QString::number(growth)));
}

void TestOpening::standardLibrariesHave266ListedItems()
{
    if (!QFileInfo(StandardLibraryFolder()).isDir())
        QSKIP("The node libraries of the standard are not there");
    Opened opened(StandardLibraryFolder());
    std::map<std::string, QStringList> names = ListedNames(opened.GetLibrary());
    QCOMPARE(names["type"].size(), 31);
    QCOMPARE(names["polymorphic"].size(), 111);
    QCOMPARE(names["solver"].size(), 53);
    QCOMPARE(names["compound"].size(), 50);
    QCOMPARE(names["signature"].size(), 9);
    QCOMPARE(names["constant"].size(), 12);
    QCOMPARE(names.size(), std::size_t(6));
    QCOMPARE(names["signature"], Words("point_light directional_light spot_light conical_edf measured_edf "
                                       "absorption_vdf volume light volumematerial"));
}

void TestOpening::standardLibrariesTagsAndSources()
{
    if (!QFileInfo(StandardLibraryFolder()).isDir())
        QSKIP("The node libraries of the standard are not there");
    Opened opened(StandardLibraryFolder());
    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : opened.GetLibrary().GetDataSources())
        sources.append(QString::fromLatin1(source->GetName().c_str()));
    QCOMPARE(sources, Words("Local bxdf cmlib lights nprlib pbrlib stdlib"));
    QCOMPARE(opened.GetLibrary().GetDataSources().back()->GetFlags(),
             unsigned(memorymodel::eReadOnlySource | memorymodel::eFactorySource));
    QCOMPARE(TagsOf(opened.GetLibrary(), "surfaceshader"), std::string("shader"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "inch"), std::string("distance"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "noise2d"), std::string("procedural2d;stdlib"));
    QCOMPARE(TagsOf(opened.GetLibrary(), "add"), std::string("pbr;math;pbrlib;stdlib"));
    QCOMPARE(SourceOf(opened.GetLibrary(), "noise2d"), std::string("stdlib"));
}

NODEBROWSER_TEST_MAIN(TestOpening)
#include "test_opening.moc"
