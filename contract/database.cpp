// SPDX-License-Identifier: MIT
#include "contract/databaseobject.h"
#include "contract/notificationspy.h"
#include "contract/support.h"

#include <vector>

using namespace nexa4;
using namespace vireo::datamodel;

namespace contract
{
namespace
{

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
    for (const NEXAHandle<IValueAsset>& resource : resources)
        Expect("IDatabase::Query() of the resources, IsValid() of each", true, resource.IsValid());
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
    return Call("MoveToDataSource()", [&] {
        return IHelper::GetHelper(in_object.GetManager()->GetDatabase())->MoveToDataSource(in_object, in_target, true);
    });
}

/// The object of a new compound.
NEXAHandle<IDbObject> AddObject(Trial& io_trial)
{
    return ObjectOf(io_trial.Add(ItemWish(VireoType::gCompound, "Blend")));
}

void UIDLeadsToTheObjectAndItsSource(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    const NEXAHandle<ITypeAsset> asset = ViewAs<ITypeAsset>(object);
    Expect("GetDbObjectId() of an item's object", UIDOf(id), object.GetDbObjectId().GetStr());
    Expect("a compound's object as an ITypeAsset", true, asset.IsValid());
    Expect("IsLoaded() of a compound's object", true, asset.IsLoaded());
    Expect("IsBuiltIn() of a compound's object", false, asset->IsBuiltIn());
    Expect("a compound's object as an IValueAsset", false, ViewAs<IValueAsset>(object).IsValid());
    const ItemWish wish = WishInSource(VireoType::gSolver, "Product", "Product");
    const NEXAHandle<IDbObject> product = ObjectOf(io_trial.Add(wish));
    Expect("GetState() of \"Local\" is eDataSourceReadOnly", false,
           object.GetDataSource()->GetState() == eDataSourceReadOnly);
    Expect("GetState() of \"Product\" is eDataSourceReadOnly" + AsAgreed(wish), true,
           product.GetDataSource()->GetState() == eDataSourceReadOnly);
    Expect("the source of an item in \"Local\" is that of one in \"Product\"", false,
           object.GetDataSource() == product.GetDataSource());
    const NEXAHandle<IDbObject> neighbour = ObjectOf(io_trial.Add(ItemWish(VireoType::gSolver, "Neighbour")));
    Expect("the sources of two items in \"Local\" are one", true, object.GetDataSource() == neighbour.GetDataSource());
    Expect("GetDbObjectId() of two items are one", false, object.GetDbObjectId() == neighbour.GetDbObjectId());

    const NEXAHandle<IDbObject> sameAgain = object.GetManager()->GetDatabase()->FindObject(object.GetDbObjectId());
    Expect("IDatabase::FindObject(), GetInstance()", object.GetInstance(), sameAgain.GetInstance());
    Expect("IDatabase::FindObject(), GetCacheIndex()", object.GetCacheIndex(), sameAgain.GetCacheIndex());
}

void ItemWithoutAUIDHasNoObject(Trial& io_trial)
{
    const auto isFound = [](const DbObjectId& in_id) { return RevisionControl().FindObject(in_id).IsValid(); };
    Expect("FindObject() of the null identity", false, isFound(UID_Null()));
    Expect("FindObject() of an unknown identity", false, isFound(DbObjectId("0A0B0C0D-0000-4000-8000-0123456789AB")));
    ItemWish wish(VireoType::gCompound, "Loose");
    wish.m_withUID = false;
    if (!io_trial.CanAdd(wish))
        return;
    const std::string uid = UIDOf(io_trial.Add(wish));
    ExpectThat("GetItemIDUID() of an item without an object" + AsAgreed(wish), "no identity text",
               !DbObjectId::IsUID(uid.c_str()), Show(uid));
}

void HandleFollowsItsItem(Trial& io_trial)
{
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    const NEXAPtr<IDbObject> held = object.operator->();
    const DbObjectId uid = object.GetDbObjectId();
    const bool undoes = io_trial.Has(eUndoing);
    io_trial.Remove(id, undoes ? io_trial.GetCommands() : nullptr);
    Expect("IsValid() of a removed item's handle", false, object.IsValid());
    Expect("FindObject() of a removed item", false, RevisionControl().FindObject(uid).IsValid());
    Expect("GetDbObjectId() of a removed item's object that is held", uid.GetStr(), held->GetDbObjectId().GetStr());
    if (undoes)
    {
        io_trial.GetFixture().Undo();
        Expect("IsValid() of the handle of an item that came back", true, object.IsValid());
        Expect("the object of an item that came back is the same", true, object.operator->() == held);
    }
    if (!io_trial.Has(eClosing))
        return;
    io_trial.GetFixture().Close();
    Expect("IsValid() of a handle in a closed library", false, object.IsValid());
    Expect("GetDbObjectId() of an object that is held, in a closed library", uid.GetStr(),
           held->GetDbObjectId().GetStr());

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
    Expect("GetDataSource() of an invalid handle throws ExBase::NullPtr", true, thrown);
}

void ResourcesAreQueriedInOrder(Trial& io_trial)
{
    std::string names;
    for (const NEXAHandle<IValueAsset>& resource : ResourcesBeside(AddObject(io_trial)))
        names += (names.empty() ? "" : " ") + resource->GetName();
    Expect("IDatabase::Query() of the resources, their names", "Local Shared Product", names);
}

void OtherQueriesMatchNothing(Trial& io_trial)
{
    const NEXAPtr<IDatabase> database = AddObject(io_trial).GetManager()->GetDatabase();
    const std::string type = UID_Resource().GetStr();
    for (const std::string& query :
         {ResourceQuery("0A0B0C0D-0000-4000-8000-0123456789AB"), ResourceQuery(""), std::string(),
          std::string("select object where IS_OF_TYPE_VERSION( {"), ResourceQuery(type) + " ",
          "select thing where IS_OF_TYPE_VERSION( {" + type + " } )"})
        Expect("IDatabase::Query() of " + Show(query), std::size_t(0), database->Query(query, true).size());
}

void ResourcesStandForTheirSources(Trial& io_trial)
{
    const NEXAHandle<IDbObject> object = AddObject(io_trial);
    const std::vector<NEXAHandle<IValueAsset>> resources = ResourcesBeside(object);
    Expect("IDatabase::Query() of the resources, how many", std::size_t(3), resources.size());
    for (std::size_t i = 0; i < resources.size(); ++i)
    {
        const NEXAHandle<IValueAsset>& resource = resources[i];
        const NEXAHandle<IDbObject> asObject =
            NEXAHandle<IDbObject>::AssignCast(resource.GetInstance(), resource.GetCacheIndex());
        const NEXAPtr<IDataSource> source = GetDataSourceFromResource(resource->GetDesignatedAsset());
        const std::string of = " of the resource " + Show(resource->GetName());
        Expect("GetDataSourceFromResource()" + of + " finds a source", true, source.IsValid());
        Expect("GetState()" + of + " is eDataSourceReadOnly", i == 2, source->GetState() == eDataSourceReadOnly);
        Expect("GetDataSourceFromResource()" + of + " is that of an item in \"Local\"", i == 0,
               source == object.GetDataSource());
        Expect("IsSameUri()" + of + " and the source \"Local\"", i == 0, IsSameUri(object.GetDataSource(), resource));
        ExpectThat("GetResourceExpandedURI()" + of, "a text", !GetResourceExpandedURI(asObject).empty(), "none");
    }
    Expect("IsSameUri() of the null source", false, IsSameUri(NEXAPtr<IDataSource>(), resources[0]));
    Expect("IsSameUri() of the invalid resource", false, IsSameUri(object.GetDataSource(), NEXAHandle<IValueAsset>()));
    Expect("GetResourceExpandedURI() of an item's object", "", GetResourceExpandedURI(object));
    Expect("GetResourceExpandedURI() of the invalid handle", "", GetResourceExpandedURI(NEXAHandle<IDbObject>()));
    Expect("GetDataSourceFromResource() of null", false, GetDataSourceFromResource(NEXAPtr<IValueAsset>()).IsValid());
    if (!io_trial.Has(eClosing))
        return;

    const NEXAPtr<IValueAsset> designated = resources[0]->GetDesignatedAsset();
    io_trial.GetFixture().Close();
    Expect("IsValid() of a resource in a closed library", false, resources[0].IsValid());
    Expect("GetDataSourceFromResource() in a closed library", false, GetDataSourceFromResource(designated).IsValid());
}

void MovingIsOneCommandThatInvalidates(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID id = io_trial.Add(ItemWish(VireoType::gCompound, "Blend"));
    const NEXAHandle<IDbObject> object = ObjectOf(id);
    const NEXAPtr<IDataSource> local = object.GetDataSource();
    const NEXAPtr<IDataSource> shared = SourceNamed(object, "Shared");
    const bool commits = io_trial.Has(eCommitting);
    NotificationSpy spy(library);
    Expect("MoveToDataSource()", true, Move(object, shared));
    Expect("MoveToDataSource(), its notifications", "begin, invalidated, end", spy.Take());
    Expect("GetDataSource() after MoveToDataSource() is the target", true, object.GetDataSource() == shared);
    if (commits)
        Expect("ItemIsDirty() after MoveToDataSource()", true, IsDirty(library, id));
    if (!io_trial.Has(eUndoing))
        return;
    BoundaryFixture& fixture = io_trial.GetFixture();
    Expect("MoveToDataSource(), the commands", 1, fixture.GetCommandCount());
    fixture.Undo();
    Expect("undoing MoveToDataSource(), its notifications", "begin, invalidated, end", spy.Take());
    Expect("GetDataSource() after undoing MoveToDataSource() is the first one", true, object.GetDataSource() == local);
    if (commits)
        Expect("ItemIsDirty() after undoing MoveToDataSource()", false, IsDirty(library, id));
    fixture.Redo();
    Expect("GetDataSource() after redoing MoveToDataSource() is the target", true, object.GetDataSource() == shared);
}

void MovingRefuses(Trial& io_trial)
{
    struct
    {
        const char* m_what;
        const char* m_from;
        const char* m_target;
    } const cases[] = {
        {"to the same source", "Local", "Local"},
        {"into a read-only source", "Local", "Product"},
        {"out of a read-only source", "Product", "Local"},
        {"to an unknown source", "Local", "Nowhere"},
    };
    for (const auto& refused : cases)
    {
        io_trial.Restart();
        const NEXAHandle<IDbObject> object =
            ObjectOf(io_trial.Add(WishInSource(VireoType::gCompound, "Blend", refused.m_from)));
        const NEXAPtr<IDataSource> before = object.GetDataSource();
        NotificationSpy spy(io_trial.GetLibrary());
        const std::string operation = std::string("MoveToDataSource() ") + refused.m_what;
        Expect(operation, false, Move(object, SourceNamed(object, refused.m_target)));
        const NEXAPtr<IDataSource> shared = SourceNamed(object, "Shared");
        Expect("MoveToDataSource() of the invalid handle", false,
               IHelper::GetHelper(object.GetManager()->GetDatabase())
                   ->MoveToDataSource(NEXAHandle<IDbObject>(), shared, true));
        Expect(operation + ", GetDataSource() is the one before", true, object.GetDataSource() == before);
        Expect(operation + ", its notifications", "", spy.Take());
        if (io_trial.Has(eUndoing))
            Expect(operation + ", the commands", 0, io_trial.GetFixture().GetCommandCount());
        Expect("GetHelper() of the null database", false, IHelper::GetHelper(NEXAPtr<IDatabase>()).IsValid());
    }
}

void CommitOfOneSourceLeavesTheOthers(Trial& io_trial)
{
    const ItemLibraryAccessor library = io_trial.GetLibrary();
    const ItemID local = io_trial.Add(ItemWish(VireoType::gCompound, "A"));
    const ItemID shared = io_trial.Add(WishInSource(VireoType::gCompound, "B", "Shared"));
    SetTags(library, local, "a", nullptr);
    SetTags(library, shared, "b", nullptr);
    const std::vector<NEXAHandle<IValueAsset>> resources = ResourcesBeside(ObjectOf(local));
    Expect("IDatabase::Query() of the resources, how many", std::size_t(3), resources.size());
    bool written = false;
    Expect("CommitToDisk() of one source", true,
           Commit(library, written, nullptr, false, resources[1].GetDbObjectId()));
    Expect("CommitToDisk() of one source, out_written", true, written);
    Expect("ItemIsDirty() in the source that was committed", false, IsDirty(library, shared));
    Expect("ItemIsDirty() in another source than was committed", true, IsDirty(library, local));
}

} // namespace

