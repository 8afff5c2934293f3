// SPDX-License-Identifier: MIT
#include "opening.h"

#include "bounds.h"
#include "listpeer.h"
#include "measure.h"
#include "table.h"
#include "treepeer.h"

using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;

namespace
{

double TimeBrowser(const ItemLibraryAccessor& in_library)
{
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    const double time = TimeToFrame(GetPanel(*browser), [&] { browser->SetItemLibrary(in_library); });
    Settle();
    return time;
}

double TimePeer(Peer&& in_peer, const ItemLibraryAccessor& in_library)
{
    ShowPanel(in_peer.GetPanel());
    const double time = TimeToFrame(in_peer.GetPanel(), [&] { in_peer.Open(in_library); });
    Settle();
    return time;
}

/// The lower bound of one build.
double TimeReads(const ItemLibraryAccessor& in_library)
{
    volatile std::size_t read = 0;
    return Time([&] { read = ReadBoundary(in_library); });
}

double TimeRenaming(CNodeBrowser& in_browser, memorymodel::Library& in_library, const ItemID& in_item)
{
    const std::string name = in_library.GetAccessor().GetItemName(in_item, true, nullptr);
    const std::string newName = name.compare(0, 1, "X") == 0 ? name.substr(1) : 'X' + name;
    const double time = TimeToFrame(GetPanel(in_browser), [&] { in_library.Rename(in_item, newName); });
    Settle();
    return time;
}

} // namespace

void MeasureOpening(const Content& in_content)
{
    const ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    const std::unique_ptr<CNodeBrowser> renaming = ShowBrowser(library);
    const ItemID item = in_content.m_library.GetItems()[in_content.GetCount() / 2];
    Samples opens;
    Samples renames;
    for (int round = 0; round < gRepetitions; ++round)
    {
        opens[eColumnBrowser].push_back(TimeBrowser(library));
        if (in_content.HasPeers())
        {
            opens[eColumnListView].push_back(TimePeer(ListPeer(), library));
            opens[eColumnTreeWidget].push_back(TimePeer(TreePeer(), library));
        }
        const double firstBuild = TimeReads(library);
        opens[eColumnLowerBound].push_back(firstBuild + TimeReads(library));
        renames[eColumnBrowser].push_back(TimeRenaming(*renaming, in_content.m_library, item));
        renames[eColumnOneBuild].push_back(TimeReads(library));
    }
    PrintRow("open", in_content.GetCount(), Medians(opens));
    PrintRow("rename", in_content.GetCount(), Medians(renames));
}

void MeasureMemory(const Content& in_content)
{
    const ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    // The data layer allocates memory at the first attachment. That is not the browser's.
    TimeBrowser(library);
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    const std::size_t before = HeapBytes();
    TimeToFrame(GetPanel(*browser), [&] { browser->SetItemLibrary(library); });
    Settle();
    Figures figures;
    figures[eColumnBrowser] =
        (static_cast<double>(HeapBytes()) - static_cast<double>(before)) / static_cast<double>(in_content.GetCount());
    PrintRow("memory", in_content.GetCount(), figures);
}
