// SPDX-License-Identifier: MIT
#include "memorymodel/librarycontext.h"

#include "memorymodel/changecommand.h"
#include "memorymodel/changes.h"
#include "memorymodel/commit.h"
#include "memorymodel/typeiterator.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{
namespace
{

std::string TextOrEmpty(const char* in_text)
{
    return in_text ? in_text : "";
}

} // namespace

LibraryContext::LibraryContext(std::string in_name, std::shared_ptr<Database> in_database)
    : LibraryContents(std::move(in_name), std::move(in_database))
{
}

std::shared_ptr<LibraryContext> LibraryContext::GetThis()
{
    return std::static_pointer_cast<LibraryContext>(shared_from_this());
}

bool LibraryContext::Do(const std::shared_ptr<Change>& in_change,
                        const std::function<std::unique_ptr<Step>(Store&)>& in_ask, ICommandManager* in_commands)
{
    if (const std::shared_ptr<Store> store = GetStore())
    {
        std::unique_ptr<Step> step = in_ask(*store);
        if (!step)
            return false;
        in_change->SetStep(std::move(step));
    }
    return DoChange(in_change, in_commands);
}

std::string LibraryContext::GetItemName(const ItemID& in_item, bool /*in_displayName*/, const char* /*in_scope*/) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item ? item->m_name : std::string();
}

std::string LibraryContext::GetItemTags(const ItemID& in_item, const char* in_key) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item ? item->GetTags(in_key) : std::string();
}

bool LibraryContext::ItemIsReadOnly(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && item->IsReadOnly();
}

bool LibraryContext::ItemIsDirty(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && item->IsDirty();
}

UnspecifiedAccessor LibraryContext::GetModel(const ItemID& in_item, std::string* out_error) const
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    if (!item && out_error)
        *out_error = "The library \"" + GetName() + "\" does not have this item.";
    return UnspecifiedAccessor(item);
}

std::unique_ptr<IItemIterator> LibraryContext::IterateItems(const char* in_type) const
{
    const TypeList::Numbers numbers = GetNumbers(in_type);
    if (!numbers)
        return nullptr;
    const auto library = std::static_pointer_cast<const LibraryContents>(shared_from_this());
    return std::unique_ptr<IItemIterator>(new TypeIterator(library, numbers));
}

void LibraryContext::AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
        m_libraryObservers.Add(in_observer);
}

void LibraryContext::RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemLibraryNotificationKind && in_context.get() == this)
        m_libraryObservers.Remove(in_observer);
}

void LibraryContext::AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
        m_tocObservers.Add(in_observer);
}

void LibraryContext::RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context)
{
    if (in_kind == eItemTOCNotificationKind && in_context.get() == this)
        m_tocObservers.Remove(in_observer);
}

bool LibraryContext::RemoveItem(const ItemID& in_item, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Do(
                       std::make_shared<PresenceChange>(GetThis(), item, false),
                       [&](Store& io_store) { return io_store.Remove(in_item); }, in_commands);
}

void LibraryContext::DropItem(const ItemID& in_item)
{
    if (const std::shared_ptr<Item> item = FindItem(in_item))
        DoChange(std::make_shared<PresenceChange>(GetThis(), item, false), nullptr);
}

bool LibraryContext::RenameItem(const ItemID& in_item, const std::string& in_name, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Do(
                       std::make_shared<NameChange>(GetThis(), item, in_name),
                       [&](Store& io_store) { return io_store.Rename(in_item, in_name); }, in_commands);
}

bool LibraryContext::SetTags(const ItemID& in_item, const char* in_key, const std::string& in_tags,
                             ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Do(
                       std::make_shared<TagsChange>(GetThis(), item, in_key, in_tags),
                       [&](Store& io_store) { return io_store.SetTags(in_item, in_key, in_tags); }, in_commands);
}