IRevisionControlUIHelper& RevisionControl()
{
    IRevisionControlUIHelper* const helper = hmxGetService<IRevisionControlUIHelper>("RevisionControlUIHelper");
    ExpectThat("hmxGetService(\"RevisionControlUIHelper\")", "an IRevisionControlUIHelper", helper != nullptr, "null");
    return *helper;
}

NEXAHandle<IDbObject> ObjectOf(const ItemID& in_item)
{
    const std::string uid = UIDOf(in_item);
    ExpectThat("GetItemIDUID()", "an identity text", DbObjectId::IsUID(uid.c_str()), Show(uid));
    IRevisionControlUIHelper& helper = RevisionControl();
    const NEXAHandle<IDbObject> object =
        Call("IRevisionControlUIHelper::FindObject()", [&] { return helper.FindObject(DbObjectId(uid.c_str())); });
    Expect("IRevisionControlUIHelper::FindObject(), IsValid()", true, object.IsValid());
    return object;
}

Promises DatabasePromises()
{
    const char* const objects = "The browser reads the factory mark, read-only sources and \"Show Files\" of an item "
                                "from its database object.";
    const char* const sources = "The browser lists the sources in its menu \"Compound source\", in this order, and "
                                "disables those that the item cannot move to.";
    const char* const moves = "The browser moves a compound from its menu \"Compound source\".";
    return {
        {"uidLeadsToTheObjectAndItsSource", eDatabase, objects, UIDLeadsToTheObjectAndItsSource},
        {"itemWithoutAUIDHasNoObject", eDatabase, objects, ItemWithoutAUIDHasNoObject},
        {"handleFollowsItsItem", eDatabase | eRemoving,
         "The browser keeps handles from one rebuild to the next and resolves them at each use.", HandleFollowsItsItem},
        {"resourcesAreQueriedInOrder", eDatabase, sources, ResourcesAreQueriedInOrder},
        {"otherQueriesMatchNothing", eDatabase, sources, OtherQueriesMatchNothing},
        {"resourcesStandForTheirSources", eDatabase, sources, ResourcesStandForTheirSources},
        {"movingIsOneCommandThatInvalidates", eDatabase, moves, MovingIsOneCommandThatInvalidates},
        {"movingRefuses", eDatabase, moves, MovingRefuses},
        {"commitOfOneSourceLeavesTheOthers", eDatabase | eTagging | eCommitting,
         "A host may save one source alone; the browser's \"Save\" saves all.", CommitOfOneSourceLeavesTheOthers},
    };
}

} // namespace contract
