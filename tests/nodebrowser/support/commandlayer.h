// SPDX-License-Identifier: MIT
/// A data layer of plain fields that writes down every command it is given, and answers or refuses as a test wants.
#pragma once

#include "datamodel/compoundmodifier.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A text of the data layer as a log shows it: in quotes, or "null".
inline QString Quoted(const char* in_text)
{
    return in_text ? QString::fromLatin1("'%1'").arg(QString::fromLatin1(in_text)) : QString::fromLatin1("null");
}

inline QString YesOrNo(bool in_value)
{
    return QString::fromLatin1(in_value ? "yes" : "no");
}

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
struct RecordedItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
    bool IsAlive() const override { return m_alive; }
    vireo::datamodel::ItemID GetItemID() const override { return m_id; }
    vireo::datamodel::CSimpleValue GetValue(const char*) const override { return vireo::datamodel::CSimpleValue(); }

    QStringList* m_log = nullptr;
    vireo::datamodel::ItemID m_id;
    const char* m_listedAs = nullptr; ///< the list of the table of contents that has the item
    std::string m_name;
    std::string m_tags;
    std::string m_uid; ///< what the item says its identity text is
    bool m_readOnly = false;
    bool m_signature = false;
    bool m_alive = true;
};

struct RecordedCompound : public RecordedItem,
                          public vireo::datamodel::ICompound,
                          public vireo::datamodel::ICompoundModifier
{
    vireo::datamodel::ItemID GetItemID() const override { return m_id; }
    bool CanModifyCompound(bool in_withSource) const override
    {
        *m_log << QString::fromLatin1("can modify %1, with source: %2")
                      .arg(QString::fromLatin1(m_name.c_str()))
                      .arg(YesOrNo(in_withSource));
        return m_modifiable;
    }
    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) override
    {
        *m_log << QString::fromLatin1("rename %1 to %2, %3")
                      .arg(QString::fromLatin1(m_name.c_str()))
                      .arg(Quoted(in_newName))
                      .arg(ManagerName(in_commands));
    }

    bool m_modifiable = true;
};

struct RecordedLoopCompound : public RecordedCompound,
                              public vireo::datamodel::ILoopCompound,
                              public vireo::datamodel::ILoopCompoundModifier
{
};

