// SPDX-License-Identifier: MIT
#include "nodebrowser/nodebrowser.h"

#include "datamodel/helpers.h"
#include "datamodel/models.h"
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/commands.h"
#include "nodebrowser/contextmenu.h"
#include "nodebrowser/dragformat.h"
#include "nodebrowser/nodebrowser_p.h"
#include "nodebrowser/searchscore.h"
#include "qtcompat/latin1.h"
#include "qtcompat/qtcompat.h"

#include <QAction>
#include <QApplication>
#include <QDrag>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>
#include <QToolTip>

#include <cstring>
#include <list>
#include <utility>
#include <vector>

using namespace nodebrowser;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemTOCAccessor;
using vireo::datamodel::VireoType;

namespace
{

const int gWheelStep = 3 * gRowHeight;

/// More characters than a screen shows. Drawing a character costs time even if nobody can see it.
const std::size_t gDrawnCharacters = 4000;

} // namespace

// A static library does not register its icons by itself. The macro must stand outside any namespace.
static void RegisterIcons()
{
    Q_INIT_RESOURCE(nodebrowser);
}

CNodeBrowser::CNodeBrowser(eConfigType in_config) : m_private(new Private(*this, in_config))
{
    RegisterIcons();
    m_private->ConnectHeader();
    m_private->m_scsTask.reset(new ScsTask("NodeBrowser"));
    m_private->ConnectRevisionControl();
    ShowRows(*this, *m_private);
}

void CNodeBrowser::Private::ConnectHeader()
{
    connect(m_header.m_scrollBar, SIGNAL(valueChanged(int)), &m_browser, SLOT(SliderValueChanged(int)));
    connect(m_header.m_searchField, SIGNAL(textChanged(const QString&)), &m_browser,
            SLOT(SearchTextChange(const QString&)));
    connect(m_header.m_searchField, SIGNAL(returnPressed()), &m_browser, SLOT(EnterPressed()));
    if (m_header.m_tabBar)
        connect(m_header.m_tabBar, SIGNAL(currentChanged(int)), &m_browser, SLOT(TabChanged(int)));
    connect(m_header.m_clearButton, SIGNAL(clicked(bool)), &m_browser, SLOT(ClearButton(bool)));
    qtcompat::ConnectFontsChanged(m_browser, SLOT(update()));
}

void CNodeBrowser::Private::ConnectRevisionControl()
{
    IRevisionControlPropertiesMgr* const manager =
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    if (!manager)
        return;
    m_revisionControlConnections.emplace_back();
    manager->Connect(&m_browser, m_revisionControlConnections.back());
    m_browser.CNodeBrowser::OnRevisionControlPropertiesChange(manager);
}

CNodeBrowser::~CNodeBrowser()
{
    HideRows(*this);
    m_private->StopObserving();
    delete m_private->m_removalWatch;
    m_private->m_header.Delete();
    m_private->m_scsTask.reset();
}

void CNodeBrowser::Private::StopObserving()
{
    ItemTOCAccessor toc = m_toc;
    ItemLibraryAccessor library = m_library;
    if (toc.IsValid())
        toc.RemoveObserver(&m_browser, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
    if (library.IsValid())
        library.RemoveObserver(&m_browser, vireo::datamodel::eItemLibraryNotificationKind, library.GetContext());
}

void CNodeBrowser::SetItemLibrary(const ItemLibraryAccessor& in_library)
{
    Private& d = *m_private;
    const unsigned attachment = ++d.m_attachments;
    d.StopObserving();
    if (attachment != d.m_attachments)
        return; // the data layer came back and attached a library itself: that one stays
    d.m_library = in_library;
    const ItemLibraryAccessor library = d.GetLibrary();
    library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, library.GetContext());
    ItemTOCAccessor toc = GetTOC(library);
    if (attachment != d.m_attachments)
        return; // the same
    d.m_toc = toc;
    toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
    d.m_statesStale = true;
    d.BuildAllItemList(nullptr);
}

void CNodeBrowser::SetCommandManager(hmx::fwk::ICommandManager* in_commands)
{
    m_private->m_commandManager = in_commands;
}

hmx::fwk::ICommandManager* CNodeBrowser::GetCommandManager() const
{
    return m_private->m_commandManager;
}

// The item list

