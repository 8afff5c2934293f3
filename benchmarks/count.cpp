// SPDX-License-Identifier: MIT
#include "count.h"

#include "bounds.h"
#include "countedstep.h"
#include "listpeer.h"
#include "measure.h"
#include "panel.h"
#include "scrolling.h"

#include <QLineEdit>
#include <QString>

#include <cstdio>

namespace
{

/// Counts the second of two turns of the wheel: the first one loads what every other one uses.
void ScrollAndCount(const Panel& in_panel)
{
    Settle();
    TurnWheel(*in_panel.m_list);
    Settle();
    CountedStep(*in_panel.m_window, [&in_panel] { TurnWheel(*in_panel.m_list); });
}

} // namespace

void CountStep(const Content& in_content, const QString& in_step)
{
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    const vireo::datamodel::ItemLibraryAccessor library = in_content.m_library.GetAccessor();
    QLineEdit* const field = GetPanel(*browser).m_field;
    if (in_step == QLatin1String("open"))
    {
        CountedStep(*browser, [&] { browser->SetItemLibrary(library); });
    }
    else if (in_step == QLatin1String("onebuild"))
    {
        volatile std::size_t read = 0;
        CountedStep(*browser, [&] { read = ReadBoundary(library); });
    }
    else if (in_step == QLatin1String("scroll"))
    {
        browser->SetItemLibrary(library);
        ScrollAndCount(GetPanel(*browser));
    }
    else if (in_step == QLatin1String("scroll-list"))
    {
        ListPeer peer;
        ShowPanel(peer.GetPanel());
        peer.Open(library);
        ScrollAndCount(peer.GetPanel());
    }
    else if (in_step == QLatin1String("rename"))
    {
        browser->SetItemLibrary(library);
        Settle();
        const vireo::datamodel::ItemID item = in_content.m_library.GetItems()[in_content.GetCount() / 2];
        CountedStep(*browser, [&] { in_content.m_library.Rename(item, "renamed"); });
    }
    else
    {
        browser->SetItemLibrary(library);
        Settle();
        field->setText(QLatin1String("nois"));
        Settle();
        CountedStep(*browser, [field] { field->setText(QLatin1String("noise")); });
    }
    std::printf("%s\t%zu\n", in_step.toLatin1().constData(), in_content.GetCount());
}