/// The library's context, which is its own table of contents.
struct RecordedLibrary : public vireo::datamodel::IContext,
                         public vireo::datamodel::IItemLibrary,
                         public vireo::datamodel::IItemTOC,
                         public vireo::datamodel::IItemLibraryModifier,
                         public vireo::datamodel::ILowLevelItemLibrary
{
    using ItemID = vireo::datamodel::ItemID;
    using ContextPtr = vireo::datamodel::ContextPtr;
    using ICommandManager = hmx::fwk::ICommandManager;

    class Walk : public vireo::datamodel::IItemIterator
    {
    public:
        explicit Walk(std::vector<std::shared_ptr<RecordedItem>> in_items) : m_items(std::move(in_items)) {}
        bool IsAtEnd() const override { return m_next >= m_items.size(); }
        void Next() override { ++m_next; }
        vireo::datamodel::ItemAccessor GetItem() const override
        {
            return vireo::datamodel::ItemAccessor(vireo::datamodel::UnspecifiedAccessor(m_items[m_next]));
        }

    private:
        std::vector<std::shared_ptr<RecordedItem>> m_items;
        std::size_t m_next = 0;
    };

    explicit RecordedLibrary(QStringList& in_log) : m_log(in_log) {}

    RecordedItem* Find(const ItemID& in_item) const
    {
        for (const std::shared_ptr<RecordedItem>& item : m_items)
            if (item->m_id == in_item)
                return item.get();
        return nullptr;
    }

    bool IsAlive() const override { return m_alive; }
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override
    {
        if (!in_displayName || in_scope)
            m_log << QString::fromLatin1("asked for another name than the display name");
        const RecordedItem* const item = Find(in_item);
        return item ? item->m_name : std::string();
    }
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        const RecordedItem* const item = Find(in_item);
        return item && std::string(in_key) == "ApplicationTags" ? item->m_tags : std::string();
    }
    bool ItemIsReadOnly(const ItemID& in_item) const override
    {
        const RecordedItem* const item = Find(in_item);
        return item && item->m_readOnly;
    }
    bool ItemIsDirty(const ItemID&) const override { return false; }
    vireo::datamodel::UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        if (out_error)
            m_log << QString::fromLatin1("asked for the error of a model");
        for (const std::shared_ptr<RecordedItem>& item : m_items)
            if (item->m_id == in_item)
                return vireo::datamodel::UnspecifiedAccessor(item);
        return vireo::datamodel::UnspecifiedAccessor();
    }
    void AddObserver(vireo::datamodel::IItemLibraryNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification*, int, const ContextPtr&) override {}

    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        ++m_walks;
        std::vector<std::shared_ptr<RecordedItem>> items;
        for (const std::shared_ptr<RecordedItem>& item : m_items)
            if (item->m_listedAs == in_type)
                items.push_back(item);
        return std::unique_ptr<vireo::datamodel::IItemIterator>(new Walk(std::move(items)));
    }
    void AddObserver(vireo::datamodel::IItemTOCNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(vireo::datamodel::IItemTOCNotification*, int, const ContextPtr&) override {}

    bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                      const nexa4::TezUID& in_source) override
    {
        m_log << QString::fromLatin1("commit, everything: %1, source: %2, messages: %3")
                     .arg(YesOrNo(in_everything))
                     .arg(QString::fromLatin1(in_source.GetStr().c_str()))
                     .arg(out_messages ? QString::number(static_cast<int>(out_messages->size()))
                                       : QString::fromLatin1("null"));
        out_written = !m_refusing;
        if (m_refusing && out_messages)
            out_messages->push_back("The disk is full.");
        return !m_refusing;
    }
    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                     ICommandManager* in_commands) override
    {
        m_log << QString::fromLatin1("tag %1 under %2 with %3, %4")
                     .arg(QString::fromLatin1(GetItemName(in_item, true, nullptr).c_str()))
                     .arg(Quoted(in_key))
                     .arg(Quoted(in_tags))
                     .arg(ManagerName(in_commands));
        return !m_refusing;
    }
    ContextPtr CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass, const char* in_category,
                              ICommandManager* in_commands) override
    {
        m_log << QString::fromLatin1("create %1, signature: %2, base class: %3, category: %4, %5")
                     .arg(Quoted(in_name))
                     .arg(YesOrNo(in_signature))
                     .arg(Quoted(in_baseClass))
                     .arg(Quoted(in_category))
                     .arg(ManagerName(in_commands));
        return MakeModel(std::make_shared<RecordedCompound>(), in_name);
    }
    ContextPtr CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                  ICommandManager* in_commands) override
    {
        m_log << QString::fromLatin1("create loop %1, base class: %2, category: %3, %4")
                     .arg(Quoted(in_name))
                     .arg(Quoted(in_baseClass))
                     .arg(Quoted(in_category))
                     .arg(ManagerName(in_commands));
        return MakeModel(std::make_shared<RecordedLoopCompound>(), in_name);
    }
    bool PreCommit() override
    {
        m_log << QString::fromLatin1("pre-commit");
        return !m_refusing;
    }

    ContextPtr MakeModel(const std::shared_ptr<RecordedCompound>& in_model, const char* in_name) const
    {
        if (m_refusing)
            return nullptr;
        in_model->m_log = &m_log;
        in_model->m_name = in_name;
        in_model->m_id = ItemID(vireo::datamodel::VireoType::gCompound, m_space, 1000 + m_items.size());
        return in_model;
    }

    QStringList& m_log;
    std::uint64_t m_space = 0;
    std::vector<std::shared_ptr<RecordedItem>> m_items;
    bool m_alive = true;
    bool m_refusing = false; ///< fails every command
    mutable int m_walks = 0; ///< how often one of the lists was walked; each rebuild walks all five
};

struct RecordedSource : public nexa4::IDataSource
{
    int GetState() const override { return m_state; }
    std::string m_uri;
    int m_state = 0;
};

