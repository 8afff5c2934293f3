// SPDX-License-Identifier: MIT
/// A data layer of plain fields. A test sets its answers and reads which calls it got. From inside of a call it does
/// what the test wants, also what a well-behaved data layer never does.
#pragma once

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "tests/nodebrowser/support/recorder.h"

#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A command manager with a name to be known by in a log.
struct NamedManager : public hmx::fwk::ICommandManager
{
    explicit NamedManager(const char* in_name) : m_name(in_name) {}
    const char* const m_name;
};

inline QString ManagerName(hmx::fwk::ICommandManager* in_commands)
{
    const NamedManager* const manager = dynamic_cast<const NamedManager*>(in_commands);
    return QString::fromLatin1(manager ? manager->m_name : in_commands ? "unknown manager" : "no manager");
}

/// An item, which is its own model. Every field may be changed at any time; nobody is told.
struct FakeItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
    bool IsAlive() const override { return m_alive; }
    vireo::datamodel::ItemID GetItemID() const override
    {
        m_recorder->Show(RecordLine("identity", m_name), m_id);
        return m_id;
    }
    vireo::datamodel::CSimpleValue GetValue(const char* in_key) const override
    {
        m_recorder->Show(RecordLine("value", m_name) + QLatin1Char(' ') + Quoted(in_key), m_id);
        return vireo::datamodel::CSimpleValue();
    }

    Recorder* m_recorder = nullptr;
    vireo::datamodel::ItemID m_id;
    const char* m_listedAs = nullptr; ///< the list of the table of contents that has the item
    std::string m_name;
    std::string m_tags;
    std::string m_uid; ///< what the item says its identity text is
    bool m_readOnly = false;
    bool m_dirty = false;
    bool m_signature = false;
    bool m_alive = true;
};

/// The name of an item that may be none.
inline const std::string& NameOrUnknown(const FakeItem* in_item)
{
    static const std::string unknown("unknown item");
    return in_item ? in_item->m_name : unknown;
}

struct FakeCompound : public FakeItem, public vireo::datamodel::ICompound, public vireo::datamodel::ICompoundModifier
{
    vireo::datamodel::ItemID GetItemID() const override { return FakeItem::GetItemID(); }
    bool CanModifyCompound(bool in_withSource) const override
    {
        m_recorder->Command(
            RecordLine("can modify", m_name) + QString::fromLatin1(", with source: ") + YesOrNo(in_withSource), m_id);
        return m_modifiable;
    }
    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) override
    {
        m_recorder->Command(RecordLine("rename", m_name) + QString::fromLatin1(" to %1, ").arg(Quoted(in_newName)) +
                                ManagerName(in_commands),
                            m_id);
    }

    bool m_modifiable = true;
};

struct FakeLoopCompound : public FakeCompound,
                          public vireo::datamodel::ILoopCompound,
                          public vireo::datamodel::ILoopCompoundModifier
{
};

/// The items of one list as they were when the iteration began.
class FakeIterator : public vireo::datamodel::IItemIterator
{
public:
    explicit FakeIterator(std::vector<std::shared_ptr<FakeItem>> in_items) : m_items(std::move(in_items)) {}
    bool IsAtEnd() const override { return m_next >= m_items.size(); }
    void Next() override { ++m_next; }
    vireo::datamodel::ItemAccessor GetItem() const override
    {
        return vireo::datamodel::ItemAccessor(vireo::datamodel::UnspecifiedAccessor(m_items[m_next]));
    }

private:
    std::vector<std::shared_ptr<FakeItem>> m_items;
    std::size_t m_next = 0;
};

