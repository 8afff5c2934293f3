// SPDX-License-Identifier: MIT
#include "sqlitelayer.h"

#include <datamodel/compoundmodifier.h>
#include <datamodel/itemlibrarymodifier.h>

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <vector>

using namespace vireo::datamodel;

namespace
{

using Commands = hmx::fwk::ICommandManager;

QString FromLatin1(const std::string& in_text)
{
    return QString::fromLatin1(in_text.data(), static_cast<int>(in_text.size()));
}

std::string ToLatin1(const QVariant& in_value)
{
    return in_value.toString().toLatin1().toStdString();
}

std::string TextOrEmpty(const char* in_text)
{
    return in_text ? in_text : "";
}

/// The observers of one kind, in order of registration. They may come and go inside a call.
template <class Observer> class ObserverList
{
public:
    void Add(Observer* in_observer)
    {
        if (in_observer && !Has(in_observer))
            m_observers.push_back(in_observer);
    }

    void Remove(Observer* in_observer)
    {
        m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), in_observer), m_observers.end());
    }

    /// Calls those that are registered now, but none that another one removes meanwhile.
    template <class Call> void ForEach(const Call& in_call) const
    {
        for (Observer* const observer : std::vector<Observer*>(m_observers))
            if (Has(observer))
                in_call(*observer);
    }

private:
    bool Has(Observer* in_observer) const
    {
        return std::find(m_observers.begin(), m_observers.end(), in_observer) != m_observers.end();
    }

    std::vector<Observer*> m_observers;
};

/// An item: the context that accessors point at, and what is known of it. A solver is nothing else.
class Item : public IContext, public IItem, public IFunction
{
public:
    explicit Item(const ItemID& in_id, const std::string& in_name) : m_id(in_id), m_name(in_name) {}

    bool IsAlive() const override { return m_isAlive; }
    ItemID GetItemID() const override { return m_id; }
    CSimpleValue GetValue(const char*) const override { return CSimpleValue(); }

    const ItemID m_id;
    std::string m_name;
    std::map<std::string, std::string> m_tags; ///< by key
    bool m_isAlive = true;
};

using ItemPtr = std::shared_ptr<Item>;

/// The items that there were when it was made. Those that are gone since then are invalid by themselves.
class Iterator : public IItemIterator
{
public:
    bool IsAtEnd() const override { return m_position == m_items.size(); }
    void Next() override { ++m_position; }
    ItemAccessor GetItem() const override { return ItemAccessor(UnspecifiedAccessor(m_items[m_position])); }

    std::vector<ItemPtr> m_items;

private:
    std::size_t m_position = 0;
};

} // namespace

