// SPDX-License-Identifier: MIT
#include "memorymodel/commit.h"

#include <cstdint>
#include <set>

namespace memorymodel
{
namespace
{

/// An item and its state when the commit began: the store may change the item, and saves what it was before.
struct Saving
{
    std::shared_ptr<Item> m_item;
    std::uint64_t m_revision;
};

CommitAnswer AskStore(const LibraryContents& in_library, const CommitRequest& in_request)
{
    if (const std::shared_ptr<Store> store = in_library.GetStore())
        return store->Commit(in_request);
    CommitAnswer answer;
    answer.m_isWritten = !in_request.m_items.empty();
    answer.m_saved = in_request.m_items;
    return answer;
}

} // namespace

CommitAnswer CommitItems(LibraryContents& io_library, bool in_everything, const DataSource* in_only)
{
    CommitRequest request;
    request.m_isEverything = in_everything;
    request.m_only = in_only;
    std::vector<Saving> savings;
    for (const std::shared_ptr<Item>& item : io_library.GetItems())
    {
        if (!item || item->m_source->IsReadOnly() || (in_only && item->m_source.get() != in_only) ||
            !(in_everything || item->IsDirty()))
            continue;
        request.m_items.push_back(item->GetItemID());
        savings.push_back({item, item->m_revision});
    }
    io_library.CountCommit();
    CommitAnswer answer = AskStore(io_library, request);
    const std::set<vireo::datamodel::ItemID> saved(answer.m_saved.begin(), answer.m_saved.end());
    for (const Saving& saving : savings)
        if (saved.count(saving.m_item->GetItemID()) != 0)
            saving.m_item->m_committed = saving.m_revision;
    return answer;
}

} // namespace memorymodel