/// The table of contents. It is a thing of its own: it can die without its library, and the other way round.
struct FakeContents : public vireo::datamodel::IContext,
                      public vireo::datamodel::IItemTOC,
                      public std::enable_shared_from_this<FakeContents>
{
    using Observer = vireo::datamodel::IItemTOCNotification;
    using ContextPtr = vireo::datamodel::ContextPtr;

    explicit FakeContents(Recorder& out_recorder) : m_recorder(out_recorder) {}

    bool IsAlive() const override { return m_alive; }
    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        m_recorder.Show(RecordLine("iterate", in_type));
        std::vector<std::shared_ptr<FakeItem>> items;
        for (const std::shared_ptr<FakeItem>& item : m_items)
            if (item->m_listedAs == in_type)
                items.push_back(item);
        return std::unique_ptr<vireo::datamodel::IItemIterator>(new FakeIterator(std::move(items)));
    }
    void AddObserver(Observer* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("contents+", in_kind, QString::fromLatin1("A"), in_context.get() == this));
        m_observers.push_back(in_observer);
    }
    void RemoveObserver(Observer* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("contents-", in_kind, QString::fromLatin1("A"), in_context.get() == this));
        m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), in_observer), m_observers.end());
    }

    Recorder& m_recorder;
    std::vector<std::shared_ptr<FakeItem>> m_items; ///< of the library too
    std::vector<Observer*> m_observers;
    bool m_alive = true;
};

struct FakeLibrary : public vireo::datamodel::IContext,
                     public vireo::datamodel::IItemLibrary,
                     public vireo::datamodel::IItemLibraryModifier,
                     public vireo::datamodel::ILowLevelItemLibrary
{
    using ItemID = vireo::datamodel::ItemID;
    using ContextPtr = vireo::datamodel::ContextPtr;
    using ICommandManager = hmx::fwk::ICommandManager;
    using Observer = vireo::datamodel::IItemLibraryNotification;

    FakeLibrary(Recorder& out_recorder, FakeContents& in_contents) : m_recorder(out_recorder), m_contents(in_contents)
    {
    }

    std::shared_ptr<FakeItem> Find(const ItemID& in_item) const
    {
        for (const std::shared_ptr<FakeItem>& item : m_contents.m_items)
            if (item->m_id == in_item)
                return item;
        return nullptr;
    }

    bool IsAlive() const override { return m_alive; }
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override
    {
        const std::shared_ptr<FakeItem> item = Ask("name", in_item);
        if (!in_displayName || in_scope)
            m_recorder.Command(ItemLine("odd name", in_item), in_item);
        return item ? item->m_name : std::string();
    }
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        m_recorder.Show(ItemLine("tags", in_item) + QLatin1Char(' ') + Quoted(in_key), in_item);
        const std::shared_ptr<FakeItem> item = Find(in_item);
        return item && std::string(in_key) == "ApplicationTags" ? item->m_tags : std::string();
    }
    bool ItemIsReadOnly(const ItemID& in_item) const override
    {
        const std::shared_ptr<FakeItem> item = Ask("read-only", in_item);
        return item && item->m_readOnly;
    }
    bool ItemIsDirty(const ItemID& in_item) const override
    {
        const std::shared_ptr<FakeItem> item = Ask("dirty", in_item);
        return item && item->m_dirty;
    }
    vireo::datamodel::UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        if (out_error)
            m_recorder.Command(ItemLine("model", in_item) + QString::fromLatin1(" with error"), in_item);
        const std::shared_ptr<FakeItem> item = Ask("model", in_item);
        return item ? vireo::datamodel::UnspecifiedAccessor(item) : vireo::datamodel::UnspecifiedAccessor();
    }
    void AddObserver(Observer* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("library+", in_kind, QString::fromLatin1("A"), in_context.get() == this));
        m_observers.push_back(in_observer);
    }
    void RemoveObserver(Observer* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("library-", in_kind, QString::fromLatin1("A"), in_context.get() == this));
        m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), in_observer), m_observers.end());
    }

    bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                      const nexa4::TezUID& in_source) override
    {
        m_recorder.Command(QString::fromLatin1("commit, everything: %1, source: %2, messages: %3")
                               .arg(YesOrNo(in_everything))
                               .arg(qtcompat::FromLatin1(in_source.GetStr()))
                               .arg(out_messages ? QString::number(static_cast<int>(out_messages->size()))
                                                 : QString::fromLatin1("null")));
        out_written = !m_refusing;
        if (m_refusing && out_messages)
            out_messages->push_back("The disk is full.");
        return !m_refusing;
    }
    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                     ICommandManager* in_commands) override
    {
        m_recorder.Command(ItemLine("tag", in_item) + QString::fromLatin1(" under %1 with %2, %3")
                                                          .arg(Quoted(in_key))
                                                          .arg(Quoted(in_tags))
                                                          .arg(ManagerName(in_commands)),
                           in_item);
        return !m_refusing;
    }
    ContextPtr CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass, const char* in_category,
                              ICommandManager* in_commands) override
    {
        m_recorder.Command(QString::fromLatin1("create %1, signature: %2, base class: %3, category: %4, %5")
                               .arg(Quoted(in_name))
                               .arg(YesOrNo(in_signature))
                               .arg(Quoted(in_baseClass))
                               .arg(Quoted(in_category))
                               .arg(ManagerName(in_commands)));
        return MakeModel(std::make_shared<FakeCompound>(), in_name);
    }
    ContextPtr CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                  ICommandManager* in_commands) override
    {
        m_recorder.Command(QString::fromLatin1("create loop %1, base class: %2, category: %3, %4")
                               .arg(Quoted(in_name))
                               .arg(Quoted(in_baseClass))
                               .arg(Quoted(in_category))
                               .arg(ManagerName(in_commands)));
        return MakeModel(std::make_shared<FakeLoopCompound>(), in_name);
    }
    bool PreCommit() override
    {
        m_recorder.Command(QString::fromLatin1("pre-commit"));
        return !m_refusing;
    }

    ContextPtr MakeModel(const std::shared_ptr<FakeCompound>& in_model, const char* in_name) const
    {
        if (m_refusing)
            return nullptr;
        in_model->m_recorder = &m_recorder;
        in_model->m_name = in_name;
        in_model->m_id = ItemID(vireo::datamodel::VireoType::gCompound, m_space, 1000 + m_contents.m_items.size());
        return in_model;
    }

    /// Writes down a question about an item. The item is looked up after the hooks, which may take it away.
    std::shared_ptr<FakeItem> Ask(const char* in_what, const ItemID& in_item) const
    {
        m_recorder.Show(ItemLine(in_what, in_item), in_item);
        return Find(in_item);
    }

    QString ItemLine(const char* in_word, const ItemID& in_item) const
    {
        return RecordLine(in_word, NameOrUnknown(Find(in_item).get()));
    }

    Recorder& m_recorder;
    FakeContents& m_contents;
    const std::uint64_t m_space = 0xFA4Eu;
    std::vector<Observer*> m_observers;
    bool m_alive = true;
    bool m_refusing = false; ///< fails every command
};