/// One context for the library and for its table of contents.
///
/// The items are read once. Reads are answered from memory, because the browser asks inside its paint event. A write
/// goes to the file first; when that worked the items change; when they have changed the observers are notified.
class SqliteLibrary : public IContext,
                      public IItemLibrary,
                      public IItemTOC,
                      public IItemLibraryModifier,
                      public std::enable_shared_from_this<SqliteLibrary>
{
public:
    explicit SqliteLibrary(const QString& in_path)
        : m_space(NewSpace()), m_database(QSqlDatabase::addDatabase(QLatin1String("QSQLITE"), QString::number(m_space)))
    {
        m_database.setDatabaseName(in_path);
        // AUTOINCREMENT never gives a number again.
        const bool isThere = m_database.open() &&
                             Run("CREATE TABLE IF NOT EXISTS items"
                                 "(number INTEGER PRIMARY KEY AUTOINCREMENT, compound INTEGER, name TEXT)") &&
                             Run("CREATE TABLE IF NOT EXISTS tags"
                                 "(item INTEGER, tag_key TEXT, tags TEXT, PRIMARY KEY (item, tag_key))");
        if (!isThere)
            throw std::runtime_error(in_path.toStdString() + ": " + m_database.lastError().text().toStdString());
        m_isReadOnly = !QFileInfo(in_path).isWritable();
        ReadItems();
    }

    ~SqliteLibrary() override
    {
        for (const auto& item : m_items)
            item.second->m_isAlive = false;
        const QString connection = m_database.connectionName();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection);
    }

    bool HasNode(const std::string& in_name) const
    {
        const auto hasName = [&](const auto& in_item) { return in_item.second->m_name == in_name; };
        return std::any_of(m_items.begin(), m_items.end(), hasName);
    }

    ItemID Add(const char* in_type, const std::string& in_name, const std::string& in_tags)
    {
        std::uint64_t number = 0;
        if (!Run("INSERT INTO items(compound, name) VALUES(?, ?)",
                 {in_type == VireoType::gCompound, FromLatin1(in_name)}, &number))
            return ItemID();
        const ItemPtr item = Keep(in_type, number, in_name);
        if (!in_tags.empty())
            WriteTags(*item, gApplicationTagsKey, in_tags);
        Notify([&](auto&) {
            ItemAccessor added((UnspecifiedAccessor(item)));
            m_tocObservers.ForEach([&](auto& in_observer) { in_observer.ItemAdded(added); });
        });
        return item->m_id;
    }

    bool Remove(const ItemID& in_item)
    {
        const ItemPtr item = Find(in_item);
        const qulonglong number = in_item.GetNumber();
        if (!item || !Run("DELETE FROM items WHERE number = ?", {number}))
            return false;
        Run("DELETE FROM tags WHERE item = ?", {number});
        Notify([&](auto&) {
            // The item still answers while it is notified that it leaves.
            ItemAccessor removed((UnspecifiedAccessor(item)));
            m_tocObservers.ForEach([&](auto& in_observer) { in_observer.ItemRemoved(removed); });
            m_items.erase(number);
            item->m_isAlive = false;
        });
        return true;
    }

    void Rename(const ItemID& in_item, const std::string& in_name)
    {
        const ItemPtr item = Find(in_item);
        const qulonglong number = in_item.GetNumber();
        if (!item || m_isReadOnly || in_name.empty() || HasNode(in_name) ||
            !Run("UPDATE items SET name = ? WHERE number = ?", {FromLatin1(in_name), number}))
            return;
        item->m_name = in_name;
        Notify([&](auto& in_self) {
            m_libraryObservers.ForEach([&](auto& in_observer) { in_observer.ItemNameChanged(in_self, in_item); });
        });
    }

    // IContext
    bool IsAlive() const override { return true; }

    // IItemLibrary
    std::string GetItemName(const ItemID& in_item, bool, const char*) const override
    {
        const ItemPtr item = Find(in_item);
        return item ? item->m_name : std::string();
    }

    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        const ItemPtr item = Find(in_item);
        return item && in_key ? item->m_tags[in_key] : std::string();
    }

    bool ItemIsReadOnly(const ItemID& in_item) const override { return m_isReadOnly && Find(in_item); }
    bool ItemIsDirty(const ItemID&) const override { return false; }

    UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        const ItemPtr item = Find(in_item);
        if (!item && out_error)
            *out_error = "The file does not have this item.";
        return UnspecifiedAccessor(item);
    }

    void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
            m_libraryObservers.Add(in_observer);
    }

    void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
            m_libraryObservers.Remove(in_observer);
    }

    // IItemTOC
    std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const override
    {
        auto iterator = std::make_unique<Iterator>();
        for (const auto& item : m_items)
            if (item.second->m_id.GetType() == in_type)
                iterator->m_items.push_back(item.second);
        return iterator;
    }

    void AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
            m_tocObservers.Add(in_observer);
    }

    void RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
            m_tocObservers.Remove(in_observer);
    }

    // IItemLibraryModifier. There is never anything to commit, and people make no compounds in this host.
    bool CommitToDisk(bool&, std::list<std::string>*, bool, const nexa4::TezUID&) override { return true; }
    ContextPtr CreateCompound(const char*, bool, const char*, const char*, Commands*) override { return nullptr; }
    ContextPtr CreateLoopCompound(const char*, const char*, const char*, Commands*) override { return nullptr; }

    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags, Commands*) override
    {
        const ItemPtr item = Find(in_item);
        if (!item || !in_key || m_isReadOnly)
            return false;
        if (GetItemTags(in_item, in_key) == TextOrEmpty(in_tags))
            return true;
        if (!WriteTags(*item, in_key, TextOrEmpty(in_tags)))
            return false;
        Notify([&](auto& in_self) {
            m_libraryObservers.ForEach(
                [&](auto& in_observer) { in_observer.ItemTagsChanged(in_self, in_item, in_key); });
        });
        return true;
    }

