// SPDX-License-Identifier: MIT
#include "memorymodel/library.h"

#include "memorymodel/librarycontext.h"

#include <utility>

using namespace vireo::datamodel;

namespace memorymodel
{

// An observer may remove the library from inside a call, and this object with it. So no function touches this object
// after its call of the context. The context keeps itself alive.

Library::Library(std::shared_ptr<LibraryContext> in_context) : m_private(std::move(in_context)) {}

Library::~Library() = default;

const std::string& Library::GetName() const
{
    return m_private->GetName();
}

ItemLibraryAccessor Library::GetAccessor() const
{
    return m_private->GetAccessor();
}

DataSource& Library::AddDataSource(std::string in_name, unsigned in_flags, std::string in_location)
{
    return m_private->AddDataSource(std::move(in_name), in_flags, std::move(in_location));
}

const std::vector<std::shared_ptr<DataSource>>& Library::GetDataSources() const
{
    return m_private->GetDataSources();
}

ItemID Library::Add(const NewItem& in_item)
{
    return m_private->Add(in_item);
}

bool Library::Remove(const ItemID& in_item, hmx::fwk::ICommandManager* in_commands)
{
    return m_private->RemoveItem(in_item, in_commands);
}

bool Library::Rename(const ItemID& in_item, const std::string& in_name, hmx::fwk::ICommandManager* in_commands)
{
    return m_private->RenameItem(in_item, in_name, in_commands);
}

bool Library::SetTags(const ItemID& in_item, const std::string& in_tags, hmx::fwk::ICommandManager* in_commands)
{
    return m_private->SetTags(in_item, gApplicationTagsKey, in_tags, in_commands);
}

void Library::Invalidate()
{
    LibraryContext* const context = m_private.get();
    if (context->IsOpen())
        context->InBracket([context] { context->NotifyInvalidated(); });
}

void Library::Close()
{
    m_private->Close();
}

std::size_t Library::GetItemCount() const
{
    return m_private->GetItemCount();
}

std::vector<ItemID> Library::GetItems() const
{
    std::vector<ItemID> ids;
    ids.reserve(GetItemCount());
    for (const std::shared_ptr<Item>& item : m_private->GetItems())
        if (item)
            ids.push_back(item->GetItemID());
    return ids;
}

ItemID Library::FindByName(const std::string& in_name) const
{
    for (const std::shared_ptr<Item>& item : m_private->GetItems())
        if (item && item->m_name == in_name)
            return item->GetItemID();
    return ItemID();
}

ItemID Library::FindBySerialized(const std::string& in_text) const
{
    const std::size_t digits = 16;
    if (in_text.size() < digits)
        return ItemID();
    std::uint64_t number = 0;
    for (const char digit : in_text.substr(in_text.size() - digits))
    {
        const std::size_t value = std::string("0123456789ABCDEF").find(digit);
        if (value == std::string::npos)
            return ItemID();
        number = number << 4 | value;
    }
    const std::vector<std::shared_ptr<Item>>& items = m_private->GetItems();
    if (number >= items.size() || !items[number])
        return ItemID();
    const ItemID id = items[number]->GetItemID();
    return id.Serialize() == in_text ? id : ItemID();
}

const DataSource* Library::GetSourceOf(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->FindItem(in_item);
    return item ? item->m_source.get() : nullptr;
}

std::string Library::GetBaseClass(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->FindItem(in_item);
    return item && item->m_extra ? item->m_extra->m_baseClass : std::string();
}

std::string Library::GetCategory(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->FindItem(in_item);
    return item && item->m_extra ? item->m_extra->m_category : std::string();
}

bool Library::IsSignature(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->FindItem(in_item);
    return item && item->m_signature;
}

bool Library::IsLoopCompound(const ItemID& in_item) const
{
    const std::shared_ptr<Item> item = m_private->FindItem(in_item);
    return item && item->m_loop;
}

void Library::SetStore(std::shared_ptr<Store> in_store)
{
    m_private->SetStore(std::move(in_store));
}

std::shared_ptr<Store> Library::GetStore() const
{
    return m_private->GetStore();
}

void Library::SetVersioning(Versioning* in_versioning)
{
    if (m_private->IsOpen())
        m_private->SetVersioning(in_versioning);
}

void Library::Follow(const ItemID& in_item, const StoredItem& in_stored, eFollowing in_following)
{
    m_private->Follow(in_item, in_stored, in_following);
}

void Library::Drop(const ItemID& in_item)
{
    m_private->DropItem(in_item);
}

} // namespace memorymodel