struct FakeSource : public nexa4::IDataSource
{
    int GetState() const override { return m_state; }
    std::string m_uri;
    int m_state = 0;
};

/// The object of an item, or with a null source and a null manager a broken one.
struct FakeObject : public nexa4::IDbObject
{
    nexa4::DbObjectId GetDbObjectId() const override { return m_id; }
    nexa4::NEXAPtr<nexa4::IDataSource> GetDataSource() const override
    {
        return nexa4::NEXAPtr<nexa4::IDataSource>(m_source);
    }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override
    {
        return nexa4::NEXAPtr<nexa4::IDataModelMgr>(m_manager.lock());
    }

    nexa4::DbObjectId m_id;
    std::shared_ptr<FakeSource> m_source;
    std::weak_ptr<nexa4::IDataModelMgr> m_manager;
};

/// A value. A resource designates another value, and only that one leads to the data source.
struct FakeValue : public nexa4::IValueAsset
{
    nexa4::DbObjectId GetDbObjectId() const override { return m_id; }
    nexa4::NEXAPtr<nexa4::IDataSource> GetDataSource() const override { return nexa4::NEXAPtr<nexa4::IDataSource>(); }
    nexa4::NEXAPtr<nexa4::IDataModelMgr> GetManager() const override { return nexa4::NEXAPtr<nexa4::IDataModelMgr>(); }
    std::string GetName() const override { return m_name; }
    nexa4::NEXAPtr<nexa4::IValueAsset> GetDesignatedAsset() const override
    {
        return nexa4::NEXAPtr<nexa4::IValueAsset>(m_designated);
    }

    nexa4::DbObjectId m_id;
    std::string m_name;
    std::string m_uri;
    std::shared_ptr<FakeSource> m_source; ///< of a designated value
    std::shared_ptr<FakeValue> m_designated;
};