/// Builds the list, or leaves that to the next paint while the list is in use.
void CNodeBrowser::Private::BuildAllItemList(ItemList::ObjectHandles* out_handles)
{
    if (m_itemsInUse)
    {
        RequestRebuild();
        return;
    }
    const QScopedValueRollback<bool> rollback(m_itemsInUse);
    m_itemsInUse = true;
    const ItemList::Legacy legacy = m_items->TakeLegacy();
    m_items.reset(new ItemList);
    m_relayoutNeeded = true;
    // A read may call the browser back. The call finds an empty list, and a library that it attaches is read later.
    const ItemLibraryAccessor library = m_library;
    const ItemTOCAccessor toc = m_toc;
    std::unique_ptr<ItemList> items(new ItemList);
    items->SetPixelRatio(m_pixelRatio);
    items->Build(toc, library, legacy, IsVersioningShown(), out_handles);
    m_items = std::move(items);
    if (toc.IsValid())
        RequestRepaint();
}

// Reactions to the data layer

void CNodeBrowser::Private::RequestRebuild()
{
    m_rebuildNeeded = true;
    RequestRepaint();
}

void CNodeBrowser::ItemAdded(ItemAccessor&)
{
    m_private->RequestRebuild();
}

/// Looks after a removal for items that are gone. ItemRemoved() comes before the removal, so a paint that is forced
/// meanwhile still lists the item. The toolkit deletes an object later than it delivers an event: not in a loop that
/// another observer runs inside the same notification, but when the loop around all of it goes on.
class CNodeBrowser::Private::RemovalWatch : public QObject
{
public:
    explicit RemovalWatch(Private& io_browser) : m_browser(io_browser) { deleteLater(); }

    ~RemovalWatch() override
    {
        if (m_browser.m_items->HasGoneItem())
            m_browser.RequestRebuild();
    }

    RemovalWatch(const RemovalWatch&) = delete;
    RemovalWatch& operator=(const RemovalWatch&) = delete;

private:
    Private& m_browser;
};

void CNodeBrowser::ItemRemoved(ItemAccessor&)
{
    m_private->RequestRebuild();
    if (!m_private->m_removalWatch)
        m_private->m_removalWatch = new Private::RemovalWatch(*m_private);
}

void CNodeBrowser::OnBeginChanges(ItemLibraryAccessor&) {}
void CNodeBrowser::OnEndChanges(ItemLibraryAccessor&) {}

void CNodeBrowser::LibraryInvalidated(ItemLibraryAccessor&)
{
    m_private->RequestRebuild();
}

void CNodeBrowser::ItemNameChanged(ItemLibraryAccessor&, const ItemID&)
{
    m_private->RequestRebuild();
}

void CNodeBrowser::ItemTagsChanged(ItemLibraryAccessor&, const ItemID& in_item, const char* in_key)
{
    if (!in_key || std::strcmp(in_key, vireo::datamodel::gApplicationTagsKey) != 0)
        return;
    // No relayout on purpose: rows do not jump away while tags are edited. The next relayout sees the new tags.
    const QScopedValueRollback<bool> rollback(m_private->m_itemsInUse);
    m_private->m_itemsInUse = true;
    m_private->m_items->RefreshTags(m_private->GetLibrary(), in_item);
}

void CNodeBrowser::ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID& in_item, long in_state)
{
    const QScopedValueRollback<bool> rollback(m_private->m_itemsInUse);
    m_private->m_itemsInUse = true;
    if (m_private->m_items->SetState(in_item, static_cast<unsigned>(in_state), m_private->IsVersioningShown()))
        m_private->RequestRepaint();
}

void CNodeBrowser::OnPreCommit(ItemLibraryAccessor&, bool*) {}
void CNodeBrowser::OnPostCommit(ItemLibraryAccessor&) {}

void CNodeBrowser::OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager)
{
    bool enabled = false;
    if (in_manager && in_manager->HasProperties())
        in_manager->GetSourceControlEnabled(&enabled);
    m_private->SetSourceControlEnabled(enabled && ScsUtils::IsFileVersionControlActive());
}

