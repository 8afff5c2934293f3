// SPDX-License-Identifier: MIT
#include "memorymodel/changes.h"
#include "memorymodel/librarycontext.h"

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

bool LibraryContext::RemoveItem(const ItemID& in_item, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Change::Do(std::make_shared<PresenceChange>(shared_from_this(), item, false), in_commands);
}

bool LibraryContext::RenameItem(const ItemID& in_item, const std::string& in_name, ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Change::Do(std::make_shared<NameChange>(shared_from_this(), item, in_name), in_commands);
}

bool LibraryContext::SetTags(const ItemID& in_item, const char* in_key, const std::string& in_tags,
                             ICommandManager* in_commands)
{
    const std::shared_ptr<Item> item = FindItem(in_item);
    return item && Change::Do(std::make_shared<TagsChange>(shared_from_this(), item, in_key, in_tags), in_commands);
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
           Change::Do(std::make_shared<SourceChange>(shared_from_this(), item, target), in_commands);
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

std::shared_ptr<DataSource> LibraryContext::FindWritableSource()
{
    GetFirstSource();
    for (const std::shared_ptr<DataSource>& source : m_sources)
        if (!source->IsReadOnly())
            return source;
    return nullptr;
}

bool LibraryContext::IsSignatureUID(const std::string& in_uid) const
{
    if (!nexa4::DbObjectId::IsUID(in_uid.c_str()))
        return false;
    const nexa4::DbObjectId uid(in_uid.c_str());
    for (const std::shared_ptr<Item>& item : m_items)
        if (item && item->m_signature && item->m_hasUID && item->m_uid == uid)
            return true;
    return false;
}

ContextPtr LibraryContext::Create(NewItem in_item, const char* in_baseClass, const char* in_category,
                                  ICommandManager* in_commands)
{
    const std::string baseClass = TextOrEmpty(in_baseClass);
    const std::shared_ptr<DataSource> source = IsOpen() ? FindWritableSource() : nullptr;
    if (!source || in_item.m_name.empty() || HasNode(in_item.m_name) ||
        !(baseClass.empty() || IsSignatureUID(baseClass)))
        return nullptr;

    const std::shared_ptr<Item> item = Make(in_item.BaseClass(baseClass).Category(TextOrEmpty(in_category)), source);
    item->m_revision = NewRevision();
    item->m_committed = Item::s_neverCommitted;
    if (!Change::Do(std::make_shared<PresenceChange>(shared_from_this(), item, true), in_commands))
        return nullptr;
    return item;
}

ContextPtr LibraryContext::CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass,
                                          const char* in_category, ICommandManager* in_commands)
{
    const std::string name = TextOrEmpty(in_name);
    return Create(in_signature ? NewItem::Signature(name) : NewItem::Compound(name), in_baseClass, in_category,
                  in_commands);
}

ContextPtr LibraryContext::CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                              ICommandManager* in_commands)
{
    return Create(NewItem::LoopCompound(TextOrEmpty(in_name)), in_baseClass, in_category, in_commands);
}

bool LibraryContext::CommitItem(const std::shared_ptr<Item>& in_item, std::list<std::string>* out_messages)
{
    const std::uint64_t revision = in_item->m_revision;
    // A copy, since the writer may close the library.
    const std::function<std::string(const ItemID&)> writer = m_writer;
    const std::string error = writer ? writer(in_item->GetItemID()) : std::string();
    if (error.empty())
        in_item->m_committed = revision;
    else if (out_messages)
        out_messages->push_back(error);
    return error.empty();
}

bool LibraryContext::CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                                  const nexa4::TezUID& in_source)
{
    const std::shared_ptr<LibraryContext> alive = shared_from_this();
    const std::shared_ptr<DataSource> only = m_database->FindSource(in_source);
    out_written = false;
    if (in_source != nexa4::UID_Null() && !(only && FindSource(*only)))
    {
        if (out_messages)
            out_messages->push_back("The library \"" + m_name + "\" has no data source " + in_source.GetStr() + ".");
        return false;
    }
    if (!AskForCommit() || !IsOpen())
        return false;

    bool succeeded = true;
    ++m_commits;
    // By number and asked anew each time: a writer may change the library.
    for (std::size_t number = 0; number < m_items.size(); ++number)
    {
        const std::shared_ptr<Item> item = m_items[number];
        if (!item || item->m_source->IsReadOnly() || (only && item->m_source != only) ||
            !(in_everything || item->IsDirty()))
            continue;
        const bool saved = CommitItem(item, out_messages);
        out_written = out_written || saved;
        succeeded = succeeded && saved;
    }
    TellCommitted();
    return succeeded;
}

} // namespace memorymodel
