// SPDX-License-Identifier: MIT
// What is particular to the data layer in memory: factory objects, removed libraries, the compound target.

#include "contract/notificationspy.h"
#include "contract/support.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "memorymodel/datalayer.h"
#include "tests/support/testmain.h"

#include <memory>

using namespace contract;
using namespace memorymodel;
using namespace vireo::datamodel;

namespace
{

typedef nexa4::NEXAHandle<nexa4::IDbObject> Handle;

const char* const gFirstFactory = "D2BA853A-8668-704A-A121-1F7DE917B664";
const char* const gSecondFactory = "34F315D3-58CF-4019-9BE3-381FCED0E983";

Handle Find(const char* in_uid)
{
    return hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper")
        ->FindObject(nexa4::DbObjectId(in_uid));
}

Handle ObjectOf(const ItemID& in_item)
{
    const char* const uid = ItemIDUnlock::GetItemIDUID(in_item);
    return nexa4::DbObjectId::IsUID(uid) ? Find(uid) : Handle();
}

std::size_t CountResources(const Handle& in_object)
{
    return in_object.GetManager()
        ->GetDatabase()
        ->Query("select object where IS_OF_TYPE_VERSION( {" + nexa4::UID_Resource().GetStr() + " } )", true)
        .size();
}

} // namespace

class TestDataLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factoryObjectsComeWithTheirSources()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        library.Add(NewItem::Compound("A"));
        QVERIFY(!Find(gFirstFactory).IsValid());
        QVERIFY(!Find(gSecondFactory).IsValid());
        DataSource& product = library.AddDataSource("Product", eFactorySource);
        QVERIFY(Find(gFirstFactory).IsValid());
        QVERIFY(Find(gFirstFactory).GetDataSource().GetPointeeNotNull() == &product);
        QVERIFY(!Find(gSecondFactory).IsValid());
        DataSource& both = library.AddDataSource("Both", eFactorySource | eSecondFactorySource);
        QVERIFY(Find(gFirstFactory).GetDataSource().GetPointeeNotNull() == &both);
        QVERIFY(Find(gSecondFactory).GetDataSource().GetPointeeNotNull() == &both);
        QVERIFY(Find(gFirstFactory).GetManager()->GetDatabase().IsValid());
    }

    void factoryHandleFollowsTheObjectToALaterLibrary()
    {
        DataLayer layer;
        Library& first = layer.AddLibrary("First");
        first.AddDataSource("Product", eFactorySource);
        const Handle factory = Find(gFirstFactory);
        layer.RemoveLibrary(first);
        QVERIFY(!factory.IsValid());

        Library& second = layer.AddLibrary("Second");
        DataSource& product = second.AddDataSource("Product", eFactorySource);
        const ItemID id = second.Add(NewItem::Solver("Solve"));
        QVERIFY(factory.IsValid());
        QVERIFY(factory.GetDataSource() == ObjectOf(id).GetDataSource());
        QVERIFY(factory.GetDataSource().GetPointeeNotNull() == &product);
        QCOMPARE(Find(gFirstFactory).GetCacheIndex(), factory.GetCacheIndex());
    }

    void assetsTellTheirFlags()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const Handle builtIn = ObjectOf(library.Add(NewItem::Compound("A").BuiltIn()));
        const Handle unloaded = ObjectOf(library.Add(NewItem::Compound("B").Unloaded()));
        const Handle unknown = ObjectOf(library.Add(NewItem::Compound("C").WithoutObject()));
        typedef nexa4::NEXAHandle<nexa4::ITypeAsset> Asset;
        QVERIFY(Asset::AssignCast(builtIn.GetInstance(), builtIn.GetCacheIndex())->IsBuiltIn());
        QVERIFY(Asset::AssignCast(builtIn.GetInstance(), builtIn.GetCacheIndex()).IsLoaded());
        QVERIFY(!Asset::AssignCast(unloaded.GetInstance(), unloaded.GetCacheIndex()).IsLoaded());
        QVERIFY(!unknown.IsValid());
    }

    void itemsMoveOnlyWithinTheirLibrary()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Others");
        const Handle object = ObjectOf(library.Add(NewItem::Compound("A")));
        const Handle foreign = ObjectOf(other.Add(NewItem::Compound("B")));
        const nexa4::NEXAPtr<nexa4::IHelper> helper = nexa4::IHelper::GetHelper(object.GetManager()->GetDatabase());
        QVERIFY(!helper->MoveToDataSource(object, foreign.GetDataSource(), true));
        const ItemID closed = library.Add(NewItem::Compound("C").ReadOnly());
        library.AddDataSource("Shared");
        const nexa4::NEXAPtr<nexa4::IDataSource> shared(library.GetDataSources().back());
        QVERIFY(!helper->MoveToDataSource(ObjectOf(closed), shared, true));
        QVERIFY(!helper->MoveToDataSource(Find(gFirstFactory), shared, true));
        QVERIFY(helper->MoveToDataSource(object, shared, true));
        QCOMPARE(layer.GetCommandManager().GetStack().undoText(), QString::fromLatin1("Move compound A to Shared"));
        QCOMPARE(CountResources(object), std::size_t(3));
    }

    void removedLibraryLeavesNothingThatHarms()
    {
        DataLayer layer;
        Library& stays = layer.AddLibrary("Stays");
        const Handle other = ObjectOf(stays.Add(NewItem::Compound("Other")));
        Library& library = layer.AddLibrary("Goes");
        const ItemID id = library.Add(NewItem::Compound("A"));
        library.SetTags(id, "a", &layer.GetCommandManager());
        layer.SetCurrentLibrary(&library);
        const ItemLibraryAccessor accessor = library.GetAccessor();
        const CompoundAccessor compound(accessor.GetModel(id, nullptr));
        Helpers::SetGlobalVireoCompoundTarget(compound, CompoundAccessor());
        const Handle object = ObjectOf(id);
        const nexa4::NEXAPtr<nexa4::IDataSource> source = object.GetDataSource();
        std::unique_ptr<NotificationSpy> spy(new NotificationSpy(accessor));
        ScsTask* const task = new ScsTask("Test");
        task->RequestObjectStates(std::list<Handle>(2, object));
        QCOMPARE(CountResources(other), std::size_t(2));

        layer.RemoveLibrary(library);
        QCOMPARE(QByteArray(spy->Take().c_str()), QByteArray("begin, invalidated, end"));
        QVERIFY(!accessor.IsValid());
        QVERIFY(!compound.IsValid());
        QVERIFY(!object.IsValid());
        QVERIFY(!layer.GetCompoundTarget().IsValid());
        QVERIFY(!hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy")->GetItemLibrary().IsValid());
        QVERIFY(!nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(id)));
        QCOMPARE(CountResources(other), std::size_t(1));
        QCOMPARE(source->GetState(), 0);
        layer.GetCommandManager().GetStack().undo();
        layer.GetCommandManager().GetStack().redo();
        QCoreApplication::processEvents();
        task->DeleteMe();
        QCOMPARE(QByteArray(spy->Take().c_str()), QByteArray());
        spy.reset();
    }

    void libraryMayBeRemovedInACall()
    {
        DataLayer layer;
        Library* library = &layer.AddLibrary("Goes");
        NotificationSpy spy(library->GetAccessor());
        spy.m_reaction = [&](const std::string& in_call) {
            if (in_call == "invalidated" || in_call.compare(0, 5, "added") != 0)
                return;
            layer.RemoveLibrary(*library);
            library = nullptr;
        };
        library->Add(NewItem::Compound("A"));
        QVERIFY(!library);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, added A, begin, invalidated, end, end"));
    }

    void accessorsOutliveTheLayer()
    {
        ItemLibraryAccessor accessor;
        UnspecifiedAccessor model;
        nexa4::NEXAPtr<nexa4::IDbObject> object;
        nexa4::NEXAPtr<nexa4::IDatabase> database;
        ItemID id;
        {
            DataLayer layer;
            Library& library = layer.AddLibrary("Nodes");
            id = library.Add(NewItem::Compound("A"));
            accessor = library.GetAccessor();
            model = accessor.GetModel(id, nullptr);
            object = ObjectOf(id).operator->();
            database = object->GetManager()->GetDatabase();
        }
        QVERIFY(!accessor.IsValid());
        QVERIFY(!model.IsValid());
        QVERIFY(accessor.GetItemName(id, true, nullptr).empty());
        QVERIFY(!object->GetManager().IsValid());
        QVERIFY(object->GetDataSource().IsValid());
        QVERIFY(!database->FindObject(object->GetDbObjectId()).IsValid());
        QVERIFY(!hmxGetSystem());
    }

    void targetHandlerIsCalledAtEachSetting()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID target = library.Add(NewItem::Compound("A"));
        const ItemID root = library.Add(NewItem::Compound("B"));
        const CompoundAccessor first(library.GetAccessor().GetModel(target, nullptr));
        const CompoundAccessor second(library.GetAccessor().GetModel(root, nullptr));
        int calls = 0;
        layer.SetCompoundTargetHandler([&] { ++calls; });
        Helpers::SetGlobalVireoCompoundTarget(first, second);
        QVERIFY(layer.GetCompoundTarget() == target);
        QVERIFY(layer.GetCompoundTargetRoot() == root);
        Helpers::SetGlobalVireoCompoundTarget(first, second);
        QCOMPARE(calls, 2);
        library.Remove(target, &layer.GetCommandManager());
        QVERIFY(!layer.GetCompoundTarget().IsValid());
        layer.GetCommandManager().GetStack().undo();
        QVERIFY(layer.GetCompoundTarget() == target);
    }

    void ownServicesComeBack()
    {
        DataLayer layer;
        hmx::IBase* const own = hmxGetSystem()->GetService("NEXADBProxy");
        layer.SetService("NEXADBProxy", nullptr);
        QVERIFY(!hmxGetSystem()->GetService("NEXADBProxy"));
        layer.RestoreService("NEXADBProxy");
        QVERIFY(hmxGetSystem()->GetService("NEXADBProxy") == own);
    }

    void factoryObjectFallsBackToTheSourceBefore()
    {
        DataLayer layer;
        Library& first = layer.AddLibrary("First");
        Library& second = layer.AddLibrary("Second");
        Library& third = layer.AddLibrary("Third");
        DataSource& oldest = first.AddDataSource("Oldest", eFactorySource | eSecondFactorySource);
        second.AddDataSource("Middle", eFactorySource);
        second.AddDataSource("Late", eFactorySource);
        DataSource& last = third.AddDataSource("Last", eFactorySource);
        const Handle factory = Find(gFirstFactory);
        second.Close();
        QVERIFY(factory.GetDataSource().GetPointeeNotNull() == &last);
        layer.RemoveLibrary(third);
        QVERIFY(factory.IsValid());
        QVERIFY(factory.GetDataSource().GetPointeeNotNull() == &oldest);
        QVERIFY(Find(gSecondFactory).GetDataSource().GetPointeeNotNull() == &oldest);
        layer.RemoveLibrary(first);
        QVERIFY(!factory.IsValid());
        QVERIFY(!Find(gFirstFactory).IsValid());
        QVERIFY(!Find(gSecondFactory).IsValid());
    }

    void closingLibraryMayBeRemovedInACall_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::newRow("begin") << QByteArray("begin");
        QTest::newRow("invalidated") << QByteArray("invalidated");
        QTest::newRow("end") << QByteArray("end");
    }

    void closingLibraryMayBeRemovedInACall()
    {
        QFETCH(QByteArray, call);
        DataLayer layer;
        Library* library = &layer.AddLibrary("Goes");
        library->Add(NewItem::Compound("A"));
        const ItemLibraryAccessor accessor = library->GetAccessor();
        NotificationSpy spy(accessor);
        spy.m_reaction = [&](const std::string& in_call) {
            if (call != in_call.c_str() || !library)
                return;
            layer.RemoveLibrary(*library);
            library = nullptr;
        };
        library->Close();
        QVERIFY(!library);
        QCOMPARE(QByteArray(spy.Take().c_str()), QByteArray("begin, invalidated, end"));
        QVERIFY(!accessor.IsValid());
    }

    void sharedIdentityLeadsToTheOneAddedFirst()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const char* const uid = "0A0B0C0D-0000-4000-8000-0123456789AB";
        const ItemID first = library.Add(NewItem::Compound("First").UID(uid));
        const Handle firstObject = Find(uid);
        library.Add(NewItem::Compound("Second").UID(uid));
        QCOMPARE(Find(uid).GetCacheIndex(), firstObject.GetCacheIndex());
        library.Remove(first, &layer.GetCommandManager());
        QVERIFY(Find(uid).IsValid());
        QVERIFY(Find(uid).GetCacheIndex() != firstObject.GetCacheIndex());
        layer.GetCommandManager().GetStack().undo();
        QCOMPARE(Find(uid).GetCacheIndex(), firstObject.GetCacheIndex());
        library.Close();
        QVERIFY(!Find(uid).IsValid());
    }

    void givenIdentityTakesNoOtherOver()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        const ItemID first = library.Add(NewItem::Compound("First"));
        const std::string uid = ItemIDUnlock::GetItemIDUID(first);
        const int cacheIndex = ObjectOf(first).GetCacheIndex();
        library.Add(NewItem::Compound("Second").UID(uid));
        QCOMPARE(Find(uid.c_str()).GetCacheIndex(), cacheIndex);
        library.Remove(first);
        QVERIFY(Find(uid.c_str()).IsValid());
        QVERIFY(Find(uid.c_str()).GetCacheIndex() != cacheIndex);
    }

    void identityThatWasNotGivenOutLeadsNowhere()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        std::string uid = ItemIDUnlock::GetItemIDUID(library.Add(NewItem::Compound("A")));
        library.Add(NewItem::Compound("B").UID("0A0B0C0D-0000-4000-8000-0123456789AB"));
        // The identity that the second object would have had.
        uid[uid.size() - 1] = static_cast<char>(uid[uid.size() - 1] + 1);
        QVERIFY(!Find(uid.c_str()).IsValid());
    }

    void sourcesOfLibrariesWithOneNameHaveLocationsOfTheirOwn()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        Library& other = layer.AddLibrary("Nodes");
        const DataSource& local = library.AddDataSource("Local");
        const DataSource& twin = library.AddDataSource("Local");
        const DataSource& foreign = other.AddDataSource("Local");
        QCOMPARE(local.GetLocation(), std::string("Nodes/Local"));
        QVERIFY(twin.GetLocation() != local.GetLocation());
        QVERIFY(foreign.GetLocation() != local.GetLocation());
        QVERIFY(foreign.GetLocation() != twin.GetLocation());
        const Handle object = ObjectOf(library.Add(NewItem::Compound("A")));
        const nexa4::NEXAPtr<nexa4::IDatabase> database = object.GetManager()->GetDatabase();
        QByteArray same;
        for (const nexa4::DbObjectId& id : database->Query(
                 "select object where IS_OF_TYPE_VERSION( {" + nexa4::UID_Resource().GetStr() + " } )", true))
        {
            const Handle resource = database->FindObject(id);
            same += nexa4::IsSameUri(object.GetDataSource(), nexa4::NEXAHandle<nexa4::IValueAsset>::AssignCast(
                                                                 resource.GetInstance(), resource.GetCacheIndex()))
                        ? "same "
                        : "other ";
        }
        QCOMPARE(same, QByteArray("same other other "));
    }
};

NODEBROWSER_TEST_MAIN(TestDataLayer)
#include "test_datalayer.moc"