/// The object of an item, or with a null source and a null manager a broken one.
struct RecordedObject : public nexa4::IDbObject
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
    std::shared_ptr<RecordedSource> m_source;
    std::weak_ptr<nexa4::IDataModelMgr> m_manager;
};

/// A value. A resource designates another value, and only that one leads to the data source.
struct RecordedValue : public nexa4::IValueAsset
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
    std::shared_ptr<RecordedSource> m_source; ///< of a designated value
    std::shared_ptr<RecordedValue> m_designated;
};

/// The database with everything that its objects lead to.
class RecordedDatabase : public nexa4::IDatabase,
                         public nexa4::IDataModelMgr,
                         public nexa4::IHelper,
                         public nexa4::IObjectDatabase,
                         public std::enable_shared_from_this<RecordedDatabase>
{
public:
    explicit RecordedDatabase(QStringList& in_log) : m_log(in_log), m_instance(nexa4::NewDatabaseInstance()) {}

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
        m_log << QString::fromLatin1("query %1, loaded: %2").arg(Quoted(in_query.c_str())).arg(YesOrNo(in_loaded));
        return m_matches;
    }
    nexa4::NEXAPtr<nexa4::IDatabase> GetDatabase() const override
    {
        return m_reachable
                   ? nexa4::NEXAPtr<nexa4::IDatabase>(std::const_pointer_cast<RecordedDatabase>(shared_from_this()))
                   : nexa4::NEXAPtr<nexa4::IDatabase>();
    }
    bool MoveToDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object,
                          const nexa4::NEXAPtr<nexa4::IDataSource>& in_target, bool in_withContent) override
    {
        const RecordedSource* const target =
            in_target.IsValid() ? dynamic_cast<const RecordedSource*>(in_target.GetPointeeNotNull()) : nullptr;
        m_log << QString::fromLatin1("move %1 to %2, with content: %3")
                     .arg(in_object.IsValid() ? QString::fromLatin1(in_object.GetDbObjectId().GetStr().c_str())
                                              : QString::fromLatin1("nothing"))
                     .arg(target ? Quoted(target->m_uri.c_str()) : QString::fromLatin1("no source"))
                     .arg(YesOrNo(in_withContent));
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
        m_log << QString::fromLatin1("database helper");
        return m_helped && in_database == GetDatabase() ? nexa4::NEXAPtr<nexa4::IHelper>(shared_from_this())
                                                        : nexa4::NEXAPtr<nexa4::IHelper>();
    }
    nexa4::NEXAPtr<nexa4::IDataSource>
    GetDataSourceFromResource(const nexa4::NEXAPtr<nexa4::IValueAsset>& in_resource) override
    {
        const RecordedValue* const value = dynamic_cast<const RecordedValue*>(in_resource.GetPointeeNotNull());
        return nexa4::NEXAPtr<nexa4::IDataSource>(value ? value->m_source : nullptr);
    }
    bool IsSameUri(const nexa4::NEXAPtr<nexa4::IDataSource>& in_source,
                   const nexa4::NEXAHandle<nexa4::IValueAsset>& in_resource) override
    {
        const RecordedSource* const source = dynamic_cast<const RecordedSource*>(in_source.GetPointeeNotNull());
        const RecordedValue* const value =
            dynamic_cast<const RecordedValue*>(in_resource.operator->().GetPointeeNotNull());
        return source && value && source->m_uri == value->m_uri;
    }
    std::string GetResourceExpandedURI(const nexa4::NEXAHandle<nexa4::IDbObject>& in_resource) override
    {
        const RecordedValue* const value =
            dynamic_cast<const RecordedValue*>(in_resource.operator->().GetPointeeNotNull());
        return value ? value->m_uri : std::string();
    }

    QStringList& m_log;
    const int m_instance;
    const nexa4::DbObjectId m_resourceType{"0FACE000-1111-2222-3333-444455556666"};
    std::vector<std::shared_ptr<nexa4::IDbObject>> m_objects;
    std::vector<nexa4::DbObjectId> m_matches; ///< what a query finds
    bool m_refusing = false;                  ///< moves and check-outs fail
    bool m_reachable = true;                  ///< whether the manager has a database
    bool m_helped = true;                     ///< whether the database has a helper
};

