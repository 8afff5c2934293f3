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
    return item && DoChange(std::make_shared<PresenceChange>(GetThis(), item, false), in_commands);
}

bool LibraryContext::RenameItem(const ItemID& in_item, const std::string& in_name, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && DoChange(std::make_shared<NameChange>(GetThis(), item, in_name), in_commands);
}

bool LibraryContext::SetTags(const ItemID& in_item, const char* in_key, const std::string& in_tags,
                             ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && DoChange(std::make_shared<TagsChange>(GetThis(), item, in_key, in_tags), in_commands);
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
           DoChange(std::make_shared<SourceChange>(GetThis(), item, target), in_commands);
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
    if (!DoChange(std::make_shared<PresenceChange>(GetThis(), item, true), in_commands))
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
    const CommitResult result = CommitItems(*this, in_everything, only.get());
    out_written = result.m_written;
    if (out_messages)
        out_messages->insert(out_messages->end(), result.m_messages.begin(), result.m_messages.end());
    NotifyPostCommit();
    return result.m_messages.empty();
}

} // namespace memorymodel