void LibraryContext::RenameCompound(const Item& in_item, const char* in_newName, ICommandManager* in_commands)
{
    const std::string name = TextOrEmpty(in_newName);
    if (!name.empty() && !in_item.IsReadOnly() && !HasNode(name))
        RenameItem(in_item.GetItemID(), name, in_commands);
}

bool LibraryContext::MoveItem(const Item& in_item, const nexa4::IDataSource& in_target, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item.GetItemID());
    const std::shared_ptr<DataSource> target = FindSource(in_target);
    return item && target && !item->IsReadOnly() && !target->IsReadOnly() &&
           Do(
               std::make_shared<SourceChange>(GetThis(), item, target),
               [&](Store& io_store) { return io_store.Move(item->GetItemID(), *target); }, in_commands);
}

bool LibraryContext::SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                                 ICommandManager* in_commands)
{
    const std::string tags = TextOrEmpty(in_tags);
    const std::shared_ptr<Item> item = FindItem(in_item);
    if (!item || !in_key || item->IsReadOnly())
        return false;
    return item->GetTags(in_key) == tags || SetTags(in_item, in_key, tags, in_commands);
}

ContextPtr LibraryContext::Create(NewItem (*in_describe)(std::string), const char* in_name, const char* in_baseClass,
                                  const char* in_category, ICommandManager* in_commands)
{
    const std::string name = TextOrEmpty(in_name);
    const std::string baseClass = TextOrEmpty(in_baseClass);
    const std::shared_ptr<DataSource> source = IsOpen() ? FindWritableSource() : nullptr;
    if (!source || name.empty() || HasNode(name) || !(baseClass.empty() || IsSignatureUID(baseClass)))
        return nullptr;

    NewItem description = in_describe(name);
    description.BaseClass(baseClass).Category(TextOrEmpty(in_category));
    const std::shared_ptr<Item> item = Make(description, source);
    item->m_revision = NewRevision();
    item->m_committed = Item::s_neverCommitted;
    const auto ask = [&](Store& io_store) {
        Creation creation;
        creation.m_item = item->GetItemID();
        creation.m_name = name;
        creation.m_baseClass = baseClass;
        creation.m_category = TextOrEmpty(in_category);
        creation.m_isSignature = item->m_signature;
        creation.m_isLoop = item->m_loop;
        creation.m_source = source.get();
        std::unique_ptr<Step> step = io_store.Create(creation);
        if (nexa4::DbObjectId::IsUID(creation.m_uid.c_str()))
            item->m_uid = nexa4::DbObjectId(creation.m_uid.c_str());
        item->m_tags = creation.m_tags;
        return step;
    };
    if (!Do(std::make_shared<PresenceChange>(GetThis(), item, true), ask, in_commands))
        return nullptr;
    return item;
}

ContextPtr LibraryContext::CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass,
                                          const char* in_category, ICommandManager* in_commands)
{
    return Create(in_signature ? NewItem::Signature : NewItem::Compound, in_name, in_baseClass, in_category,
                  in_commands);
}

ContextPtr LibraryContext::CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                              ICommandManager* in_commands)
{
    return Create(NewItem::LoopCompound, in_name, in_baseClass, in_category, in_commands);
}

bool LibraryContext::CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                                  const nexa4::TezUID& in_source)
{
    const std::shared_ptr<LibraryContext> alive = GetThis();
    const std::shared_ptr<DataSource> only = GetDatabase().FindSource(in_source);
    out_written = false;
    if (in_source != nexa4::UID_Null() && !(only && FindSource(*only)))
    {
        if (out_messages)
            out_messages->push_back("The library \"" + GetName() + "\" has no data source " + in_source.GetStr() + ".");
        return false;
    }
    if (!NotifyPreCommit() || !IsOpen())
        return false;
    const CommitAnswer result = CommitItems(*this, in_everything, only.get());
    out_written = result.m_isWritten;
    if (out_messages)
        out_messages->insert(out_messages->end(), result.m_messages.begin(), result.m_messages.end());
    NotifyPostCommit();
    return result.m_messages.empty();
}

} // namespace memorymodel
