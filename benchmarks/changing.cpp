// SPDX-License-Identifier: MIT
#include "changing.h"

#include "measure.h"
#include "table.h"

using vireo::datamodel::IItemLibraryNotification;
using vireo::datamodel::IItemTOCNotification;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIterator;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::VireoType;

namespace
{

const std::size_t gBurst = 10000;

void SetSourceControl(memorymodel::SourceControl& out_sourceControl, bool in_on)
{
    out_sourceControl.SetVersionControlActive(in_on);
    out_sourceControl.SetEnabled(in_on);
    Settle();
}

void NotifyStates(IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library,
                  const std::vector<ItemID>& in_items, long in_state)
{
    for (const ItemID& item : in_items)
        in_observer.ItemAccessStateChanged(in_library, item, in_state);
}

/// The first compounds up to a count. When there are too few, they are repeated.
std::vector<ItemAccessor> PickForBurst(const ItemLibraryAccessor& in_library)
{
    std::vector<ItemAccessor> items;
    while (items.size() < gBurst)
        for (ItemIterator iterator = GetTOC(in_library).IterateItems(VireoType::gCompound);
             !iterator.IsAtEnd() && items.size() < gBurst; iterator.Next())
            items.push_back(iterator.GetItem());
    return items;
}

void NotifyBurst(CNodeBrowser& in_browser, ItemLibraryAccessor& in_library, std::vector<ItemAccessor>& in_items)
{
    IItemTOCNotification& tocObserver = in_browser;
    IItemLibraryNotification& libraryObserver = in_browser;
    for (ItemAccessor& item : in_items)
    {
        tocObserver.ItemAdded(item);
        libraryObserver.ItemTagsChanged(in_library, item.GetItemID(), vireo::datamodel::gApplicationTagsKey);
    }
}

} // namespace

void MeasureStates(Content& io_content)
{
    ItemLibraryAccessor library = io_content.m_library.GetAccessor();
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser(library);
    SetSourceControl(io_content.m_layer.GetSourceControl(), true);
    const std::vector<ItemID> items = io_content.m_library.GetItems();
    Samples samples;
    for (int round = 0; round < gRepetitions; ++round)
    {
        const long state = round % 2 ? memorymodel::eCheckedOut : memorymodel::eOutOfDate;
        TimeToFrame(GetPanel(*browser), [&] { io_content.m_library.Invalidate(); });
        Settle();
        samples[eColumnBrowser].push_back(
            TimeToFrame(GetPanel(*browser), [&] { NotifyStates(*browser, library, items, state); }));
        Settle();
    }
    SetSourceControl(io_content.m_layer.GetSourceControl(), false);
    PrintRow("states", io_content.GetCount(), Medians(samples));
}

void MeasureBurst(const Content& in_content)
{
    ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser(library);
    std::vector<ItemAccessor> items = PickForBurst(library);
    Samples samples;
    for (int round = 0; round < gRepetitions; ++round)
    {
        samples[eColumnBrowser].push_back(
            TimeToFrame(GetPanel(*browser), [&] { NotifyBurst(*browser, library, items); }));
        Settle();
    }
    PrintRow("burst", in_content.GetCount(), Medians(samples));
}
