// SPDX-License-Identifier: MIT
/// What a CNodeBrowser keeps, and what it does that is not for hosts.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/itemtoc.h"
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/accessiblelist.h"
#include "nodebrowser/browserheader.h"
#include "nodebrowser/commands.h"
#include "nodebrowser/itemlist.h"
#include "nodebrowser/nodebrowser.h"
#include "nodebrowser/rowlayout.h"
#include "nodebrowser/rowpainter.h"
#include "nodebrowser/searchscore.h"

#include <QPoint>
#include <QPointer>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <vector>

class QHelpEvent;
class QWheelEvent;

namespace nodebrowser
{

/// A task is ended and never deleted.
struct EndTask
{
    void operator()(ScsTask* in_task) const { in_task->DeleteMe(); }
};

} // namespace nodebrowser

/// The state of a browser and the operations on it. The functions of CNodeBrowser itself are what others call: events,
/// slots and notifications.
struct NODEBROWSER_NO_EXPORT CNodeBrowser::Private : public nodebrowser::IAccessibleRows
{
    Private(CNodeBrowser& io_browser, eConfigType in_config)
        : m_browser(io_browser),
          m_config(in_config),
          m_header(io_browser, in_config == eConfigNodeBrowser),
          m_filterMode(in_config == eConfigNodeBrowser ? nodebrowser::eFilterNodes : nodebrowser::eFilterTypes),
          m_listTop(in_config == eConfigNodeBrowser ? nodebrowser::gListTop + nodebrowser::gTabBarRoom
                                                    : nodebrowser::gListTop)
    {
    }

    void ConnectHeader();
    void ConnectRevisionControl();
    void StopObserving();

    /// The library to read. A copy, since a read may come back and attach another library, and this one may be the last
    /// that keeps the library.
    vireo::datamodel::ItemLibraryAccessor GetLibrary() const { return m_library; }

    class RemovalWatch;
    void RequestRebuild();
    void RequestRepaint();
    void RefreshItems();
    void RefreshIcons();
    void BuildAllItemList(nodebrowser::ItemList::ObjectHandles* out_handles);
    void UpdateVisibleItems();
    void SetSourceControlEnabled(bool in_enabled);
    bool isSourceControlEnabled() const { return m_sourceControlEnabled; }
    bool IsVersioningShown() const;

    void UpdateScrollbar() { m_header.FitScrollBar(GetRowLayout(), m_contentHeight); }
    nodebrowser::RowLayout GetRowLayout() const override;
    std::size_t GetItemIndexAt(const QPoint& in_point) const { return GetRowLayout().RowAt(in_point); }
    const nodebrowser::BrowserItem* FindRow(std::uint64_t in_row) const;
    bool FindItem(std::uint64_t in_row, vireo::datamodel::ItemID& out_item) const;
    bool ReadRow(std::uint64_t in_row, nodebrowser::RowContent& out_content) const;
    void SelectByHand(std::size_t in_row);
    void ShowToolTip(QHelpEvent& io_event);
    bool ScrollByWheel(const QWheelEvent& in_event);

    std::size_t GetAccessibleCount() const override { return m_visibleItems.size(); }
    std::size_t GetSelectedRow() const override { return static_cast<std::size_t>(m_selectedRow); }
    bool PutInWords(std::size_t in_row, nodebrowser::RowInWords& out_words) const override;
    void SelectRow(std::size_t in_row) override;
    void OpenRow(std::size_t in_row) override;

    nodebrowser::CommandTarget GetCommandTarget()
    {
        return {m_library, QPointer<QObject>(&m_browser), m_commandManager};
    }

    CNodeBrowser& m_browser;
    const eConfigType m_config;
    std::list<RevisionControlConnection> m_revisionControlConnections;
    hmx::fwk::ICommandManager* m_commandManager = nullptr;
    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemTOCAccessor m_toc;
    unsigned m_attachments = 0; // how often a library was attached
    nodebrowser::BrowserHeader m_header;
    std::unique_ptr<ScsTask, nodebrowser::EndTask> m_scsTask;
    bool m_sourceControlEnabled = false;

    // The work that the next paint does.
    bool m_statesStale = true;
    bool m_rebuildNeeded = false;
    bool m_relayoutNeeded = false;

    int m_filterMode;
    nodebrowser::SearchWords m_searchWords; // the lowered search text, split at each key stroke

    std::unique_ptr<nodebrowser::ItemList> m_items{new nodebrowser::ItemList};
    bool m_itemsInUse = false;        // an operation of the list reads the data layer: no build may start
    QPointer<QObject> m_removalWatch; // null unless the event loop has still to go on after ItemRemoved()
    nodebrowser::RowPainter m_rowPainter;
    double m_pixelRatio = 1.0; // of what the last paint painted on

    const int m_listTop;
    int m_contentHeight = 0;
    int m_scrollOffset = 0;
    std::vector<std::uint64_t> m_visibleItems;         // ranks, by row
    std::uint64_t m_selectedRow = nodebrowser::gNoRow; // none when it is not below the count of rows
    QPoint m_dragStart;
};
