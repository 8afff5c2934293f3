// SPDX-License-Identifier: MIT
#include "memorymodel/commit.h"

namespace memorymodel
{
namespace
{

/// Saves one item.
/// \return why it could not be saved; empty on success
std::string CommitItem(const LibraryContents& in_library, Item& io_item)
{
    // The writer may change the item: what it saved is the revision from before.
    const std::uint64_t revision = io_item.m_revision;
    // A copy, since the writer may close the library.
    const LibraryContents::Writer writer = in_library.GetWriter();
    const std::string error = writer ? writer(io_item.GetItemID()) : std::string();
    if (error.empty())
        io_item.m_committed = revision;
    return error;
}

} // namespace

CommitResult CommitItems(LibraryContents& io_library, bool in_everything, const DataSource* in_only)
{
    CommitResult result;
    io_library.CountCommit();
    // By number and asked anew each time: a writer may change the library.
    for (std::size_t number = 0; number < io_library.GetItems().size(); ++number)
    {
        const std::shared_ptr<Item> item = io_library.GetItems()[number];
        if (!item || item->m_source->IsReadOnly() || (in_only && item->m_source.get() != in_only) ||
            !(in_everything || item->IsDirty()))
            continue;
        const std::string error = CommitItem(io_library, *item);
        if (error.empty())
            result.m_written = true;
        else
            result.m_messages.push_back(error);
    }
    return result;
}

} // namespace memorymodel
