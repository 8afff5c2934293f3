// SPDX-License-Identifier: MIT
#include "nodebrowser/browseritem.h"
#include "nodebrowser/dbobject.h"
#include "nodebrowser/stateicon.h"

#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/records.h"
#include "tests/nodebrowser/support/spylayer.h"
#include "tests/support/testmain.h"

#include <QImage>

#include <memory>

using namespace nodebrowser;
using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIterator;

namespace
{

const char* const gFirstFactory = "D2BA853A-8668-704A-A121-1F7DE917B664";
const char* const gSecondFactory = "34F315D3-58CF-4019-9BE3-381FCED0E983";
const char* const gGivenId = "01234567-89AB-CDEF-0123-456789ABCDEF";

/// The accessor of an item, found by its name.
ItemAccessor FindItem(const memorymodel::Library& in_library, const ItemID& in_item)
{
    ItemIterator item = vireo::datamodel::GetTOC(in_library.GetAccessor()).IterateItems(in_item.GetType());
    while (!item.IsAtEnd() && item.GetItem().GetItemID() != in_item)
        item.Next();
    return item.GetItem();
}

/// A data source whose state a test sets.
class FakeSource : public nexa4::IDataSource
{
public:
    int GetState() const override { return m_state; }
    int m_state = 0;
};

/// An asset that counts how often it is asked whether it is built in.
class FakeAsset : public nexa4::ITypeAsset
{
public:
    nexa4::DbObjectId GetDbObjectId() const override { return nexa4::DbObjectId(gGivenId); }
    nexa4::NEXAPtr<nexa4::IDataSource> GetDataSource() const override { return m_source; }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override { return nexa4::NEXAPtr<nexa4::IDataModelMgr>(); }
    bool IsLoaded() const override { return m_loaded; }
    bool IsBuiltIn() const override
    {
        ++m_queries;
        return m_builtIn;
    }

    nexa4::NEXAPtr<nexa4::IDataSource> m_source;
    bool m_loaded = true;
    bool m_builtIn = false;
    mutable int m_queries = 0;
};

/// A database object that is no asset.
class FakeObject : public nexa4::IDbObject
{
public:
    nexa4::DbObjectId GetDbObjectId() const override { return nexa4::DbObjectId(gGivenId); }
    nexa4::NEXAPtr<nexa4::IDataSource> GetDataSource() const override { return m_source; }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override { return nexa4::NEXAPtr<nexa4::IDataModelMgr>(); }

    nexa4::NEXAPtr<nexa4::IDataSource> m_source;
};

/// The helper of the data layer, which notes look-ups and knows one object more.
class SpyHelper : public nexa4::IRevisionControlUIHelper
{
public:
    explicit SpyHelper(nexa4::IRevisionControlUIHelper* in_watched) : m_watched(in_watched) {}

    void CheckOut(const nexa4::NEXAHandle<nexa4::IDbObject>&, bool*, bool) override {}
    void MakeWritable(const nexa4::NEXAHandle<nexa4::IDbObject>&, bool) override {}
    void ShowFiles(const nexa4::NEXAHandle<nexa4::IDbObject>&, const char*) override {}
    nexa4::NEXAHandle<nexa4::IDbObject> FindObject(const nexa4::DbObjectId& in_id) override
    {
        m_lookups << QString::fromLatin1(in_id.GetStr().c_str());
        if (in_id == nexa4::DbObjectId(gGivenId))
            return m_given;
        return m_watched->FindObject(in_id);
    }

    QStringList m_lookups;
    nexa4::NEXAHandle<nexa4::IDbObject> m_given;

private:
    nexa4::IRevisionControlUIHelper* m_watched;
};

/// The object database of the data layer with one object more. Installed for as long as it lives.
class FakeDatabase : private nexa4::IObjectDatabase
{
public:
    explicit FakeDatabase(const std::shared_ptr<nexa4::IDbObject>& in_object)
        : m_instance(nexa4::NewDatabaseInstance()), m_object(in_object)
    {
        m_watched = InstallProvider(Provider());
        Provider provider = m_watched;
        provider.m_objects = this;
        InstallProvider(provider);
    }
    ~FakeDatabase() override { InstallProvider(m_watched); }
    FakeDatabase(const FakeDatabase&) = delete;
    FakeDatabase& operator=(const FakeDatabase&) = delete;