void CNodeBrowser::Private::SetSourceControlEnabled(bool in_enabled)
{
    if (in_enabled == m_sourceControlEnabled)
        return;
    m_sourceControlEnabled = in_enabled;
    if (in_enabled)
    {
        m_statesStale = true;
        RequestRepaint();
        return;
    }
    // No repaint request on purpose: the badges disappear at the next repaint.
    const QScopedValueRollback<bool> rollback(m_itemsInUse);
    m_itemsInUse = true;
    m_items->ResetStates(IsVersioningShown());
}

bool CNodeBrowser::Private::IsVersioningShown() const
{
    return isSourceControlEnabled() && ScsUtils::IsFileVersionControlActive();
}

/// Does the work that was left to this paint. A paint inside an operation of the list leaves it to the next one.
void CNodeBrowser::Private::RefreshItems()
{
    if (m_itemsInUse)
        return;
    m_pixelRatio = qtcompat::PaintedRatio(m_browser);
    if (m_rebuildNeeded || m_statesStale)
    {
        // Cleared first, so that a change during the build requests another build.
        const bool requestStates = m_statesStale;
        m_rebuildNeeded = false;
        m_statesStale = false;
        ItemList::ObjectHandles handles;
        try
        {
            BuildAllItemList(requestStates ? &handles : nullptr);
        }
        catch (...)
        {
            m_rebuildNeeded = true;
            m_statesStale |= requestStates;
            throw;
        }
        if (requestStates)
            m_scsTask->RequestObjectStates(handles);
    }
    RefreshIcons();
    if (m_relayoutNeeded)
        UpdateVisibleItems();
}

/// Has the icons composed for what is painted on. That changes when the window comes to another screen.
void CNodeBrowser::Private::RefreshIcons()
{
    const QScopedValueRollback<bool> rollback(m_itemsInUse);
    m_itemsInUse = true;
    m_items->SetPixelRatio(m_pixelRatio);
}

// Search and tabs

bool CNodeBrowser::CompareToFilter(ItemAccessor& in_item, std::size_t* out_score) const
{
    const QScopedValueRollback<bool> rollback(m_private->m_itemsInUse);
    m_private->m_itemsInUse = true;
    return m_private->m_items->Compare(m_private->m_searchWords, m_private->m_filterMode, m_private->GetLibrary(),
                                       in_item, out_score);
}

void CNodeBrowser::SearchTextChange(const QString& text)
{
    m_private->m_searchWords = SplitSearchWords(qtcompat::ToLatin1(text.toLower()));
    m_private->m_relayoutNeeded = true;
    m_private->RequestRepaint();
}

void CNodeBrowser::ClearButton(bool)
{
    m_private->m_header.m_searchField->setText(QString());
}

void CNodeBrowser::TabChanged(int index)
{
    m_private->m_filterMode = index;
    m_private->m_relayoutNeeded = true;
    m_private->RequestRepaint();
}

void CNodeBrowser::EnterPressed()
{
    if (m_private->m_selectedRow >= GetRowCount())
        m_private->m_selectedRow = 0;
    NotifyRowSelected(*this);
    Q_EMIT SelectionChanged();
}

// Rows

void CNodeBrowser::Private::UpdateVisibleItems()
{
    m_relayoutNeeded = false;
    if (!m_toc.IsValid())
    {
        m_visibleItems.clear();
        NotifyRowsFound(m_browser);
        return;
    }
    // The index is stale if a change arrived during the build, or if an item being removed was still listed. Then test
    // the items one by one.
    if (m_rebuildNeeded || m_removalWatch)
    {
        const QScopedValueRollback<bool> rollback(m_itemsInUse);
        m_itemsInUse = true;
        m_items->FindItemByItem(m_searchWords, m_filterMode, GetLibrary(), m_visibleItems);
    }
    else
    {
        m_items->Find(m_searchWords, m_filterMode, m_visibleItems);
    }
    m_contentHeight = static_cast<int>(m_visibleItems.size()) * gRowHeight;
    UpdateScrollbar();
    NotifyRowsFound(m_browser);
}

/// Requests a repaint of the list without the header. When no part of the list is visible it requests one of the whole
/// widget, because the work that waits for a paint must not wait longer.
void CNodeBrowser::Private::RequestRepaint()
{
    const QRect list = GetRowLayout().ListRect();
    m_browser.update(m_browser.visibleRegion().intersects(list) ? list : m_browser.rect());
}

