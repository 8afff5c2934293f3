// SPDX-License-Identifier: MIT
#include "contract/boundarycontract.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include "datamodel/revisioncontrol.h"

#include <QtTest>

#include <vector>

using namespace nexa4;
using namespace vireo::datamodel;

namespace contract
{
namespace
{

NEXAHandle<IDbObject> ObjectOf(const ItemID& in_item)
{
    const char* const uid = ItemIDUnlock::GetItemIDUID(in_item);
    IRevisionControlUIHelper* const helper = hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper");
    return helper && DbObjectId::IsUID(uid) ? helper->FindObject(DbObjectId(uid)) : NEXAHandle<IDbObject>();
}

template <class T> NEXAHandle<T> ViewAs(const NEXAHandle<IDbObject>& in_object)
{
    return NEXAHandle<T>::AssignCast(in_object.GetInstance(), in_object.GetCacheIndex());
}

std::string ResourceQuery(const std::string& in_type)
{
    return "select object where IS_OF_TYPE_VERSION( {" + in_type + " } )";
}

/// The resources of the database that an object is in, as values.
std::vector<NEXAHandle<IValueAsset>> ResourcesBeside(const NEXAHandle<IDbObject>& in_object)
{
    const NEXAPtr<IDatabase> database = in_object.GetManager()->GetDatabase();
    std::vector<NEXAHandle<IValueAsset>> resources;
    for (const DbObjectId& id : database->Query(ResourceQuery(UID_Resource().GetStr()), true))
        resources.push_back(ViewAs<IValueAsset>(database->FindObject(id)));
    return resources;
}

/// The source whose resource has a name; null when there is none.
NEXAPtr<IDataSource> SourceNamed(const NEXAHandle<IDbObject>& in_object, const std::string& in_name)
{
    for (const NEXAHandle<IValueAsset>& resource : ResourcesBeside(in_object))
        if (resource->GetName() == in_name)
            return GetDataSourceFromResource(resource->GetDesignatedAsset());
    return NEXAPtr<IDataSource>();
}

bool Move(const NEXAHandle<IDbObject>& in_object, const NEXAPtr<IDataSource>& in_target)
{
    return IHelper::GetHelper(in_object.GetManager()->GetDatabase())->MoveToDataSource(in_object, in_target, true);
}

} // namespace

void BoundaryContract::uidLeadsToTheObjectAndItsSource()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    ItemWish product(VireoType::gSolver, "Product");
    product.m_source = "Product";
    const ItemID productItem = m_fixture->Add(product);

    const NEXAHandle<IDbObject> object = ObjectOf(id);
    QVERIFY(object.IsValid());
    QCOMPARE(object.GetDbObjectId().GetStr(), std::string(ItemIDUnlock::GetItemIDUID(id)));
    QVERIFY(ViewAs<ITypeAsset>(object).IsValid());
    QVERIFY(ViewAs<ITypeAsset>(object).IsLoaded());
    QVERIFY(!ViewAs<ITypeAsset>(object)->IsBuiltIn());
    QVERIFY(!ViewAs<IValueAsset>(object).IsValid());
    QVERIFY(object.GetDataSource()->GetState() != eDataSourceReadOnly);
    QCOMPARE(int(ObjectOf(productItem).GetDataSource()->GetState()), int(eDataSourceReadOnly));
    QVERIFY(object.GetDataSource() != ObjectOf(productItem).GetDataSource());
    const ItemID neighbour = m_fixture->Add(ItemWish(VireoType::gSolver, "Neighbour"));
    QVERIFY(object.GetDataSource() == ObjectOf(neighbour).GetDataSource());
    QVERIFY(object.GetDbObjectId() != ObjectOf(neighbour).GetDbObjectId());

    const NEXAHandle<IDbObject> sameAgain = object.GetManager()->GetDatabase()->FindObject(object.GetDbObjectId());
    QCOMPARE(sameAgain.GetInstance(), object.GetInstance());
    QCOMPARE(sameAgain.GetCacheIndex(), object.GetCacheIndex());
}