    nexa4::NEXAHandle<nexa4::IDbObject> GetHandle() const
    {
        return nexa4::NEXAHandle<nexa4::IDbObject>::AssignCast(m_instance, 0);
    }

private:
    std::shared_ptr<nexa4::IDbObject> GetObjectAt(int in_instance, int in_cacheIndex) override
    {
        return in_instance == m_instance ? m_object : m_watched.m_objects->GetObjectAt(in_instance, in_cacheIndex);
    }
    nexa4::DbObjectId GetResourceType() override { return m_watched.m_objects->GetResourceType(); }
    nexa4::NEXAPtr<nexa4::IHelper> GetHelper(const nexa4::NEXAPtr<nexa4::IDatabase>& in_database) override
    {
        return m_watched.m_objects->GetHelper(in_database);
    }
    nexa4::NEXAPtr<nexa4::IDataSource>
    GetDataSourceFromResource(const nexa4::NEXAPtr<nexa4::IValueAsset>& in_resource) override
    {
        return m_watched.m_objects->GetDataSourceFromResource(in_resource);
    }
    bool IsSameUri(const nexa4::NEXAPtr<nexa4::IDataSource>& in_source,
                   const nexa4::NEXAHandle<nexa4::IValueAsset>& in_resource) override
    {
        return m_watched.m_objects->IsSameUri(in_source, in_resource);
    }
    std::string GetResourceExpandedURI(const nexa4::NEXAHandle<nexa4::IDbObject>& in_resource) override
    {
        return m_watched.m_objects->GetResourceExpandedURI(in_resource);
    }

    const int m_instance;
    std::shared_ptr<nexa4::IDbObject> m_object;
    Provider m_watched;
};

} // namespace