void CNodeBrowser::SliderValueChanged(int)
{
    m_private->m_scrollOffset = m_private->m_header.m_scrollBar->value();
    m_private->RequestRepaint();
}

void CNodeBrowser::resizeEvent(QResizeEvent* in_event)
{
    QWidget::resizeEvent(in_event);
    m_private->m_header.Arrange(m_private->GetRowLayout());
    m_private->UpdateScrollbar();
}

RowLayout CNodeBrowser::Private::GetRowLayout() const
{
    RowLayout layout;
    layout.m_width = m_browser.width();
    layout.m_height = m_browser.height();
    layout.m_listTop = m_listTop;
    layout.m_scrollOffset = m_scrollOffset;
    return layout;
}

/// The record of a row; null when there is no such row. The item list may be newer than the rows of the last paint. Any
/// read of the data layer may replace the record, so callers copy what they need of it before they read.
const BrowserItem* CNodeBrowser::Private::FindRow(std::uint64_t in_row) const
{
    return in_row < m_visibleItems.size() ? m_items->FindRecord(m_visibleItems[static_cast<std::size_t>(in_row)])
                                          : nullptr;
}

/// Gets the identity of the item in a row.
/// \return whether there is such a row
bool CNodeBrowser::Private::FindItem(std::uint64_t in_row, ItemID& out_item) const
{
    const BrowserItem* const record = FindRow(in_row);
    if (!record)
        return false;
    const ItemAccessor item = record->GetItem();
    out_item = item.GetItemID();
    return true;
}

std::size_t CNodeBrowser::GetRowCount() const
{
    return m_private->m_visibleItems.size();
}

ItemAccessor CNodeBrowser::GetRowItem(std::uint64_t in_row) const
{
    const BrowserItem* const record = m_private->FindRow(in_row);
    return record ? record->GetItem() : ItemAccessor();
}

std::set<std::string> CNodeBrowser::GetSearchTags(const ItemID& in_item) const
{
    return m_private->m_items->GetTags(in_item);
}

std::set<ItemID> CNodeBrowser::GetTaggedItems(const std::string& in_tag) const
{
    return m_private->m_items->GetTaggedItems(in_tag);
}

// Painting

void CNodeBrowser::paintEvent(QPaintEvent*)
{
    m_private->RefreshItems();

    // Read before the painter exists: a data layer that runs the event loop paints the browser in the middle of a read.
    const RowLayout layout = m_private->GetRowLayout();
    const RowRange rows = layout.VisibleRows(GetRowCount());
    std::vector<std::pair<std::size_t, RowContent>> contents; // by row
    contents.reserve(rows.m_end - rows.m_first);
    for (std::size_t row = rows.m_first; row < rows.m_end; ++row)
    {
        RowContent content;
        if (m_private->ReadRow(row, content))
            contents.emplace_back(row, std::move(content));
    }

    QPainter painter(this);
    if (!painter.isActive())
        return; // such a paint has ended this one
    const Qt::BGMode backgroundMode = painter.backgroundMode();
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setClipRect(layout.ListRect());
    m_private->m_rowPainter.BeginFrame(painter, layout);
    const QBrush band = style()->standardPalette().brush(QPalette::Active, QPalette::Highlight);
    for (const auto& row : contents)
        m_private->m_rowPainter.Draw(painter, row.first, row.second,
                                     row.first == m_private->m_selectedRow ? band : QBrush());
    painter.setBackgroundMode(backgroundMode);
}

/// Gets what a row shows. Reads the name and the dirty mark from the data layer.
/// \return whether there is such a row
bool CNodeBrowser::Private::ReadRow(std::uint64_t in_row, RowContent& out_content) const
{
    const BrowserItem* const record = FindRow(in_row);
    if (!record)
        return false;
    const ItemAccessor item = record->GetItem();
    out_content.m_icon = record->GetStateIcon();
    out_content.m_marked = record->IsFactoryItem() || (isSourceControlEnabled() && record->IsSourceControlled());

    const ItemLibraryAccessor library = GetLibrary();
    const ItemID id = item.GetItemID();
    std::string name = library.GetItemName(id, true, nullptr);
    if (name.size() > gDrawnCharacters)
        name.resize(gDrawnCharacters);
    out_content.m_name = qtcompat::FromLatin1(name);
    out_content.m_dirty = library.ItemIsDirty(id);
    return true;
}

