#include "opening.h"

#include "limits.h"
#include "listpeer.h"
#include "measure.h"
#include "table.h"
#include "treepeer.h"

using vireo::datamodel::ItemLibraryAccessor;

namespace
{

const int gBuilds = 2;

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

double TimeLimit(const ItemLibraryAccessor& in_library)
{
    volatile std::size_t read = 0;
    return Time([&] {
        for (int build = 0; build < gBuilds; ++build)
            read = ReadBoundary(in_library);
    });
}

} // namespace

std::optional<double> MeasureOpening(const Content& in_content)
{
    const ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    Samples samples;
    for (int round = 0; round < gRepetitions; ++round)
    {
        samples[eColumnBrowser].push_back(TimeBrowser(library));
        if (in_content.HasPeers())
        {
            samples[eColumnListView].push_back(TimePeer(ListPeer(), library));
            samples[eColumnTreeWidget].push_back(TimePeer(TreePeer(), library));
        }
        samples[eColumnLimit].push_back(TimeLimit(library));
    }
    const Figures medians = Medians(samples);
    PrintRow("open", in_content.GetCount(), medians);
    return medians[eColumnBrowser];
}

void MeasureMemory(const Content& in_content)
{
    const ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    // What the data layer keeps of a first attachment is its own.
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