void BoundaryContract::itemWithoutAUIDHasNoObject()
{
    ItemWish wish(VireoType::gCompound, "Loose");
    wish.m_withUID = false;
    const ItemID id = m_fixture->Add(wish);
    QVERIFY(ItemIDUnlock::GetItemIDUID(id) != nullptr);
    QVERIFY(!DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(id)));
    IRevisionControlUIHelper* const helper = hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper");
    QVERIFY(!helper->FindObject(UID_Null()).IsValid());
    QVERIFY(!helper->FindObject(DbObjectId("0A0B0C0D-0000-4000-8000-0123456789AB")).IsValid());
}

void BoundaryContract::handleFollowsItsItem()
{
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    const NEXAPtr<IDbObject> held = object.operator->();
    const DbObjectId uid = object.GetDbObjectId();
    m_fixture->Remove(id, m_fixture->GetCommands());
    QVERIFY(!object.IsValid());
    QVERIFY(!hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper")->FindObject(uid).IsValid());
    QVERIFY(held->GetDbObjectId() == uid);
    m_fixture->Undo();
    QVERIFY(object.IsValid());
    QVERIFY(object.operator->() == held);
    m_fixture->Close();
    QVERIFY(!object.IsValid());
    QVERIFY(held->GetDbObjectId() == uid);
    const ItemID other = m_fixture->Add(ItemWish(VireoType::gCompound, "Other"));
    QVERIFY(!other.IsValid());

    const DisableErrorReportingGuard silence;
    bool thrown = false;
    try
    {
        object.GetDataSource();
    }
    catch (const ExBase::NullPtr&)
    {
        thrown = true;
    }
    QVERIFY(thrown);
}

void BoundaryContract::resourcesAreQueriedInOrder()
{
    const NEXAHandle<IDbObject> object = ObjectOf(m_fixture->Add(ItemWish(VireoType::gCompound, "Blend")));
    std::vector<std::string> names;
    for (const NEXAHandle<IValueAsset>& resource : ResourcesBeside(object))
        names.push_back(resource->GetName());
    QVERIFY((names == std::vector<std::string>{"Local", "Shared", "Product"}));
}

void BoundaryContract::otherQueriesMatchNothing()
{
    const NEXAHandle<IDbObject> object = ObjectOf(m_fixture->Add(ItemWish(VireoType::gCompound, "Blend")));
    const NEXAPtr<IDatabase> database = object.GetManager()->GetDatabase();
    const std::string type = UID_Resource().GetStr();
    QVERIFY(database->Query(ResourceQuery("0A0B0C0D-0000-4000-8000-0123456789AB"), true).empty());
    QVERIFY(database->Query(ResourceQuery(""), true).empty());
    QVERIFY(database->Query("", true).empty());
    QVERIFY(database->Query("select object where IS_OF_TYPE_VERSION( {", true).empty());
    QVERIFY(database->Query(ResourceQuery(type) + " ", true).empty());
    QVERIFY(database->Query("select thing where IS_OF_TYPE_VERSION( {" + type + " } )", true).empty());
}

void BoundaryContract::resourcesStandForTheirSources()
{
    const NEXAHandle<IDbObject> object = ObjectOf(m_fixture->Add(ItemWish(VireoType::gCompound, "Blend")));
    const std::vector<NEXAHandle<IValueAsset>> resources = ResourcesBeside(object);
    QCOMPARE(resources.size(), std::size_t(3));
    for (std::size_t i = 0; i < resources.size(); ++i)
    {
        const NEXAHandle<IValueAsset>& resource = resources[i];
        const NEXAHandle<IDbObject> asObject =
            NEXAHandle<IDbObject>::AssignCast(resource.GetInstance(), resource.GetCacheIndex());
        const NEXAPtr<IDataSource> source = GetDataSourceFromResource(resource->GetDesignatedAsset());
        QVERIFY(source.IsValid());
        QCOMPARE(source->GetState() == eDataSourceReadOnly, i == 2);
        QCOMPARE(source == object.GetDataSource(), i == 0);
        QCOMPARE(IsSameUri(object.GetDataSource(), resource), i == 0);
        QVERIFY(!GetResourceExpandedURI(asObject).empty());
    }
    QVERIFY(!IsSameUri(NEXAPtr<IDataSource>(), resources[0]));
    QVERIFY(!IsSameUri(object.GetDataSource(), NEXAHandle<IValueAsset>()));
    QVERIFY(GetResourceExpandedURI(object).empty());
    QVERIFY(GetResourceExpandedURI(NEXAHandle<IDbObject>()).empty());
    QVERIFY(!GetDataSourceFromResource(NEXAPtr<IValueAsset>()).IsValid());

    const NEXAPtr<IValueAsset> designated = resources[0]->GetDesignatedAsset();
    m_fixture->Close();
    QVERIFY(!resources[0].IsValid());
    QVERIFY(!GetDataSourceFromResource(designated).IsValid());
}

void BoundaryContract::movingIsOneCommandThatInvalidates()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemID id = m_fixture->Add(ItemWish(VireoType::gCompound, "Blend"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    const NEXAPtr<IDataSource> local = object.GetDataSource();
    const NEXAPtr<IDataSource> shared = SourceNamed(object, "Shared");
    NotificationSpy spy(library);
    QVERIFY(Move(object, shared));
    QCOMPARE(spy.Take(), QByteArray("begin, invalidated, end"));
    QVERIFY(object.GetDataSource() == shared);
    QVERIFY(library.ItemIsDirty(id));
    QCOMPARE(m_fixture->GetCommandCount(), 1);
    m_fixture->Undo();
    QCOMPARE(spy.Take(), QByteArray("begin, invalidated, end"));
    QVERIFY(object.GetDataSource() == local);
    QVERIFY(!library.ItemIsDirty(id));
    m_fixture->Redo();
    QVERIFY(object.GetDataSource() == shared);
}

void BoundaryContract::movingRefuses_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("the same source") << QByteArray("Local") << QByteArray("Local");
    QTest::newRow("into a read-only source") << QByteArray("Local") << QByteArray("Product");
    QTest::newRow("out of a read-only source") << QByteArray("Product") << QByteArray("Local");
    QTest::newRow("unknown source") << QByteArray("Local") << QByteArray("Nowhere");
}

void BoundaryContract::movingRefuses()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, target);
    ItemWish wish(VireoType::gCompound, "Blend");
    wish.m_source = from.constData();
    const NEXAHandle<IDbObject> object = ObjectOf(m_fixture->Add(wish));
    const NEXAPtr<IDataSource> before = object.GetDataSource();
    NotificationSpy spy(m_fixture->GetLibrary());
    QVERIFY(!Move(object, SourceNamed(object, target.constData())));
    QVERIFY(!IHelper::GetHelper(object.GetManager()->GetDatabase())
                 ->MoveToDataSource(NEXAHandle<IDbObject>(), SourceNamed(object, "Shared"), true));
    QVERIFY(object.GetDataSource() == before);
    QCOMPARE(spy.Take(), QByteArray());
    QCOMPARE(m_fixture->GetCommandCount(), 0);
    QVERIFY(!IHelper::GetHelper(NEXAPtr<IDatabase>()).IsValid());
}

void BoundaryContract::commitOfOneSourceLeavesTheOthers()
{
    const ItemLibraryAccessor library = m_fixture->GetLibrary();
    const ItemID local = m_fixture->Add(ItemWish(VireoType::gCompound, "A"));
    ItemWish wish(VireoType::gCompound, "B");
    wish.m_source = "Shared";
    const ItemID shared = m_fixture->Add(wish);
    SetTags(library, local, "a", nullptr);
    SetTags(library, shared, "b", nullptr);
    const DbObjectId sharedResource = ResourcesBeside(ObjectOf(local))[1].GetDbObjectId();
    bool written = false;
    QVERIFY(ItemLibraryModifierAccessor(library).CommitToDisk(written, nullptr, false, sharedResource));
    QVERIFY(written);
    QVERIFY(!library.ItemIsDirty(shared));
    QVERIFY(library.ItemIsDirty(local));
}

} // namespace contract