// Mouse, selection and drag

void CNodeBrowser::mousePressEvent(QMouseEvent* in_event)
{
    const QPoint position = qtcompat::EventPosition(*in_event);
    const std::size_t row = m_private->GetItemIndexAt(position);
    // A press that picks no row clears the selection silently: the band disappears at the next repaint.
    m_private->m_selectedRow = gNoRow;
    if (row >= GetRowCount())
        return;
    if (in_event->button() == Qt::LeftButton)
    {
        m_private->m_dragStart = position;
        m_private->SelectByHand(row);
    }
    else if (in_event->button() == Qt::RightButton && m_private->m_config == eConfigNodeBrowser)
    {
        m_private->m_selectedRow = row;
        const QPointer<CNodeBrowser> alive(this); // the host may destroy the browser while the menu is open
        NotifyRowSelected(*this);
        PopContexMenu(qtcompat::EventGlobalPosition(*in_event), row);
        if (alive)
            Q_EMIT SelectionChanged();
    }
}

/// Selects a row, shows the band at once, and tells the host.
void CNodeBrowser::Private::SelectByHand(std::size_t in_row)
{
    m_selectedRow = in_row;
    m_browser.repaint();
    NotifyRowSelected(m_browser);
    Q_EMIT m_browser.SelectionChanged();
}

void CNodeBrowser::mouseMoveEvent(QMouseEvent* in_event)
{
    const QPoint way = qtcompat::EventPosition(*in_event) - m_private->m_dragStart;
    ItemID item;
    if (!(in_event->buttons() & Qt::LeftButton) || way.manhattanLength() < QApplication::startDragDistance() ||
        !m_private->FindItem(m_private->m_selectedRow, item))
        return;
    QDrag* const drag = new QDrag(this);
    QMimeData* const mimeData = new QMimeData;
    mimeData->setData(GetDragFormat(), EncodeDrag(item));
    drag->setMimeData(mimeData);
    drag->exec(Qt::CopyAction);
}

void CNodeBrowser::mouseDoubleClickEvent(QMouseEvent* in_event)
{
    m_private->OpenRow(m_private->GetItemIndexAt(qtcompat::EventPosition(*in_event)));
}

/// Shows a compound in the application. Other items do not open.
void CNodeBrowser::Private::OpenRow(std::size_t in_row)
{
    ItemID item;
    if (FindItem(in_row, item) && item.GetType() == VireoType::gCompound)
        OpenCompound(GetLibrary(), item);
}

ItemID CNodeBrowser::GetSelection()
{
    return GetRowItem(m_private->m_selectedRow).GetItemID();
}

bool CNodeBrowser::IsSelectionType()
{
    const ItemLibraryAccessor library = m_private->GetLibrary();
    if (!library.IsValid())
        return false;
    const ItemID selection = GetSelection();
    return selection.IsValid() &&
           vireo::datamodel::TypeDescriptorAccessor(library.GetModel(selection, nullptr)).IsValid();
}

// Assistive technology

bool CNodeBrowser::Private::PutInWords(std::size_t in_row, RowInWords& out_words) const
{
    const BrowserItem* const record = FindRow(in_row);
    RowContent content;
    if (!record)
        return false;
    const eItemKind kind = record->GetKind();
    ReadRow(in_row, content);
    out_words.m_name = content.m_name;
    out_words.m_modified = content.m_dirty;
    out_words.m_kind = qtcompat::FromLatin1(NameOf(kind));
    out_words.m_opens = kind == eKindCompound || kind == eKindSignature;
    return true;
}

void CNodeBrowser::Private::SelectRow(std::size_t in_row)
{
    if (in_row >= m_visibleItems.size())
        return;
    m_header.m_scrollBar->setValue(GetRowLayout().OffsetToShow(in_row));
    SelectByHand(in_row);
}

// Tool tips and the wheel

bool CNodeBrowser::event(QEvent* in_event)
{
    if (in_event->type() == QEvent::ToolTip)
    {
        m_private->ShowToolTip(static_cast<QHelpEvent&>(*in_event));
        return true;
    }
    if (in_event->type() == QEvent::Wheel && m_private->ScrollByWheel(static_cast<const QWheelEvent&>(*in_event)))
    {
        in_event->accept();
        return true;
    }
    return QWidget::event(in_event);
}

