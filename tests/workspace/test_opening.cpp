// SPDX-License-Identifier: MIT
#include "host/materialxitems.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/item.h"
#include "datamodel/itemtoc.h"
#include "memorymodel/datalayer.h"
#include "tests/materialx/documents.h"
#include "tests/support/testmain.h"

#include <algorithm>
#include <map>

using materialx::eKind;
using materialx::Item;
using memorymodel::Library;
using vireo::datamodel::ItemID;

namespace
{

/// Documents and their items.
struct Content
{
    materialx::Library m_documents;
    std::vector<Item> m_items;
};

/// A data layer with one library that the content went into.
struct FilledLibrary
{
    explicit FilledLibrary(const Content& in_content) : m_library(m_layer.AddLibrary("Test"))
    {
        host::AddItems(in_content.m_documents, in_content.m_items, m_library);
    }

    memorymodel::DataLayer m_layer;
    Library& m_library;
};

Content ReadOrThrow(const QString& in_path)
{
    Content content;
    if (const std::optional<materialx::Error> error = materialx::ReadLibrary(in_path, content.m_documents))
        throw std::runtime_error(error->GetText().toStdString());
    content.m_items = MakeItems(content.m_documents);
    return content;
}

Content MakeContent(const std::vector<Item>& in_items)
{
    Content content;
    content.m_documents.m_sources.push_back({QStringLiteral("source"), QStringLiteral("/a/source"), QString()});
    content.m_items = in_items;
    return content;
}

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
class MaterialXItemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindIsListedAsItself();
    void everyItemOfAWholeLibraryIsListed();
    void tagsReachTheLibrary();
    void sourcesOfTheLibrary();
    void newItemsGoToLocal();
    void importedItemsAreReadOnly();
    void textBecomesLatin1_data();
    void textBecomesLatin1();
    void contentWithoutItems();
    void aHundredThousandItemsAreAllAdded();
    void standardLibrariesHave266ListedItems();
    void standardLibrariesTagsAndSources();
};

void MaterialXItemsTest::everyKindIsListedAsItself()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/library")));
    std::map<std::string, QStringList> names = ListedNames(filled.m_library);
    QCOMPARE(names["type"], Words("float color3 ramp") + QStringList(QString::fromLatin1("Gr\xF6\xDF"
                                                                                         "e ??")));
    QCOMPARE(names["constant"], Words("meter furlong step"));
    QCOMPARE(names["polymorphic"], Words("blend twice shade"));
    QCOMPARE(names["solver"], Words("noise ripple"));
    QCOMPARE(names["compound"], Words("tint wood both free lamp"));
    QCOMPARE(names["signature"], Words("lamp nameless"));
    QCOMPARE(filled.m_library.GetItemCount(), std::size_t(30));
}

void MaterialXItemsTest::everyItemOfAWholeLibraryIsListed()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/observatory")));
    std::map<std::string, QStringList> names = ListedNames(filled.m_library);
    QCOMPARE(names["type"], Words("photon starlight float color3 surfaceshader"));
    QCOMPARE(names["constant"], Words("parsec degree radian"));
    QCOMPARE(names["polymorphic"], Words("mix add"));
    QCOMPARE(names["solver"], Words("twinkle noise2d"));
    QCOMPARE(names["compound"], Words("lens night_sky checkerboard kaleidoscope milky_way"));
    QCOMPARE(names["signature"], Words("aurora surface_unlit"));
    QCOMPARE(names.size(), std::size_t(6));
    QCOMPARE(filled.m_library.GetItemCount(), std::size_t(34));

    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : filled.m_library.GetDataSources())
        sources.append(QString::fromLatin1(source->GetName().c_str()));
    QCOMPARE(sources, Words("Local glass observatory sky stdlib"));
    QCOMPARE(filled.m_library.GetDataSources().back()->GetFlags(),
             unsigned(memorymodel::eReadOnlySource | memorymodel::eFactorySource));
    QCOMPARE(TagsOf(filled.m_library, "surfaceshader"), std::string("shader"));
    QCOMPARE(TagsOf(filled.m_library, "parsec"), std::string("distance"));
    QCOMPARE(TagsOf(filled.m_library, "noise2d"), std::string("procedural2d;stdlib"));
    QCOMPARE(TagsOf(filled.m_library, "add"), std::string("astronomy;math;sky;stdlib"));
    QCOMPARE(SourceOf(filled.m_library, "noise2d"), std::string("stdlib"));
    QCOMPARE(SourceOf(filled.m_library, "add"), std::string("sky"));
    QCOMPARE(SourceOf(filled.m_library, "mix"), std::string("observatory"));
}

void MaterialXItemsTest::tagsReachTheLibrary()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/library")));
    QCOMPARE(TagsOf(filled.m_library, "float"), std::string());
    QCOMPARE(TagsOf(filled.m_library, "color3"), std::string("color"));
    QCOMPARE(TagsOf(filled.m_library, "meter"), std::string("distance"));
    QCOMPARE(TagsOf(filled.m_library, "blend"), std::string("math;compositing;ramps;alpha"));
    QCOMPARE(TagsOf(filled.m_library, "free"), std::string("beta"));
    QCOMPARE(TagsOf(filled.m_library, "Gr\xF6\xDF"
                                      "e ??"),
             std::string("Ma\xDF"));
}