private:
    /// A number that tells the identities of this library from those of any other one.
    static std::uint64_t NewSpace()
    {
        static std::uint64_t spaces = 0;
        return ++spaces;
    }

    /// Runs a statement with values for its question marks. The number is that of a row that it has inserted.
    bool Run(const char* in_statement, const QVariantList& in_values = {}, std::uint64_t* out_number = nullptr)
    {
        QSqlQuery query(m_database);
        query.prepare(QLatin1String(in_statement));
        for (const QVariant& value : in_values)
            query.addBindValue(value);
        const bool isDone = query.exec();
        if (out_number)
            *out_number = query.lastInsertId().toULongLong();
        return isDone;
    }

    void ReadItems()
    {
        QSqlQuery rows(QLatin1String("SELECT number, compound, name, tag_key, tags FROM items LEFT JOIN tags ON item = "
                                     "number ORDER BY number"),
                       m_database);
        while (rows.next())
        {
            const char* const type = rows.value(1).toBool() ? VireoType::gCompound : VireoType::gSolver;
            const ItemPtr item = Keep(type, rows.value(0).toULongLong(), ToLatin1(rows.value(2)));
            if (!rows.isNull(3))
                item->m_tags[ToLatin1(rows.value(3))] = ToLatin1(rows.value(4));
        }
    }

    bool WriteTags(Item& io_item, const std::string& in_key, const std::string& in_tags)
    {
        const qulonglong number = io_item.m_id.GetNumber();
        if (!Run("INSERT OR REPLACE INTO tags VALUES(?, ?, ?)", {number, FromLatin1(in_key), FromLatin1(in_tags)}))
            return false;
        io_item.m_tags[in_key] = in_tags;
        return true;
    }

    /// The item of a row; makes it when it is a new one.
    ItemPtr Keep(const char* in_type, std::uint64_t in_number, const std::string& in_name);

    ItemPtr Find(const ItemID& in_item) const
    {
        const auto item = m_items.find(in_item.GetNumber());
        return item != m_items.end() && item->second->m_id == in_item ? item->second : nullptr;
    }

    /// Calls in_notify between OnBeginChanges() and OnEndChanges().
    template <class Call> void Notify(const Call& in_notify)
    {
        ItemLibraryAccessor self((UnspecifiedAccessor(shared_from_this())));
        m_libraryObservers.ForEach([&](auto& in_observer) { in_observer.OnBeginChanges(self); });
        in_notify(self);
        m_libraryObservers.ForEach([&](auto& in_observer) { in_observer.OnEndChanges(self); });
    }

    const std::uint64_t m_space;
    QSqlDatabase m_database;
    bool m_isReadOnly = false;
    std::map<std::uint64_t, ItemPtr> m_items; ///< by number, which is the order of addition
    ObserverList<IItemLibraryNotification> m_libraryObservers;
    ObserverList<IItemTOCNotification> m_tocObservers;
};

namespace
{

class Compound : public Item, public ICompound, public ICompoundModifier
{
public:
    Compound(const ItemID& in_id, const std::string& in_name, SqliteLibrary& in_library)
        : Item(in_id, in_name), m_library(in_library)
    {
    }

    ItemID GetItemID() const override { return m_id; }
    bool CanModifyCompound(bool) const override { return !m_library.ItemIsReadOnly(m_id); }
    void RenameCompound(const char* in_name, Commands*) override { m_library.Rename(m_id, TextOrEmpty(in_name)); }

private:
    SqliteLibrary& m_library;
};

/// Answers what is asked about items without a library.
class Model : public IItemModel
{
public:
    ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override { return ItemTOCAccessor(in_library); }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) override
    {
        const auto* const library = dynamic_cast<const SqliteLibrary*>(in_library.GetContext().get());
        return library && in_name && library->HasNode(in_name);
    }
    bool IsAbstractFunction(ItemAccessor&) override { return false; }
    bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) override
    {
        return in_item.IsValid() && in_item.GetItemID().GetType() == in_typeName;
    }
    /// A host with an editor opens the compound here.
    void SetGlobalVireoCompoundTarget(const CompoundAccessor&, const CompoundAccessor&) override {}
    const char* GetItemIDUID(const ItemID&) override { return nullptr; }
    Commands* GetApplicationCommandManager() override { return nullptr; }
};

} // namespace

ItemPtr SqliteLibrary::Keep(const char* in_type, std::uint64_t in_number, const std::string& in_name)
{
    ItemPtr& item = m_items[in_number];
    const ItemID id(in_type, m_space, in_number);
    if (!item && in_type == VireoType::gCompound)
        item = std::make_shared<Compound>(id, in_name, *this);
    else if (!item)
        item = std::make_shared<Item>(id, in_name);
    return item;
}

SqliteLayer::SqliteLayer(const QString& in_path)
    : m_library(std::make_shared<SqliteLibrary>(in_path)),
      m_model(new Model),
      m_before(InstallProvider(Provider{nullptr, m_model.get(), nullptr, nullptr}))
{
}

SqliteLayer::~SqliteLayer()
{
    InstallProvider(m_before);
}

ItemLibraryAccessor SqliteLayer::GetLibrary() const
{
    return ItemLibraryAccessor(UnspecifiedAccessor(m_library));
}

ItemID SqliteLayer::Add(const char* in_type, const std::string& in_name, const std::string& in_tags)
{
    return m_library->Add(in_type, in_name, in_tags);
}

bool SqliteLayer::Remove(const ItemID& in_item)
{
    return m_library->Remove(in_item);
}