void CNodeBrowser::Private::ShowToolTip(QHelpEvent& io_event)
{
    // Only compounds have a tool tip. Its text is what source control says, and nothing else.
    ItemID item;
    if (!FindItem(GetItemIndexAt(io_event.pos()), item) || item.GetType() != VireoType::gCompound)
    {
        QToolTip::hideText();
        io_event.ignore();
        return;
    }
    ShowStateToolTip(item, io_event.globalPos());
}

/// Scrolls by three rows, however far the wheel turned.
/// \return whether the pointer is over the list; without that nothing happens
bool CNodeBrowser::Private::ScrollByWheel(const QWheelEvent& in_event)
{
    if (!GetRowLayout().IsInList(qtcompat::EventPosition(in_event)))
        return false;
    if (!qtcompat::IsWheelTurn(in_event))
        return true;
    const int step = qtcompat::WheelDelta(in_event) > 0 ? -gWheelStep : gWheelStep;
    m_header.m_scrollBar->setValue(m_scrollOffset + step);
    return true;
}

// Commands

void CNodeBrowser::CreateMenuCommand(eMenuCommand in_command, QMenu* in_menu)
{
    switch (in_command)
    {
    case eNewSignature:
        AddEntry(*in_menu, QString::fromLatin1("Compound signature"), *this, SLOT(OnNewSignature()));
        break;
    case eNewCompound:
        AddEntry(*in_menu, QString::fromLatin1("Public compound"), *this, SLOT(OnNewCompound()));
        break;
    case eNewLoopCompound:
        AddEntry(*in_menu, QString::fromLatin1("Public looping compound"), *this, SLOT(OnNewLoopCompound()));
        break;
    case eSaveGraphLibrary:
        AddEntry(*in_menu, QString::fromLatin1("Save graph library"), *this, SLOT(OnSaveGraphLibrary()));
        break;
    }
}

void CNodeBrowser::PopContexMenu(const QPoint& in_position, std::size_t in_row)
{
    m_private->m_selectedRow = in_row;
    ItemID item;
    if (!m_private->FindItem(in_row, item))
        return;
    QMenu menu;
    FillContextMenu(menu, *this, m_private->GetLibrary(), item);
    menu.exec(in_position);
}

void CNodeBrowser::OnNewSignature()
{
    CreateCompound(m_private->GetCommandTarget(), "signature", true);
}

void CNodeBrowser::OnNewCompound()
{
    CreateCompound(m_private->GetCommandTarget(), "compound", false);
}

void CNodeBrowser::OnNewLoopCompound()
{
    CreateLoopCompound(m_private->GetCommandTarget());
}

void CNodeBrowser::OnSaveGraphLibrary()
{
    SaveLibrary(m_private->GetLibrary());
}

void CNodeBrowser::OnRenameItem()
{
    ItemID item;
    if (m_private->FindItem(m_private->m_selectedRow, item))
        RenameCompound(m_private->GetCommandTarget(), item);
}

/// Does nothing on purpose: the menu shows a disabled entry, which needs a slot.
void CNodeBrowser::OnDeleteItem() {}

void CNodeBrowser::OnEditItemTags()
{
    ItemID item;
    if (m_private->FindItem(m_private->m_selectedRow, item))
        EditTags(m_private->GetCommandTarget(), item);
}

void CNodeBrowser::OnCheckOutItem()
{
    ItemID item;
    if (m_private->FindItem(m_private->m_selectedRow, item))
        CheckOut(item);
}

void CNodeBrowser::OnMakeItemWritable()
{
    ItemID item;
    if (m_private->FindItem(m_private->m_selectedRow, item))
        MakeWritable(item);
}

void CNodeBrowser::OnShowItemFiles()
{
    ItemID item;
    if (m_private->FindItem(m_private->m_selectedRow, item))
        ShowFiles(item);
}

void CNodeBrowser::OnDatasourceChange()
{
    // The identities are in the action of the menu. Another sender has none.
    QObject* const caller = sender();
    if (const QAction* const action = caller ? qobject_cast<QAction*>(caller) : nullptr)
        MoveCompound(action->data());
}