void MaterialXItemsTest::sourcesOfTheLibrary()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/library")));
    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : filled.m_library.GetDataSources())
        sources.append(
            QStringLiteral("%1 %2").arg(QString::fromLatin1(source->GetName().c_str())).arg(source->GetFlags()));
    QCOMPARE(sources, QStringList() << QStringLiteral("Local 0") << QStringLiteral("alpha 1")
                                    << QStringLiteral("beta 1") << QStringLiteral("library 1")
                                    << QStringLiteral("stdlib 3"));
    QCOMPARE(SourceOf(filled.m_library, "blend"), std::string("alpha"));
    QCOMPARE(SourceOf(filled.m_library, "ripple"), std::string("library"));
    QCOMPARE(SourceOf(filled.m_library, "shade"), std::string("stdlib"));
    for (const ItemID& item : filled.m_library.GetItems())
        QVERIFY(filled.m_library.GetSourceOf(item)->GetName() != "Local");
}

void MaterialXItemsTest::newItemsGoToLocal()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/library")));
    vireo::datamodel::CompoundModifierAccessor modifier;
    const ItemID item =
        modifier.CreateAndSetFromNewCompound(filled.m_library.GetAccessor(), "Mine", false, "", "", nullptr);
    QVERIFY(item.IsValid());
    QCOMPARE(SourceOf(filled.m_library, "Mine"), std::string("Local"));
    QVERIFY(!filled.m_library.GetAccessor().ItemIsReadOnly(item));
}

void MaterialXItemsTest::importedItemsAreReadOnly()
{
    const FilledLibrary filled(ReadOrThrow(QStringLiteral(TEST_DATA_FOLDER "/library")));
    QVERIFY(filled.m_library.GetItemCount() > 0);
    for (const ItemID& item : filled.m_library.GetItems())
        QVERIFY(filled.m_library.GetAccessor().ItemIsReadOnly(item));
}

void MaterialXItemsTest::textBecomesLatin1_data()
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

void MaterialXItemsTest::textBecomesLatin1()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, latin1);
    Item described;
    described.m_shownName = text.toStdString();
    described.m_tags = {text.toStdString()};
    const FilledLibrary filled(MakeContent({described}));
    const ItemID item = filled.m_library.GetItems().at(0);
    const vireo::datamodel::ItemLibraryAccessor library = filled.m_library.GetAccessor();
    QCOMPARE(library.GetItemName(item, true, nullptr), latin1.toStdString());
    QCOMPARE(library.GetItemTags(item, vireo::datamodel::gApplicationTagsKey), latin1.toStdString());
}

void MaterialXItemsTest::contentWithoutItems()
{
    const FilledLibrary filled((Content()));
    QCOMPARE(filled.m_library.GetItemCount(), std::size_t(0));
    QCOMPARE(filled.m_library.GetDataSources().size(), std::size_t(1));
    QCOMPARE(filled.m_library.GetDataSources()[0]->GetName(), std::string("Local"));
}

void MaterialXItemsTest::aHundredThousandItemsAreAllAdded()
{
    Item item;
    item.m_kind = eKind::eSolver;
    item.m_shownName = "n";
    item.m_tags = {"t"};
    const FilledLibrary filled(MakeContent(std::vector<Item>(100000, item)));
    QCOMPARE(filled.m_library.GetItemCount(), std::size_t(100000));
}

void MaterialXItemsTest::standardLibrariesHave266ListedItems()
{
    if (!QFileInfo(StandardLibraryFolder()).isDir())
        QSKIP("The node libraries of the standard are not there");
    const FilledLibrary filled(ReadOrThrow(StandardLibraryFolder()));
    std::map<std::string, QStringList> names = ListedNames(filled.m_library);
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

void MaterialXItemsTest::standardLibrariesTagsAndSources()
{
    if (!QFileInfo(StandardLibraryFolder()).isDir())
        QSKIP("The node libraries of the standard are not there");
    const FilledLibrary filled(ReadOrThrow(StandardLibraryFolder()));
    QStringList sources;
    for (const std::shared_ptr<memorymodel::DataSource>& source : filled.m_library.GetDataSources())
        sources.append(QString::fromLatin1(source->GetName().c_str()));
    QCOMPARE(sources, Words("Local bxdf cmlib lights nprlib pbrlib stdlib"));
    QCOMPARE(filled.m_library.GetDataSources().back()->GetFlags(),
             unsigned(memorymodel::eReadOnlySource | memorymodel::eFactorySource));
    QCOMPARE(TagsOf(filled.m_library, "surfaceshader"), std::string("shader"));
    QCOMPARE(TagsOf(filled.m_library, "inch"), std::string("distance"));
    QCOMPARE(TagsOf(filled.m_library, "noise2d"), std::string("procedural2d;stdlib"));
    QCOMPARE(TagsOf(filled.m_library, "add"), std::string("pbr;math;pbrlib;stdlib"));
    QCOMPARE(SourceOf(filled.m_library, "noise2d"), std::string("stdlib"));
}

NODEBROWSER_TEST_MAIN(MaterialXItemsTest)
#include "test_materialxitems.moc"