/// Installs itself for as long as it lives. Lines of the log, besides those of the classes above:
///   find UID             an object was looked up through the revision-control helper
///   check out UID …, make writable UID …, show files UID …
///   target NAME, root NAME
class CommandLayer : private hmx::ISystem, private vireo::datamodel::IItemModel, private nexa4::IRevisionControlUIHelper
{
public:
    using ItemID = vireo::datamodel::ItemID;
    using Handle = nexa4::NEXAHandle<nexa4::IDbObject>;

    CommandLayer()
        : m_database(std::make_shared<RecordedDatabase>(m_log)), m_library(std::make_shared<RecordedLibrary>(m_log))
    {
        m_library->m_space = 0xC0DEu;
        Install(true);
    }
    ~CommandLayer() override { InstallProvider(m_before); }
    CommandLayer(const CommandLayer&) = delete;
    CommandLayer& operator=(const CommandLayer&) = delete;

    vireo::datamodel::ItemLibraryAccessor GetAccessor() const
    {
        return vireo::datamodel::ItemLibraryAccessor(vireo::datamodel::UnspecifiedAccessor(m_library));
    }

    /// Adds an item without a database object.
    RecordedItem& Add(const char* in_type, const std::string& in_name) { return AddAs(in_type, in_type, in_name); }

    /// Adds an item whose identity has another type name than the list that it stands in.
    RecordedItem& AddAs(const char* in_listedAs, const char* in_type, const std::string& in_name)
    {
        return AddTo(*m_library, std::make_shared<RecordedItem>(), in_listedAs, in_type, in_name);
    }

    RecordedCompound& AddCompound(const std::string& in_name)
    {
        const std::shared_ptr<RecordedCompound> compound = std::make_shared<RecordedCompound>();
        AddTo(*m_library, compound, vireo::datamodel::VireoType::gCompound, vireo::datamodel::VireoType::gCompound,
              in_name);
        return *compound;
    }

    /// Gives an item an identity that is a UID, and unless told otherwise an object with it in a plain source.
    std::shared_ptr<RecordedObject> GiveObject(RecordedItem& out_item, bool in_known = true)
    {
        const std::shared_ptr<RecordedObject> object = std::make_shared<RecordedObject>();
        object->m_id = m_database->MakeId(++m_lastId);
        object->m_source = MakeSource("//plain");
        object->m_manager = m_database;
        out_item.m_uid = object->m_id.GetStr();
        if (in_known)
            m_database->Put(object);
        return object;
    }

    std::shared_ptr<RecordedSource> MakeSource(const std::string& in_uri, int in_state = 0) const
    {
        const std::shared_ptr<RecordedSource> source = std::make_shared<RecordedSource>();
        source->m_uri = in_uri;
        source->m_state = in_state;
        return source;
    }

    /// Adds a resource that stands for a data source, or with null for none; queries find it.
    std::shared_ptr<RecordedValue> AddResource(const std::string& in_name, const std::string& in_uri,
                                               const std::shared_ptr<RecordedSource>& in_source)
    {
        const std::shared_ptr<RecordedValue> resource = std::make_shared<RecordedValue>();
        resource->m_id = m_database->MakeId(++m_lastId);
        resource->m_name = in_name;
        resource->m_uri = in_uri;
        resource->m_designated = std::make_shared<RecordedValue>();
        resource->m_designated->m_source = in_source;
        m_database->Put(resource);
        m_database->m_matches.push_back(resource->m_id);
        return resource;
    }

    /// Whether there is a system at all.
    void SetSystemPresent(bool in_present) { Install(in_present); }

    /// What of the log begins with a text.
    QStringList Lines(const char* in_beginning) const
    {
        QStringList lines;
        for (int i = 0; i < m_log.size(); ++i)
            if (m_log.at(i).startsWith(QLatin1String(in_beginning)))
                lines << m_log.at(i);
        return lines;
    }