/// Both factory objects exist before the first record is made.
class TestBrowserItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_plain = &m_library->AddDataSource("Plain");
        m_readOnly = &m_library->AddDataSource("Read only", memorymodel::eReadOnlySource);
        m_factory = &m_library->AddDataSource("Factory", memorymodel::eFactorySource);
        m_second = &m_library->AddDataSource("Second", memorymodel::eSecondFactorySource);
        m_helper.reset(new SpyHelper(hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper")));

        // What the first records of the process look up.
        m_layer->SetService("RevisionControlUIHelper", nullptr);
        MakeRecord(NewItem::Compound("Without helper"));
        m_layer->SetService("RevisionControlUIHelper", m_helper.get());
        MakeRecord(NewItem::Compound("Without identity").WithoutUID());
        m_lookupsBeforeTheFirst = m_helper->m_lookups;
        m_helper->m_lookups.clear();
        MakeRecord(NewItem::Compound("First").UID(gGivenId).WithoutObject());
        m_lookupsOfTheFirst = m_helper->m_lookups;
    }

    void init()
    {
        m_factory->SetReadOnly(false);
        m_second->SetReadOnly(false);
        m_layer->SetService("RevisionControlUIHelper", m_helper.get());
        m_helper->m_given = nexa4::NEXAHandle<nexa4::IDbObject>();
        m_helper->m_lookups.clear();
        m_icons.reset(new StateIcons);
    }

    void cleanupTestCase()
    {
        m_layer.reset();
        m_helper.reset();
    }

    void theFactoryObjectsAreLookedUpByTheFirstRecordWithAnIdentity()
    {
        QVERIFY(m_lookupsBeforeTheFirst.isEmpty());
        QCOMPARE(m_lookupsOfTheFirst.join(QLatin1String("|")), QString::fromLatin1(gFirstFactory) + QLatin1Char('|') +
                                                                   QLatin1String(gSecondFactory) + QLatin1Char('|') +
                                                                   QLatin1String(gGivenId));
    }

    void laterRecordsLookUpTheirOwnObjectOnly()
    {
        MakeRecord(NewItem::Compound("Later").UID(gGivenId).WithoutObject());
        QCOMPARE(m_helper->m_lookups.join(QLatin1String("|")), QString::fromLatin1(gGivenId));
        m_helper->m_lookups.clear();
        MakeRecord(NewItem::Compound("Later").WithoutUID());
        QVERIFY(m_helper->m_lookups.isEmpty());
    }

    void theFlagsComeFromTheSourceAndTheAsset_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("builtIn");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<bool>("factory");
        QTest::addColumn<bool>("readOnly");
        const QString plain = QString::fromLatin1("plain");
        const QString closed = QString::fromLatin1("read-only");
        const QString factory = QString::fromLatin1("factory");
        const QString second = QString::fromLatin1("second");
        const QString closedFactory = QString::fromLatin1("factory read-only");
        const QString closedSecond = QString::fromLatin1("second read-only");
        QTest::newRow("plain") << plain << false << true << false << false;
        QTest::newRow("plain, built in") << plain << true << true << true << true;
        QTest::newRow("plain, built in but not loaded") << plain << true << false << false << false;
        QTest::newRow("read-only") << closed << false << true << false << true;
        QTest::newRow("read-only, built in") << closed << true << true << true << true;
        QTest::newRow("read-only, not loaded") << closed << true << false << false << true;
        QTest::newRow("first factory source") << factory << false << true << true << false;
        QTest::newRow("first factory source, built in") << factory << true << true << true << true;
        QTest::newRow("first factory source, not loaded") << factory << true << false << true << false;
        QTest::newRow("first factory source, read-only") << closedFactory << false << true << true << true;
        QTest::newRow("second factory source") << second << false << true << true << false;
        QTest::newRow("second factory source, built in") << second << true << true << true << true;
        QTest::newRow("second factory source, read-only") << closedSecond << false << true << true << true;
    }

    void theFlagsComeFromTheSourceAndTheAsset()
    {
        QFETCH(QString, source);
        QFETCH(bool, builtIn);
        QFETCH(bool, loaded);
        QFETCH(bool, factory);
        QFETCH(bool, readOnly);
        const NewItem kinds[] = {NewItem::Compound("A"),      NewItem::LoopCompound("A"),      NewItem::Signature("A"),
                                 NewItem::Solver("A"),        NewItem::PolymorphicSolver("A"), NewItem::Type("A"),
                                 NewItem::GlobalConstant("A")};
        for (int i = 0; i < 7; ++i)
        {
            NewItem item = kinds[i];
            item.In(Source(source));
            if (builtIn)
                item.BuiltIn();
            if (!loaded)
                item.Unloaded();
            const BrowserItem record = MakeRecord(item);
            QCOMPARE(record.IsFactoryItem(), factory);
            QCOMPARE(record.HasReadOnlySource(), readOnly);
            // Compounds and signatures only, and only from sources that take changes.
            QCOMPARE(record.IsSourceControlled(), i < 3 && !readOnly);
            QCOMPARE(record.GetStateIcon().size(), QSize(factory ? 27 : 20, 20));
        }
    }

    void withoutADatabaseObjectAnItemIsPlain_data()
    {
        QTest::addColumn<QString>("lacking");
        QTest::newRow("identity") << QString::fromLatin1("identity");
        QTest::newRow("object") << QString::fromLatin1("object");
        QTest::newRow("helper") << QString::fromLatin1("helper");
    }

    void withoutADatabaseObjectAnItemIsPlain()
    {
        QFETCH(QString, lacking);
        m_factory->SetReadOnly(true);
        NewItem item = NewItem::Compound("A").In(*m_factory).BuiltIn();
        if (lacking == QLatin1String("identity"))
            item.WithoutUID();
        if (lacking == QLatin1String("object"))
            item.WithoutObject();
        if (lacking == QLatin1String("helper"))
            m_layer->SetService("RevisionControlUIHelper", nullptr);
        const BrowserItem record = MakeRecord(item);
        QVERIFY(!record.IsFactoryItem());
        QVERIFY(!record.HasReadOnlySource());
        QVERIFY(record.IsSourceControlled());
    }

    void aReadOnlyFactoryItemIsNotAskedWhetherItIsBuiltIn()
    {
        m_factory->SetReadOnly(true);
        const std::shared_ptr<FakeAsset> asset = MakeAsset(*m_factory);
        QVERIFY(MakeGivenRecord(asset).IsFactoryItem());
        QCOMPARE(asset->m_queries, 0);
        m_factory->SetReadOnly(false);
        QVERIFY(MakeGivenRecord(asset).IsFactoryItem());
        QVERIFY(asset->m_queries > 0);
    }

    void theOneQueryIsAskedOnceForEachFlag()
    {
        const std::shared_ptr<FakeAsset> asset = MakeAsset(*m_readOnly);
        MakeGivenRecord(asset);
        QCOMPARE(asset->m_queries, 2);
    }

    void anAssetThatIsNotLoadedIsNotAsked()
    {
        const std::shared_ptr<FakeAsset> asset = MakeAsset(*m_plain);
        asset->m_loaded = false;
        asset->m_builtIn = true;
        const BrowserItem record = MakeGivenRecord(asset);
        QCOMPARE(asset->m_queries, 0);
        QVERIFY(!record.IsFactoryItem());
        QVERIFY(!record.HasReadOnlySource());
    }

    void anObjectThatIsNoAssetHasTheFlagsOfItsSource()
    {
        const std::shared_ptr<FakeObject> object = std::make_shared<FakeObject>();
        object->m_source = SourcePointer(*m_second);
        const BrowserItem record = MakeGivenRecord(object);
        QVERIFY(record.IsFactoryItem());
        QVERIFY(!record.HasReadOnlySource());
    }

    void onlySourceState1IsReadOnly_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("0") << 0 << false;
        QTest::newRow("1") << 1 << true;
        QTest::newRow("2") << 2 << false;
        QTest::newRow("3") << 3 << false;
        QTest::newRow("-1") << -1 << false;
    }

    void onlySourceState1IsReadOnly()
    {
        QFETCH(int, state);
        QFETCH(bool, readOnly);
        const std::shared_ptr<FakeSource> source = std::make_shared<FakeSource>();
        source->m_state = state;
        const std::shared_ptr<FakeAsset> asset = std::make_shared<FakeAsset>();
        asset->m_source = nexa4::NEXAPtr<nexa4::IDataSource>(source);
        const BrowserItem record = MakeGivenRecord(asset);
        QCOMPARE(record.HasReadOnlySource(), readOnly);
        QCOMPARE(record.IsSourceControlled(), !readOnly);
    }

    void anObjectWithoutSourceThrowsTheDatabasesException()
    {
        const nexa4::DisableErrorReportingGuard silence;
        const std::shared_ptr<FakeAsset> asset = std::make_shared<FakeAsset>();
        bool thrown = false;
        try
        {
            MakeGivenRecord(asset);
        }
        catch (const nexa4::ExBase::NullPtr&)
        {
            thrown = true;
        }
        QVERIFY(thrown);
    }

    void theGivenStateIsForCompoundsOnly()
    {
        QCOMPARE(MakeRecord(NewItem::Compound("A"), 5).GetAccessState(), 5u);
        QCOMPARE(MakeRecord(NewItem::Signature("A"), 5).GetAccessState(), 5u);
        QCOMPARE(MakeRecord(NewItem::Compound("A").In(*m_readOnly), 5).GetAccessState(), 5u);
        QCOMPARE(MakeRecord(NewItem::Solver("A"), 5).GetAccessState(), 0u);
        QCOMPARE(MakeRecord(NewItem::PolymorphicSolver("A"), 5).GetAccessState(), 0u);
        QCOMPARE(MakeRecord(NewItem::GlobalConstant("A"), 5).GetAccessState(), 0u);
        QCOMPARE(MakeRecord(NewItem::Type("A"), 5).GetAccessState(), 0u);
    }

    void aNewStateComposesTheIconAndTheSameOneDoesNot()
    {
        BrowserItem record = MakeRecord(NewItem::Compound("A"));
        SpyLayer spy;
        QVERIFY(!record.SetAccessState(0, true, *m_icons));
        QCOMPARE(spy.m_icons.size(), std::size_t(0));
        QVERIFY(record.SetAccessState(memorymodel::eCheckedOut, true, *m_icons));
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QCOMPARE(spy.m_icons[0].m_state, unsigned(memorymodel::eCheckedOut));
        QVERIFY(spy.m_icons[0].m_active);
        QCOMPARE(record.GetAccessState(), unsigned(memorymodel::eCheckedOut));
        QVERIFY(!record.SetAccessState(memorymodel::eCheckedOut, false, *m_icons));
        QCOMPARE(spy.m_icons.size(), std::size_t(1));
        QVERIFY(record.SetAccessState(4294967295u, false, *m_icons));
        QCOMPARE(spy.m_icons[1].m_state, 4294967295u);
        QVERIFY(!spy.m_icons[1].m_active);
    }

    void badgesDoNotPileUp()
    {
        BrowserItem record = MakeRecord(NewItem::Compound("A"));
        const QImage plain = record.GetStateIcon().toImage();
        record.SetAccessState(memorymodel::eCheckedOut, true, *m_icons);
        const QImage badged = record.GetStateIcon().toImage();
        QVERIFY(badged != plain);
        record.SetAccessState(memorymodel::eOutOfDate, true, *m_icons);
        record.SetAccessState(memorymodel::eCheckedOut, true, *m_icons);
        QCOMPARE(record.GetStateIcon().toImage(), badged);
        record.SetAccessState(0, true, *m_icons);
        QCOMPARE(record.GetStateIcon().toImage(), plain);
    }

    void anItemThatIsNoCompoundTakesAStateToo()
    {
        BrowserItem record = MakeRecord(NewItem::Type("A"));
        QVERIFY(record.SetAccessState(memorymodel::eOutOfDate, true, *m_icons));
        QCOMPARE(record.GetAccessState(), unsigned(memorymodel::eOutOfDate));
    }

    void aReadOnlyFactoryItemKeepsItsStateWithoutABadge()
    {
        m_factory->SetReadOnly(true);
        BrowserItem record = MakeRecord(NewItem::Compound("A").In(*m_factory));
        const QImage before = record.GetStateIcon().toImage();
        SpyLayer spy;
        QVERIFY(record.SetAccessState(memorymodel::eCheckedOut, true, *m_icons));
        QCOMPARE(record.GetAccessState(), unsigned(memorymodel::eCheckedOut));
        QCOMPARE(spy.m_icons.size(), std::size_t(0));
        QCOMPARE(record.GetStateIcon().toImage(), before);
    }

    void aRecordReadsItsIdentityThroughItsAccessor()
    {
        const ItemID id = m_library->Add(NewItem::Compound("Short-lived"));
        RecordContext context(FindRevisionControlHelper(), false, *m_icons);
        const BrowserItem record = MakeBrowserItem(FindItem(*m_library, id), 0, context);
        QVERIFY(record.GetItem().GetItemID() == id);
        QVERIFY(m_library->Remove(id));
        QVERIFY(!record.GetItem().IsValid());
        QVERIFY(!record.GetItem().GetItemID().IsValid());
    }

    void copiesAreIndependent()
    {
        const BrowserItem original = MakeRecord(NewItem::Compound("A"), 3);
        BrowserItem copy = original;
        QVERIFY(copy.GetItem().GetItemID() == original.GetItem().GetItemID());
        copy.SetAccessState(4, true, *m_icons);
        QCOMPARE(original.GetAccessState(), 3u);
        QCOMPARE(copy.GetAccessState(), 4u);
    }