/// The database with everything that its objects lead to.
class FakeDatabase : public nexa4::IDatabase,
                     public nexa4::IDataModelMgr,
                     public nexa4::IHelper,
                     public nexa4::IObjectDatabase,
                     public std::enable_shared_from_this<FakeDatabase>
{
public:
    explicit FakeDatabase(Recorder& out_recorder) : m_recorder(out_recorder), m_instance(nexa4::NewDatabaseInstance())
    {
    }

    nexa4::DbObjectId MakeId(unsigned in_number) const
    {
        char text[40];
        std::snprintf(text, sizeof text, "C0DE0000-0000-0000-0000-0000%08X", in_number);
        return nexa4::DbObjectId(text);
    }

    nexa4::NEXAHandle<nexa4::IDbObject> Put(const std::shared_ptr<nexa4::IDbObject>& in_object)
    {
        m_objects.push_back(in_object);
        return nexa4::NEXAHandle<nexa4::IDbObject>::AssignCast(m_instance, static_cast<int>(m_objects.size()) - 1);
    }

    nexa4::NEXAHandle<nexa4::IDbObject> FindObject(const nexa4::DbObjectId& in_id) const override
    {
        for (std::size_t i = 0; i < m_objects.size(); ++i)
            if (m_objects[i]->GetDbObjectId() == in_id)
                return nexa4::NEXAHandle<nexa4::IDbObject>::AssignCast(m_instance, static_cast<int>(i));
        return nexa4::NEXAHandle<nexa4::IDbObject>();
    }
    std::vector<nexa4::DbObjectId> Query(const std::string& in_query, bool in_loaded) const override
    {
        m_recorder.Command(
            QString::fromLatin1("query %1, loaded: %2").arg(Quoted(in_query.c_str())).arg(YesOrNo(in_loaded)));
        return m_matches;
    }
    nexa4::NEXAPtr<nexa4::IDatabase> GetDatabase() const override
    {
        return m_reachable ? nexa4::NEXAPtr<nexa4::IDatabase>(std::const_pointer_cast<FakeDatabase>(shared_from_this()))
                           : nexa4::NEXAPtr<nexa4::IDatabase>();
    }
    bool MoveToDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object,
                          const nexa4::NEXAPtr<nexa4::IDataSource>& in_target, bool in_withContent) override
    {
        const FakeSource* const target =
            in_target.IsValid() ? dynamic_cast<const FakeSource*>(in_target.GetPointeeNotNull()) : nullptr;
        m_recorder.Command(QString::fromLatin1("move %1 to %2, with content: %3")
                               .arg(in_object.IsValid() ? qtcompat::FromLatin1(in_object.GetDbObjectId().GetStr())
                                                        : QString::fromLatin1("nothing"))
                               .arg(target ? Quoted(target->m_uri.c_str()) : QString::fromLatin1("no source"))
                               .arg(YesOrNo(in_withContent)));
        return target != nullptr && !m_refusing;
    }

    std::shared_ptr<nexa4::IDbObject> GetObjectAt(int in_instance, int in_cacheIndex) override
    {
        return in_instance == m_instance && in_cacheIndex >= 0 &&
                       static_cast<std::size_t>(in_cacheIndex) < m_objects.size()
                   ? m_objects[static_cast<std::size_t>(in_cacheIndex)]
                   : nullptr;
    }
    nexa4::DbObjectId GetResourceType() override { return m_resourceType; }
    nexa4::NEXAPtr<nexa4::IHelper> GetHelper(const nexa4::NEXAPtr<nexa4::IDatabase>& in_database) override
    {
        m_recorder.Command(QString::fromLatin1("database helper"));
        return m_helped && in_database == GetDatabase() ? nexa4::NEXAPtr<nexa4::IHelper>(shared_from_this())
                                                        : nexa4::NEXAPtr<nexa4::IHelper>();
    }
    nexa4::NEXAPtr<nexa4::IDataSource>
    GetDataSourceFromResource(const nexa4::NEXAPtr<nexa4::IValueAsset>& in_resource) override
    {
        const FakeValue* const value = dynamic_cast<const FakeValue*>(in_resource.GetPointeeNotNull());
        return nexa4::NEXAPtr<nexa4::IDataSource>(value ? value->m_source : nullptr);
    }
    bool IsSameUri(const nexa4::NEXAPtr<nexa4::IDataSource>& in_source,
                   const nexa4::NEXAHandle<nexa4::IValueAsset>& in_resource) override
    {
        const FakeSource* const source = dynamic_cast<const FakeSource*>(in_source.GetPointeeNotNull());
        const FakeValue* const value = dynamic_cast<const FakeValue*>(in_resource.operator->().GetPointeeNotNull());
        return source && value && source->m_uri == value->m_uri;
    }
    std::string GetResourceExpandedURI(const nexa4::NEXAHandle<nexa4::IDbObject>& in_resource) override
    {
        const FakeValue* const value = dynamic_cast<const FakeValue*>(in_resource.operator->().GetPointeeNotNull());
        return value ? value->m_uri : std::string();
    }

    Recorder& m_recorder;
    const int m_instance;
    const nexa4::DbObjectId m_resourceType{"0FACE000-1111-2222-3333-444455556666"};
    std::vector<std::shared_ptr<nexa4::IDbObject>> m_objects;
    std::vector<nexa4::DbObjectId> m_matches; ///< what a query finds
    bool m_refusing = false;                  ///< moves and check-outs fail
    bool m_reachable = true;                  ///< whether the manager has a database
    bool m_helped = true;                     ///< whether the database has a helper
};