    QStringList m_log;
    const std::shared_ptr<RecordedDatabase> m_database;
    const std::shared_ptr<RecordedLibrary> m_library;
    bool m_helperPresent = true;
    hmx::IBase* m_otherService = nullptr; ///< answers in the helper's place when there is none
    NamedManager m_commands{"the manager"};

private:
    static RecordedItem& AddTo(RecordedLibrary& out_library, const std::shared_ptr<RecordedItem>& in_item,
                               const char* in_listedAs, const char* in_type, const std::string& in_name)
    {
        in_item->m_log = &out_library.m_log;
        in_item->m_id = ItemID(in_type, out_library.m_space, out_library.m_items.size() + 1);
        in_item->m_listedAs = in_listedAs;
        in_item->m_name = in_name;
        in_item->m_uid = "no identity";
        out_library.m_items.push_back(in_item);
        return *in_item;
    }

    void Install(bool in_withSystem)
    {
        Provider provider;
        provider.m_system = in_withSystem ? this : nullptr;
        provider.m_items = this;
        provider.m_objects = m_database.get();
        const Provider before = InstallProvider(provider);
        if (before.m_items != this)
            m_before = before;
    }

    static QString Id(const Handle& in_object)
    {
        return QString::fromLatin1(in_object.GetDbObjectId().GetStr().c_str());
    }

    // ISystem
    hmx::IBase* GetService(const char* in_name) override
    {
        if (std::string(in_name) != "RevisionControlUIHelper")
            return nullptr;
        return m_helperPresent ? this : m_otherService;
    }

    // IItemModel
    vireo::datamodel::ItemTOCAccessor GetTOC(const vireo::datamodel::ItemLibraryAccessor& in_library) override
    {
        return vireo::datamodel::ItemTOCAccessor(in_library);
    }
    bool IsNameInNodeLibraryHierarchy(const vireo::datamodel::ItemLibraryAccessor&, const char* in_name) override
    {
        for (const std::shared_ptr<RecordedItem>& item : m_library->m_items)
            if (item->m_name == in_name)
                return true;
        return false;
    }
    bool IsAbstractFunction(vireo::datamodel::ItemAccessor& in_item) override
    {
        const RecordedItem* const item = m_library->Find(in_item.GetItemID());
        return item && item->m_signature;
    }
    bool IsValidGraphItemType(const char*, vireo::datamodel::ItemAccessor&) override { return true; }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        m_log << QString::fromLatin1("target %1, root %2").arg(NameOf(in_target)).arg(NameOf(in_root));
    }
    const char* GetItemIDUID(const ItemID& in_item) override
    {
        const RecordedItem* const item = m_library->Find(in_item);
        return item ? item->m_uid.c_str() : "";
    }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return nullptr; }

    static QString NameOf(const vireo::datamodel::CompoundAccessor& in_compound)
    {
        const RecordedItem* const item = dynamic_cast<const RecordedItem*>(in_compound.GetContext().get());
        if (!in_compound.IsValid())
            return QString::fromLatin1(in_compound.GetContext() ? "of another kind" : "none");
        return item ? QString::fromLatin1(item->m_name.c_str()) : QString::fromLatin1("unknown");
    }

    // IRevisionControlUIHelper
    void CheckOut(const Handle& in_object, bool* out_result, bool in_interactive) override
    {
        m_log << QString::fromLatin1("check out %1, result: %2, interactive: %3")
                     .arg(Id(in_object))
                     .arg(YesOrNo(out_result != nullptr))
                     .arg(YesOrNo(in_interactive));
        if (out_result)
            *out_result = !m_database->m_refusing;
    }
    void MakeWritable(const Handle& in_object, bool in_interactive) override
    {
        m_log
            << QString::fromLatin1("make writable %1, interactive: %2").arg(Id(in_object)).arg(YesOrNo(in_interactive));
    }
    Handle FindObject(const nexa4::DbObjectId& in_id) override
    {
        m_log << QString::fromLatin1("find %1").arg(QString::fromLatin1(in_id.GetStr().c_str()));
        return m_database->FindObject(in_id);
    }
    void ShowFiles(const Handle& in_object, const char* in_options) override
    {
        m_log << QString::fromLatin1("show files %1, options: %2").arg(Id(in_object)).arg(Quoted(in_options));
    }

    Provider m_before;
    unsigned m_lastId = 0;
};