private:
    BrowserItem MakeRecord(const NewItem& in_item, unsigned in_state = 0)
    {
        const ItemID id = m_library->Add(in_item);
        RecordContext context(FindRevisionControlHelper(), false, *m_icons);
        return MakeBrowserItem(FindItem(*m_library, id), in_state, context);
    }

    /// The record of a compound whose database object is given.
    BrowserItem MakeGivenRecord(const std::shared_ptr<nexa4::IDbObject>& in_object)
    {
        const FakeDatabase database(in_object);
        m_helper->m_given = database.GetHandle();
        return MakeRecord(NewItem::Compound("Given").UID(gGivenId).WithoutObject());
    }

    nexa4::NEXAPtr<nexa4::IDataSource> SourcePointer(const memorymodel::DataSource& in_source) const
    {
        for (const std::shared_ptr<memorymodel::DataSource>& source : m_library->GetDataSources())
            if (source.get() == &in_source)
                return nexa4::NEXAPtr<nexa4::IDataSource>(source);
        return nexa4::NEXAPtr<nexa4::IDataSource>();
    }

    std::shared_ptr<FakeAsset> MakeAsset(const memorymodel::DataSource& in_source) const
    {
        const std::shared_ptr<FakeAsset> asset = std::make_shared<FakeAsset>();
        asset->m_source = SourcePointer(in_source);
        return asset;
    }

    memorymodel::DataSource& Source(const QString& in_name)
    {
        const bool closed = in_name.endsWith(QLatin1String(" read-only"));
        m_factory->SetReadOnly(closed);
        m_second->SetReadOnly(closed);
        if (in_name.startsWith(QLatin1String("factory")))
            return *m_factory;
        if (in_name.startsWith(QLatin1String("second")))
            return *m_second;
        return in_name == QLatin1String("plain") ? *m_plain : *m_readOnly;
    }

    std::unique_ptr<SpyHelper> m_helper;
    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
    memorymodel::DataSource* m_plain = nullptr;
    memorymodel::DataSource* m_readOnly = nullptr;
    memorymodel::DataSource* m_factory = nullptr;
    memorymodel::DataSource* m_second = nullptr;
    std::unique_ptr<StateIcons> m_icons{new StateIcons};
    QStringList m_lookupsBeforeTheFirst;
    QStringList m_lookupsOfTheFirst;
};

NODEBROWSER_TEST_MAIN(TestBrowserItem)
#include "test_browseritem.moc"