/// The whole data layer. Making one installs it, destroying it puts back what was there before. At first there is a
/// system with the service "RevisionControlUIHelper", and no display of source control.
class FakeLayer : public Recorder,
                  private hmx::ISystem,
                  private vireo::datamodel::IItemModel,
                  private nexa4::IRevisionControlUIHelper,
                  private ISourceControlDisplay
{
public:
    using ItemID = vireo::datamodel::ItemID;
    using ItemAccessor = vireo::datamodel::ItemAccessor;
    using ItemLibraryAccessor = vireo::datamodel::ItemLibraryAccessor;
    using Handle = nexa4::NEXAHandle<nexa4::IDbObject>;

    FakeLayer()
        : m_database(std::make_shared<FakeDatabase>(*this)),
          m_contents(std::make_shared<FakeContents>(*this)),
          m_library(std::make_shared<FakeLibrary>(*this, *m_contents))
    {
        m_services["RevisionControlUIHelper"] = this;
        m_provider.m_system = this;
        m_provider.m_items = this;
        m_provider.m_objects = m_database.get();
        m_before = InstallProvider(m_provider);
    }
    ~FakeLayer() override { InstallProvider(m_before); }
    FakeLayer(const FakeLayer&) = delete;
    FakeLayer& operator=(const FakeLayer&) = delete;

    ItemLibraryAccessor GetAccessor() const
    {
        return ItemLibraryAccessor(vireo::datamodel::UnspecifiedAccessor(m_library));
    }

    /// Adds an item without a database object, whose model is nothing but an item.
    FakeItem& Add(const char* in_type, const std::string& in_name) { return AddAs(in_type, in_type, in_name); }

    /// Adds an item whose identity has another type name than the list that it stands in.
    FakeItem& AddAs(const char* in_listedAs, const char* in_type, const std::string& in_name)
    {
        return Put(std::make_shared<FakeItem>(), in_listedAs, in_type, in_name);
    }

    FakeCompound& AddCompound(const std::string& in_name)
    {
        const std::shared_ptr<FakeCompound> compound = std::make_shared<FakeCompound>();
        Put(compound, vireo::datamodel::VireoType::gCompound, vireo::datamodel::VireoType::gCompound, in_name);
        return *compound;
    }

    /// Adds solvers named "Node 000", "Node 001" and so on.
    void AddNodes(int in_count)
    {
        for (int i = 0; i < in_count; ++i)
        {
            const std::string number = std::to_string(i);
            Add(vireo::datamodel::VireoType::gSolver,
                "Node " + std::string(number.size() < 3 ? 3 - number.size() : 0, '0') + number);
        }
    }

    /// The items in the order in which they were added.
    FakeItem& GetItem(int in_index) const { return *m_contents->m_items[static_cast<std::size_t>(in_index)]; }

    /// Gives an item an identity that is a UID, and unless told otherwise an object with it in a plain source.
    std::shared_ptr<FakeObject> GiveObject(FakeItem& out_item, bool in_known = true)
    {
        const std::shared_ptr<FakeObject> object = std::make_shared<FakeObject>();
        object->m_id = m_database->MakeId(++m_lastId);
        object->m_source = MakeSource("//plain");
        object->m_manager = m_database;
        out_item.m_uid = object->m_id.GetStr();
        if (in_known)
            m_database->Put(object);
        return object;
    }

    std::shared_ptr<FakeSource> MakeSource(const std::string& in_uri, int in_state = 0) const
    {
        const std::shared_ptr<FakeSource> source = std::make_shared<FakeSource>();
        source->m_uri = in_uri;
        source->m_state = in_state;
        return source;
    }

    /// Adds a resource that stands for a data source, or with null for none; queries find it.
    std::shared_ptr<FakeValue> AddResource(const std::string& in_name, const std::string& in_uri,
                                           const std::shared_ptr<FakeSource>& in_source)
    {
        const std::shared_ptr<FakeValue> resource = std::make_shared<FakeValue>();
        resource->m_id = m_database->MakeId(++m_lastId);
        resource->m_name = in_name;
        resource->m_uri = in_uri;
        resource->m_designated = std::make_shared<FakeValue>();
        resource->m_designated->m_source = in_source;
        m_database->Put(resource);
        m_database->m_matches.push_back(resource->m_id);
        return resource;
    }

    /// Puts a service in the place of another or takes one away (null).
    void SetService(const char* in_name, hmx::IBase* in_service) { m_services[in_name] = in_service; }

    /// Whether there is a system at all.
    void SetSystemPresent(bool in_present)
    {
        m_provider.m_system = in_present ? this : nullptr;
        InstallProvider(m_provider);
    }

    /// Switches source control on: it is active, shows icons as they are, and never answers a request.
    void ShowSourceControl()
    {
        m_provider.m_sourceControl = this;
        InstallProvider(m_provider);
    }

    /// Notifies the library's observers: calls in_notify(observer, library) for each.
    template <class Notification> void NotifyLibrary(Notification in_notify)
    {
        Show(QString::fromLatin1("notify library"));
        ItemLibraryAccessor library = GetAccessor();
        const std::vector<FakeLibrary::Observer*> observers = m_library->m_observers;
        for (FakeLibrary::Observer* const observer : observers)
            in_notify(*observer, library);
    }

    /// Takes an item out of the library, and notifies the observers of the table of contents first.
    void Remove(int in_index)
    {
        Show(QString::fromLatin1("notify contents"));
        const std::shared_ptr<FakeItem> item = m_contents->m_items[static_cast<std::size_t>(in_index)];
        ItemAccessor accessor((vireo::datamodel::UnspecifiedAccessor(item)));
        const std::vector<FakeContents::Observer*> observers = m_contents->m_observers;
        for (FakeContents::Observer* const observer : observers)
            observer->ItemRemoved(accessor);
        item->m_alive = false;
        m_contents->m_items.erase(std::find(m_contents->m_items.begin(), m_contents->m_items.end(), item));
    }

    const std::shared_ptr<FakeDatabase> m_database;
    const std::shared_ptr<FakeContents> m_contents;
    const std::shared_ptr<FakeLibrary> m_library;
    NamedManager m_commands{"the manager"};

private:
    FakeItem& Put(const std::shared_ptr<FakeItem>& in_item, const char* in_listedAs, const char* in_type,
                  const std::string& in_name)
    {
        in_item->m_recorder = this;
        in_item->m_id = ItemID(in_type, m_library->m_space, ++m_lastNumber);
        in_item->m_listedAs = in_listedAs;
        in_item->m_name = in_name;
        in_item->m_uid = "no identity";
        m_contents->m_items.push_back(in_item);
        return *in_item;
    }

    static QString Id(const Handle& in_object) { return qtcompat::FromLatin1(in_object.GetDbObjectId().GetStr()); }

    static const FakeItem* ItemOf(const vireo::datamodel::BaseAccessor& in_accessor)
    {
        return dynamic_cast<const FakeItem*>(in_accessor.GetContext().get());
    }

    /// Writes down a question about an item that is asked through an accessor.
    const FakeItem* Ask(const char* in_what, const ItemAccessor& in_item)
    {
        const FakeItem* const item = ItemOf(in_item);
        Show(RecordLine(in_what, NameOrUnknown(item)), item ? item->m_id : ItemID());
        return item;
    }

    // ISystem
    hmx::IBase* GetService(const char* in_name) override
    {
        Show(QString::fromLatin1("service %1").arg(Quoted(in_name)));
        const auto service = m_services.find(in_name);
        return service == m_services.end() ? nullptr : service->second;
    }

    // IItemModel
    vireo::datamodel::ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override
    {
        Show(QString::fromLatin1("contents of A"));
        const FakeLibrary* const library = dynamic_cast<const FakeLibrary*>(in_library.GetContext().get());
        return library ? vireo::datamodel::ItemTOCAccessor(
                             vireo::datamodel::UnspecifiedAccessor(library->m_contents.shared_from_this()))
                       : vireo::datamodel::ItemTOCAccessor();
    }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor&, const char* in_name) override
    {
        Show(QString::fromLatin1("used %1").arg(Quoted(in_name)));
        for (const std::shared_ptr<FakeItem>& item : m_contents->m_items)
            if (item->m_name == in_name)
                return true;
        return false;
    }
    bool IsAbstractFunction(ItemAccessor& in_item) override
    {
        const FakeItem* const item = Ask("signature", in_item);
        return item && item->m_signature;
    }
    bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) override
    {
        Ask((std::string("valid ") + in_typeName).c_str(), in_item);
        return true;
    }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        const FakeItem* const target = ItemOf(in_target);
        Command(QString::fromLatin1("target %1, root %2").arg(NameOf(in_target)).arg(NameOf(in_root)),
                target ? target->m_id : ItemID());
    }
    const char* GetItemIDUID(const ItemID& in_item) override
    {
        const std::shared_ptr<FakeItem> item = m_library->Ask("uid", in_item);
        return item ? item->m_uid.c_str() : "";
    }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return nullptr; }

    static QString NameOf(const vireo::datamodel::CompoundAccessor& in_compound)
    {
        if (!in_compound.IsValid())
            return QString::fromLatin1(in_compound.GetContext() ? "of another kind" : "none");
        const FakeItem* const item = ItemOf(in_compound);
        return item ? qtcompat::FromLatin1(item->m_name) : QString::fromLatin1("unknown");
    }

    // IRevisionControlUIHelper
    void CheckOut(const Handle& in_object, bool* out_result, bool in_interactive) override
    {
        Command(QString::fromLatin1("check out %1, result: %2, interactive: %3")
                    .arg(Id(in_object))
                    .arg(YesOrNo(out_result != nullptr))
                    .arg(YesOrNo(in_interactive)));
        if (out_result)
            *out_result = !m_database->m_refusing;
    }
    void MakeWritable(const Handle& in_object, bool in_interactive) override
    {
        Command(
            QString::fromLatin1("make writable %1, interactive: %2").arg(Id(in_object)).arg(YesOrNo(in_interactive)));
    }
    Handle FindObject(const nexa4::DbObjectId& in_id) override
    {
        Command(RecordLine("find", in_id.GetStr()));
        return m_database->FindObject(in_id);
    }
    void ShowFiles(const Handle& in_object, const char* in_options) override
    {
        Command(QString::fromLatin1("show files %1, options: %2").arg(Id(in_object)).arg(Quoted(in_options)));
    }

    // ISourceControlDisplay
    void RequestObjectStates(const ScsTask& in_task, const std::list<Handle>& in_objects) override
    {
        Command(QString::fromLatin1("request %1 for ").arg(static_cast<int>(in_objects.size())) +
                qtcompat::FromLatin1(in_task.GetName()));
    }
    void TaskEnded(const ScsTask& in_task) override { Command(RecordLine("task ended", in_task.GetName())); }
    bool IsFileVersionControlActive() override
    {
        Show(QString::fromLatin1("active"));
        return true;
    }
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool, bool) override
    {
        Show(QString::fromLatin1("icon %1").arg(in_state));
        return in_base;
    }
    QString GetToolTip(const Handle&, const QString&) override { return QString(); }

    std::map<std::string, hmx::IBase*> m_services;
    Provider m_provider;
    Provider m_before;
    unsigned m_lastId = 0;
    std::uint64_t m_lastNumber = 0; // of an item; never used again
};
