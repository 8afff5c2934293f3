// SPDX-License-Identifier: MIT
#include "nodebrowser/nodebrowser.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/models.h"
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/browseritem.h"
#include "nodebrowser/browsertabbar.h"
#include "nodebrowser/datasourcelist.h"
#include "nodebrowser/dbobject.h"
#include "nodebrowser/itemnumbers.h"
#include "nodebrowser/renamedialog.h"
#include "nodebrowser/rowlayout.h"
#include "nodebrowser/rowtexts.h"
#include "nodebrowser/searchindex.h"
#include "nodebrowser/searchscore.h"
#include "nodebrowser/stateicon.h"
#include "nodebrowser/tagindex.h"
#include "nodebrowser/vireodialog.h"
#include "qtcompat/latin1.h"
#include "qtcompat/qtcompat.h"

#include <QAction>
#include <QApplication>
#include <QDataStream>
#include <QDrag>
#include <QHelpEvent>
#include <QIODevice>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <cstring>
#include <iterator>

using nexa4::IDbObject;
using nexa4::NEXAHandle;
using nodebrowser::BrowserTabBar;
using nodebrowser::CRenameCompoundDialog;
using nodebrowser::DataSourceEntry;
using nodebrowser::FindDbObject;
using nodebrowser::FindRevisionControlHelper;
using nodebrowser::ListDataSources;
using nodebrowser::MoveToDataSource;
using qtcompat::FromLatin1;
using vireo::datamodel::BaseAccessor;
using vireo::datamodel::CompoundAccessor;
using vireo::datamodel::CompoundModifierAccessor;
using vireo::datamodel::gApplicationTagsKey;
using vireo::datamodel::Helpers;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIterator;
using vireo::datamodel::ItemLibraryAccessor;
using vireo::datamodel::ItemLibraryModifierAccessor;
using vireo::datamodel::LibType;
using vireo::datamodel::LoopCompoundAccessor;
using vireo::datamodel::LoopCompoundModifierAccessor;
using vireo::datamodel::LowLevelItemLibraryAccessor;
using vireo::datamodel::TypeDescriptorAccessor;
using vireo::datamodel::VireoType;

namespace
{

const int gWheelStep = 3 * gRowHeight;
const int gIconLeft = 9;
const int gMarkedIconLeft = gIconLeft - gFactoryMarkWidth;
const int gIconInset = 2;

/// More of a name than a screen shows. What is drawn of a name costs time whether or not it can be seen.
const std::size_t gDrawnCharacters = 4000;

/// Views what one accessor points at as an accessor of another kind; invalid when it is not of that kind.
template <class Accessor> Accessor View(const BaseAccessor& in_other)
{
    Accessor accessor;
    accessor.ResetContext(in_other.GetContext());
    if (accessor.GetContext())
        accessor.RefreshInterfacePointer();
    return accessor;
}

/// What a drag carries to the graph: the item's identity as one QString in a data stream.
QByteArray DragPayload(const ItemID& in_item)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << FromLatin1(in_item.Serialize());
    return payload;
}

} // namespace

// A static library does not register its pictures by itself. The macro must stand outside any namespace.
static void RegisterPictures()
{
    Q_INIT_RESOURCE(nodebrowser);
}

CNodeBrowser::CNodeBrowser(eConfigType in_config)
    : m_rowTexts(new RowTexts),
      m_selectedRow(gNoRow),
      m_icons(new StateIcons),
      m_itemNumbers(new ItemNumbers),
      m_tagIndex(new TagIndex),
      m_searchIndex(new SearchIndex),
      m_config(in_config)
{
    RegisterPictures();
    CreateHeader();
    ConnectHeader();
    m_scsTask = new ScsTask("NodeBrowser");
    ConnectRevisionControl();
}

void CNodeBrowser::CreateHeader()
{
    m_scrollBar = new QScrollBar(Qt::Vertical, this);
    m_scrollBar->hide();
    m_searchField = new QLineEdit(this);
    m_clearButton = new QPushButton(style()->standardIcon(QStyle::SP_TitleBarCloseButton), QString(), this);
    m_listTop = gListTop;
    if (m_config == eConfigNodeBrowser)
    {
        m_tabBar = new BrowserTabBar(this);
        m_tabBar->addTab(QString::fromLatin1("Nodes"));
        m_tabBar->addTab(QString::fromLatin1("Types"));
        m_tabBar->addTab(QString::fromLatin1("All"));
        m_filterMode = eFilterNodes;
        m_tabBar->setCurrentIndex(0);
        m_listTop += gTabBarRoom;
    }
    else
    {
        m_filterMode = eFilterTypes;
    }
}

void CNodeBrowser::ConnectHeader()
{
    connect(m_scrollBar, SIGNAL(valueChanged(int)), this, SLOT(SliderValueChanged(int)));
    connect(m_searchField, SIGNAL(textChanged(const QString&)), this, SLOT(SearchTextChange(const QString&)));
    connect(m_searchField, SIGNAL(returnPressed()), this, SLOT(EnterPressed()));
    if (m_tabBar)
        connect(m_tabBar, SIGNAL(currentChanged(int)), this, SLOT(TabChanged(int)));
    connect(m_clearButton, SIGNAL(clicked(bool)), this, SLOT(ClearButton(bool)));
}

void CNodeBrowser::ConnectRevisionControl()
{
    IRevisionControlPropertiesMgr* const manager =
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr");
    if (!manager)
        return;
    m_revisionControlConnections.emplace_back();
    manager->Connect(this, m_revisionControlConnections.back());
    CNodeBrowser::OnRevisionControlPropertiesChange(manager);
}

CNodeBrowser::~CNodeBrowser()
{
    StopObserving();
    delete m_scrollBar;
    delete m_tabBar;
    delete m_searchField;
    delete m_clearButton;
    m_scsTask->DeleteMe();
    m_scsTask = nullptr;
}

void CNodeBrowser::StopObserving()
{
    if (m_toc.IsValid())
        m_toc.RemoveObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    if (m_library.IsValid())
        m_library.RemoveObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
}

void CNodeBrowser::SetItemLibrary(const ItemLibraryAccessor& in_library)
{
    StopObserving();
    m_library = in_library;
    m_library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
    m_toc = GetTOC(m_library);
    m_toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    m_statesStale = true;
    BuildAllItemList(nullptr);
}

void CNodeBrowser::SetCommandManager(hmx::fwk::ICommandManager* in_commands)
{
    m_commandManager = in_commands;
}

hmx::fwk::ICommandManager* CNodeBrowser::GetCommandManager() const
{
    return m_commandManager;
}

// The item list

void CNodeBrowser::BuildAllItemList(ObjectHandles* out_handles)
{
    m_items.clear();
    m_icons->Clear();
    m_itemNumbers->Clear();
    m_tagIndex->Clear();
    m_searchIndex->Clear();
    if (m_toc.IsValid())
    {
        AppendItems(VireoType::gPolymorphicSolver, out_handles);
        AppendItems(VireoType::gCompound, out_handles);
        AppendItems(VireoType::gGlobalConstant, out_handles);
        AppendItems(VireoType::gSolver, out_handles);
        AppendItems(LibType::gType, out_handles);
        UpdateList();
    }
    ForgetItemsThatLeft();
    m_relayoutNeeded = true;
}

/// An item is still there while its removal is being told. A list that is built then, because an observer repaints, has it.
void CNodeBrowser::ForgetItemsThatLeft()
{
    for (auto item = m_leavingItems.begin(); item != m_leavingItems.end();)
        item = m_itemNumbers->Find(*item).empty() ? m_leavingItems.erase(item) : std::next(item);
}

void CNodeBrowser::AppendItems(const char* in_type, ObjectHandles* out_handles)
{
    RecordSurroundings surroundings(FindRevisionControlHelper(), IsVersioningShown(), *m_icons);
    for (ItemIterator iterator = m_toc.IterateItems(in_type); !iterator.IsAtEnd(); iterator.Next())
    {
        ItemAccessor item = iterator.GetItem();
        if (!Helpers::IsValidGraphItemType(in_type, item))
            continue;
        // What lives inside another item, or is a variant of one, is reached through that item.
        if (item.GetValue(vireo::datamodel::gParentKey).IsValid() ||
            item.GetValue(vireo::datamodel::gSpecializesKey).IsValid())
            continue;
        const ItemID id = item.GetItemID();
        const std::uint32_t number = static_cast<std::uint32_t>(m_items.size());
        // In this order: whatever the data layer throws or calls in between, nothing refers to a record that is not there.
        m_items.emplace_back(std::move(item), vireo::datamodel::eAccessStateUnknown, surroundings);
        m_searchIndex->Add(m_library.GetItemName(id, true, nullptr), m_items.back().GetKind());
        m_tagIndex->Add(ReadSearchTags(id));
        m_itemNumbers->Add(id, number);
        BrowserItem& record = m_items.back();
        if (out_handles && record.IsSourceControlled() && record.HasObjectId())
        {
            record.SetAccessState(vireo::datamodel::eAccessStateRequested, surroundings.m_versioningActive, *m_icons);
            out_handles->push_back(record.GetDbObject());
        }
    }
}

/// The tag string of an item as the search sees it: the name of its type is one more tag.
std::string CNodeBrowser::ReadSearchTags(const ItemID& in_item) const
{
    std::string tags = m_library.GetItemTags(in_item, gApplicationTagsKey);
    const std::string type = in_item.IsValid() ? in_item.GetType() : "";
    if (!tags.empty() && !type.empty())
        tags += ';';
    return tags += type;
}

// Reactions to the data layer

void CNodeBrowser::RequestRebuild()
{
    m_rebuildNeeded = true;
    UpdateList();
}

void CNodeBrowser::ItemAdded(ItemAccessor& in_item)
{
    m_leavingItems.erase(in_item.GetItemID());
    RequestRebuild();
}

void CNodeBrowser::ItemRemoved(ItemAccessor& in_item)
{
    m_leavingItems.insert(in_item.GetItemID());
    RequestRebuild();
}

void CNodeBrowser::OnBeginChanges(ItemLibraryAccessor&) {}

void CNodeBrowser::OnEndChanges(ItemLibraryAccessor&) {}

void CNodeBrowser::LibraryInvalidated(ItemLibraryAccessor&)
{
    RequestRebuild();
}

void CNodeBrowser::ItemNameChanged(ItemLibraryAccessor&, const ItemID&)
{
    RequestRebuild();
}

void CNodeBrowser::ItemTagsChanged(ItemLibraryAccessor&, const ItemID& in_item, const char* in_key)
{
    if (!in_key || std::strcmp(in_key, gApplicationTagsKey) != 0 || m_itemNumbers->Find(in_item).empty())
        return;
    // No relayout on purpose: rows do not jump away while tags are edited. Whatever lays them out next sees the new tags.
    const std::string tags = ReadSearchTags(in_item);
    // Looked up again: the data layer may have had the list built anew while it was asked.
    for (const std::uint32_t number : m_itemNumbers->Find(in_item))
        m_tagIndex->SetTags(number, tags);
}

void CNodeBrowser::ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID& in_item, long in_state)
{
    const std::vector<std::uint32_t> numbers = m_itemNumbers->Find(in_item);
    // The record of an item that has left since has no identity any more.
    if (!numbers.empty() && m_items[numbers.front()].GetItemID() == in_item &&
        m_items[numbers.front()].SetAccessState(static_cast<unsigned>(in_state), IsVersioningShown(), *m_icons))
        UpdateList();
}

void CNodeBrowser::OnPreCommit(ItemLibraryAccessor&, bool*) {}

void CNodeBrowser::OnPostCommit(ItemLibraryAccessor&) {}

void CNodeBrowser::OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager)
{
    bool enabled = false;
    if (in_manager && in_manager->HasProperties())
        in_manager->GetSourceControlEnabled(&enabled);
    SetSourceControlEnabled(enabled && ScsUtils::IsFileVersionControlActive());
}

void CNodeBrowser::SetSourceControlEnabled(bool in_enabled)
{
    if (in_enabled == m_sourceControlEnabled)
        return;
    m_sourceControlEnabled = in_enabled;
    if (in_enabled)
    {
        m_statesStale = true;
        UpdateList();
        return;
    }
    // No repaint on purpose: the badges go with whatever repaints the list next.
    const bool versioningShown = IsVersioningShown();
    for (BrowserItem& item : m_items)
        item.SetAccessState(vireo::datamodel::eAccessStateUnknown, versioningShown, *m_icons);
}

bool CNodeBrowser::IsVersioningShown() const
{
    return isSourceControlEnabled() && ScsUtils::IsFileVersionControlActive();
}

void CNodeBrowser::RefreshItems()
{
    if (m_rebuildNeeded || m_statesStale)
    {
        m_rebuildNeeded = false;
        if (m_statesStale)
        {
            m_statesStale = false;
            ObjectHandles handles;
            BuildAllItemList(&handles);
            m_scsTask->RequestObjectStates(handles);
        }
        else
        {
            BuildAllItemList(nullptr);
        }
    }
    if (m_relayoutNeeded)
        UpdateVisibleItems();
}

// Search and tabs

bool CNodeBrowser::CompareToFilter(ItemAccessor& in_item, std::size_t* out_score) const
{
    if (!PassesFilterMode(m_filterMode, KindOf(in_item)))
        return false;
    if (m_searchWords.empty())
    {
        *out_score = 0;
        return true;
    }
    const ItemID id = in_item.GetItemID();
    return ScoreItem(m_searchWords, LowerName(m_library.GetItemName(id, true, nullptr)), GetSearchTags(id), out_score);
}

void CNodeBrowser::SearchTextChange(const QString& text)
{
    m_searchWords = SplitSearchWords(text.toLower());
    m_relayoutNeeded = true;
    UpdateList();
}

void CNodeBrowser::ClearButton(bool)
{
    m_searchField->setText(QString());
}

void CNodeBrowser::TabChanged(int index)
{
    m_filterMode = index;
    m_relayoutNeeded = true;
    UpdateList();
}

void CNodeBrowser::EnterPressed()
{
    if (m_selectedRow >= m_visibleItems.size())
        m_selectedRow = 0;
    Q_EMIT SelectionChanged();
}

// Rows

void CNodeBrowser::UpdateVisibleItems()
{
    m_relayoutNeeded = false;
    if (!m_toc.IsValid())
    {
        m_visibleItems.clear();
        return;
    }
    // What changed while the list was being built is not in the index, nor is it when an item leaves that was still there.
    if (m_rebuildNeeded || !m_leavingItems.empty())
        m_visibleItems = FilterItemByItem();
    else
        m_searchIndex->Find(m_searchWords, m_filterMode, *m_tagIndex, m_visibleItems);
    m_contentHeight = static_cast<int>(m_visibleItems.size()) * gRowHeight;
    UpdateScrollbar();
}

/// The rows as the data layer has the items at this moment.
std::vector<std::uint64_t> CNodeBrowser::FilterItemByItem() const
{
    std::vector<std::pair<std::size_t, std::uint64_t>> found; // score and place
    const std::vector<std::uint32_t>& order = m_searchIndex->GetOrder();
    for (std::size_t place = 0; place < order.size(); ++place)
    {
        ItemAccessor item = m_items[order[place]].GetItem();
        std::size_t score = 0;
        if (CompareToFilter(item, &score))
            found.emplace_back(score, place);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::uint64_t> places;
    for (const auto& entry : found)
        places.push_back(entry.second);
    return places;
}

/// Asks for a repaint of the list, and leaves the header alone. What waits for the next paint gets it even when nothing of
/// the list is in sight.
void CNodeBrowser::UpdateList()
{
    const QRect list = GetRowLayout().ListRect();
    update(visibleRegion().intersects(list) ? list : rect());
}

void CNodeBrowser::UpdateScrollbar()
{
    const int available = height() - m_listTop;
    if (available >= m_contentHeight)
    {
        m_scrollBar->setValue(0);
        m_scrollBar->hide();
        return;
    }
    m_scrollBar->setPageStep(available);
    m_scrollBar->setMinimum(0);
    m_scrollBar->setMaximum(m_contentHeight - available);
    m_scrollBar->show();
}

void CNodeBrowser::SliderValueChanged(int)
{
    m_scrollOffset = m_scrollBar->value();
    UpdateList();
}

void CNodeBrowser::resizeEvent(QResizeEvent* in_event)
{
    QWidget::resizeEvent(in_event);
    m_searchField->setGeometry(0, 0, width() - gHeaderHeight, gHeaderHeight);
    m_clearButton->setGeometry(width() - gHeaderHeight, 0, gHeaderHeight, gHeaderHeight);
    if (m_tabBar)
        m_tabBar->move(0, gHeaderHeight);
    m_scrollBar->setGeometry(width() - gHeaderHeight, m_listTop, gHeaderHeight, height() - m_listTop);
    UpdateScrollbar();
}

RowLayout CNodeBrowser::GetRowLayout() const
{
    RowLayout layout;
    layout.m_width = width();
    layout.m_height = height();
    layout.m_listTop = m_listTop;
    layout.m_scrollOffset = m_scrollOffset;
    return layout;
}

std::size_t CNodeBrowser::GetItemIndexAt(const QPoint& in_point) const
{
    return GetRowLayout().RowAt(in_point);
}

/// The record in a row, null when there is no such row. The item list may be newer than the rows of the last paint.
const BrowserItem* CNodeBrowser::FindRow(std::uint64_t in_row) const
{
    if (in_row >= m_visibleItems.size())
        return nullptr;
    const std::uint64_t place = m_visibleItems[static_cast<std::size_t>(in_row)];
    const std::vector<std::uint32_t>& order = m_searchIndex->GetOrder();
    return place < order.size() ? &m_items[order[static_cast<std::size_t>(place)]] : nullptr;
}

ItemAccessor CNodeBrowser::GetRowItem(std::uint64_t in_row) const
{
    const BrowserItem* const item = FindRow(in_row);
    return item ? item->GetItem() : ItemAccessor();
}

std::set<std::string> CNodeBrowser::GetSearchTags(const ItemID& in_item) const
{
    const std::vector<std::uint32_t> numbers = m_itemNumbers->Find(in_item);
    return numbers.empty() ? std::set<std::string>() : m_tagIndex->GetTags(numbers.front());
}

std::set<ItemID> CNodeBrowser::GetTaggedItems(const std::string& in_tag) const
{
    const std::vector<std::uint32_t> numbers = m_tagIndex->GetItems(in_tag);
    std::set<ItemID> items;
    for (const ItemNumbers::Entry& entry : m_itemNumbers->GetEntries())
        if (std::binary_search(numbers.begin(), numbers.end(), entry.second))
            items.insert(entry.first);
    return items;
}

// Painting

void CNodeBrowser::paintEvent(QPaintEvent*)
{
    RefreshItems();

    const RowLayout layout = GetRowLayout();
    QPainter painter(this);
    const Qt::BGMode backgroundMode = painter.backgroundMode();
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setClipRect(layout.ListRect());
    m_rowTexts->BeginFrame(painter);
    const RowRange rows = layout.VisibleRows(m_visibleItems.size());
    for (std::size_t row = rows.m_first; row < rows.m_end; ++row)
        DrawRow(painter, layout, row);
    painter.setBackgroundMode(backgroundMode);
}

void CNodeBrowser::DrawRow(QPainter& in_painter, const RowLayout& in_layout, std::size_t in_row)
{
    const BrowserItem* const item = FindRow(in_row);
    if (!item)
        return;
    const ItemID id = item->GetItemID();
    std::string text = m_library.GetItemName(id, true, nullptr);
    if (text.size() > gDrawnCharacters)
        text.resize(gDrawnCharacters);
    QString name = FromLatin1(text);
    if (in_row == m_selectedRow)
        in_painter.fillRect(in_layout.BandRect(in_row),
                            style()->standardPalette().brush(QPalette::Active, QPalette::Highlight));
    if (!item->GetStateIcon().isNull())
    {
        const bool marked = item->IsFactoryItem() || (isSourceControlEnabled() && item->IsSourceControlled());
        in_painter.drawPixmap(marked ? gMarkedIconLeft : gIconLeft, in_layout.RowTop(in_row) + gIconInset,
                              item->GetStateIcon());
    }
    if (m_library.ItemIsDirty(id))
        name += QLatin1Char('*');
    m_rowTexts->Draw(in_painter, in_layout.NameRect(in_row), name);
}

// Mouse, selection and drag

void CNodeBrowser::mousePressEvent(QMouseEvent* in_event)
{
    const QPoint position = qtcompat::EventPosition(*in_event);
    const std::size_t row = GetItemIndexAt(position);
    // A press that picks nothing clears the selection silently: the band goes with the next repaint.
    m_selectedRow = gNoRow;
    if (row >= m_visibleItems.size())
        return;
    if (in_event->button() == Qt::LeftButton)
    {
        m_selectedRow = row;
        m_dragStart = position;
        repaint();
        Q_EMIT SelectionChanged();
    }
    else if (in_event->button() == Qt::RightButton && m_config == eConfigNodeBrowser)
    {
        m_selectedRow = row;
        const QPointer<CNodeBrowser> alive(this); // the host may destroy the browser while the menu is open
        PopContexMenu(qtcompat::EventGlobalPosition(*in_event), row);
        if (alive)
            Q_EMIT SelectionChanged();
    }
}

void CNodeBrowser::mouseMoveEvent(QMouseEvent* in_event)
{
    const BrowserItem* const item = FindRow(m_selectedRow);
    const QPoint way = qtcompat::EventPosition(*in_event) - m_dragStart;
    if (!item || !(in_event->buttons() & Qt::LeftButton) || way.manhattanLength() < QApplication::startDragDistance())
        return;
    QDrag* const drag = new QDrag(this);
    QMimeData* const mimeData = new QMimeData;
    mimeData->setData(QString::fromLatin1("vireo/toc.key"), DragPayload(item->GetItemID()));
    drag->setMimeData(mimeData);
    drag->exec(Qt::CopyAction);
}

void CNodeBrowser::mouseDoubleClickEvent(QMouseEvent* in_event)
{
    const BrowserItem* const item = FindRow(GetItemIndexAt(qtcompat::EventPosition(*in_event)));
    if (!item || item->GetItemID().GetType() != VireoType::gCompound)
        return;
    const CompoundAccessor compound = View<CompoundAccessor>(m_library.GetModel(item->GetItemID(), nullptr));
    Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(compound), CompoundAccessor());
}

ItemID CNodeBrowser::GetSelection()
{
    return GetRowItem(m_selectedRow).GetItemID();
}

bool CNodeBrowser::IsSelectionType()
{
    if (!m_library.IsValid())
        return false;
    const ItemID selection = GetSelection();
    return selection.IsValid() && View<TypeDescriptorAccessor>(m_library.GetModel(selection, nullptr)).IsValid();
}

// Tool tips and the wheel

bool CNodeBrowser::event(QEvent* in_event)
{
    if (in_event->type() == QEvent::ToolTip)
    {
        ShowToolTip(static_cast<QHelpEvent&>(*in_event));
        return true;
    }
    if (in_event->type() == QEvent::Wheel && ScrollByWheel(static_cast<const QWheelEvent&>(*in_event)))
    {
        in_event->accept();
        return true;
    }
    return QWidget::event(in_event);
}

void CNodeBrowser::ShowToolTip(QHelpEvent& in_event)
{
    const BrowserItem* const item = FindRow(GetItemIndexAt(in_event.pos()));
    // Only compounds have source-control news worth a tool tip, and the browser adds nothing of its own.
    if (!item || item->GetItemID().GetType() != VireoType::gCompound)
    {
        QToolTip::hideText();
        in_event.ignore();
        return;
    }
    nexa4::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!helper)
        return;
    const nexa4::NEXAHandle<nexa4::IDbObject> object = FindDbObject(*helper, item->GetItemID());
    if (object.IsValid())
        QToolTip::showText(in_event.globalPos(), ScsUtils::GetToolTip(object, QString::fromLatin1(":compound.png")));
}

/// Moves the list by three rows, whatever device turned how far. False when the pointer is not over the list.
bool CNodeBrowser::ScrollByWheel(const QWheelEvent& in_event)
{
    if (!GetRowLayout().IsInList(qtcompat::EventPosition(in_event)))
        return false;
    if (!qtcompat::IsWheelTurn(in_event))
        return true;
    const int step = qtcompat::WheelDelta(in_event) > 0 ? -gWheelStep : gWheelStep;
    m_scrollBar->setValue(m_scrollOffset + step);
    return true;
}

// Commands

void CNodeBrowser::CreateMenuCommand(eMenuCommand in_command, QMenu* in_menu)
{
    switch (in_command)
    {
    case eNewSignature:
        AddAction(*in_menu, QString::fromLatin1("Compound signature"), SLOT(OnNewSignature()));
        break;
    case eNewCompound:
        AddAction(*in_menu, QString::fromLatin1("Public compound"), SLOT(OnNewCompound()));
        break;
    case eNewLoopCompound:
        AddAction(*in_menu, QString::fromLatin1("Public looping compound"), SLOT(OnNewLoopCompound()));
        break;
    case eSaveGraphLibrary:
        AddAction(*in_menu, QString::fromLatin1("Save graph library"), SLOT(OnSaveGraphLibrary()));
        break;
    }
}

QAction* CNodeBrowser::AddAction(QMenu& out_menu, const QString& in_text, const char* in_slot)
{
    QAction* const action = new QAction(in_text, &out_menu);
    connect(action, SIGNAL(triggered()), this, in_slot);
    out_menu.addAction(action);
    return action;
}

void CNodeBrowser::PopContexMenu(const QPoint& in_position, std::size_t in_row)
{
    m_selectedRow = in_row;
    const BrowserItem* const item = FindRow(in_row);
    if (!item)
        return;
    QMenu menu;
    FillContextMenu(menu, item->GetItemID());
    menu.exec(in_position);
}

void CNodeBrowser::FillContextMenu(QMenu& out_menu, const ItemID& in_item)
{
    const QString name = FromLatin1(m_library.GetItemName(in_item, true, nullptr));
    const auto named = [&name](const QString& in_text) { return in_text.arg(name, 0, QLatin1Char(' ')); };
    bool canEdit = !m_library.ItemIsReadOnly(in_item);
    nexa4::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    const NEXAHandle<IDbObject> object = helper ? FindDbObject(*helper, in_item) : NEXAHandle<IDbObject>();
    if (object.IsValid())
        AddAction(out_menu, named(tr("Show Files for %1")), SLOT(OnShowItemFiles()));
    const char* const type = in_item.GetType();
    if (type == VireoType::gCompound)
    {
        const CompoundAccessor compound = View<CompoundAccessor>(m_library.GetModel(in_item, nullptr));
        CompoundModifierAccessor modifier = View<CompoundModifierAccessor>(compound);
        modifier.Initialize();
        canEdit = modifier.CanModifyCompound(true);
        AddAction(out_menu, named(tr("Rename %1")), SLOT(OnRenameItem()))->setEnabled(canEdit);
        // Shown greyed out on purpose: deleting is not offered here.
        AddAction(out_menu, named(tr("Delete %1")), SLOT(OnDeleteItem()))->setEnabled(false);
        if (object.IsValid())
            FillDataSourceMenu(*out_menu.addMenu(tr("Compound source")), object);
    }
    if (type == VireoType::gCompound || type == VireoType::gSolver || type == VireoType::gGlobalConstant)
        AddAction(out_menu, named(tr("Edit Tags for %1")), SLOT(OnEditItemTags()))->setEnabled(canEdit);
}

void CNodeBrowser::FillDataSourceMenu(QMenu& out_menu, const NEXAHandle<IDbObject>& in_compound)
{
    const QString compound = FromLatin1(in_compound.GetDbObjectId().GetStr());
    const std::vector<DataSourceEntry> entries = ListDataSources(in_compound);
    for (const DataSourceEntry& entry : entries)
    {
        QAction* const action = AddAction(out_menu, entry.m_label, SLOT(OnDatasourceChange()));
        action->setEnabled(entry.m_enabled);
        action->setToolTip(entry.m_toolTip);
        action->setData(QVariant(QStringList() << compound << FromLatin1(entry.m_resource)));
    }
}

// While a dialog is open the host may do anything. A command keeps to the library and the item that its dialog was opened
// for, writes with the command manager of the moment, and writes nothing any more without its browser.

void CNodeBrowser::OnNewSignature()
{
    CreateCompound("signature", true);
}

void CNodeBrowser::OnNewCompound()
{
    CreateCompound("compound", false);
}

void CNodeBrowser::CreateCompound(const char* in_kindWord, bool in_signature)
{
    const QPointer<CNodeBrowser> alive(this);
    const ItemLibraryAccessor library = m_library;
    CVireoCompoundCreateDialog dialog(library, in_kindWord, in_kindWord, !in_signature);
    dialog.exec();
    if (!alive || dialog.GetCompoundName().isEmpty())
        return;
    const QByteArray category = dialog.GetCategory().toLatin1();
    const QByteArray baseClass = dialog.GetBaseClass().toLatin1();
    const QByteArray name = dialog.GetCompoundName().toLatin1();
    CompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewCompound(library, name.constData(), in_signature,
                                         in_signature ? nullptr : baseClass.constData(), category.constData(),
                                         m_commandManager);
    if (modifier.IsValid())
        Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(modifier), CompoundAccessor());
}

void CNodeBrowser::OnNewLoopCompound()
{
    const QPointer<CNodeBrowser> alive(this);
    const ItemLibraryAccessor library = m_library;
    CVireoCompoundCreateDialog dialog(library, "loop compound", "loopcompound", true);
    dialog.exec();
    if (!alive || dialog.GetCompoundName().isEmpty())
        return;
    const QByteArray category = dialog.GetCategory().toLatin1();
    const QByteArray baseClass = dialog.GetBaseClass().toLatin1();
    const QByteArray name = dialog.GetCompoundName().toLatin1();
    LoopCompoundModifierAccessor modifier;
    modifier.CreateAndSetFromNewLoopCompound(library, name.constData(), baseClass.constData(), category.constData(),
                                             m_commandManager);
    if (modifier.IsValid())
        Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(LoopCompoundAccessor(modifier)), CompoundAccessor());
}

void CNodeBrowser::OnSaveGraphLibrary()
{
    const ItemLibraryAccessor library = m_library;
    View<LowLevelItemLibraryAccessor>(library).PreCommit();
    bool written = false;
    std::list<std::string> messages;
    // Saving is silent either way, on purpose.
    View<ItemLibraryModifierAccessor>(library).CommitToDisk(written, &messages, false, nexa4::UID_Null());
}

void CNodeBrowser::OnRenameItem()
{
    const BrowserItem* const item = FindRow(m_selectedRow);
    if (!item)
        return;
    const ItemID id = item->GetItemID();
    const QPointer<CNodeBrowser> alive(this);
    CompoundAccessor compound = View<CompoundAccessor>(m_library.GetModel(id, nullptr));
    const QString oldName = FromLatin1(m_library.GetItemName(id, true, nullptr));
    CRenameCompoundDialog dialog(m_library, compound);
    dialog.SetName(oldName);
    if (!dialog.exec() || !alive || dialog.GetName() == oldName)
        return;
    CompoundModifierAccessor modifier = View<CompoundModifierAccessor>(compound);
    modifier.Initialize();
    modifier.RenameCompound(dialog.GetName().toLatin1().constData(), m_commandManager);
}

/// Does nothing on purpose: the menu shows the entry greyed out, and the entry needs a target.
void CNodeBrowser::OnDeleteItem() {}

void CNodeBrowser::OnEditItemTags()
{
    const BrowserItem* const item = FindRow(m_selectedRow);
    if (!item)
        return;
    const ItemID id = item->GetItemID();
    const QPointer<CNodeBrowser> alive(this);
    const ItemLibraryAccessor library = m_library;
    const std::string name = library.GetItemName(id, true, nullptr);
    const std::string oldTags = library.GetItemTags(id, gApplicationTagsKey);
    CItemTagsEditorDialog dialog(name.c_str(), oldTags.c_str());
    if (!dialog.exec() || !alive || dialog.GetItemTags() == oldTags)
        return;
    View<ItemLibraryModifierAccessor>(library).SetItemTags(id, gApplicationTagsKey, dialog.GetItemTags().c_str(),
                                                           m_commandManager);
}

/// The database object of the selected row, for the commands that need one: false when there is no such row, service or
/// object.
bool CNodeBrowser::FindSelectedObject(nexa4::IRevisionControlUIHelper*& out_helper,
                                      NEXAHandle<IDbObject>& out_object) const
{
    const BrowserItem* const item = FindRow(m_selectedRow);
    out_helper = item ? FindRevisionControlHelper() : nullptr;
    if (!out_helper)
        return false;
    out_object = FindDbObject(*out_helper, item->GetItemID());
    return out_object.IsValid();
}

void CNodeBrowser::OnCheckOutItem()
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    NEXAHandle<IDbObject> object;
    bool checkedOut = false;
    if (FindSelectedObject(helper, object))
        helper->CheckOut(object, &checkedOut, true);
}

void CNodeBrowser::OnMakeItemWritable()
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    NEXAHandle<IDbObject> object;
    if (FindSelectedObject(helper, object))
        helper->MakeWritable(object, true);
}

void CNodeBrowser::OnShowItemFiles()
{
    nexa4::IRevisionControlUIHelper* helper = nullptr;
    NEXAHandle<IDbObject> object;
    if (FindSelectedObject(helper, object))
        helper->ShowFiles(object, nullptr);
}

void CNodeBrowser::OnDatasourceChange()
{
    const QAction* const action = qobject_cast<QAction*>(sender());
    nexa4::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!action || !helper)
        return;
    const QStringList identities = action->data().toStringList();
    const nexa4::DbObjectId compound(identities.at(0).toUtf8().constData());
    const nexa4::DbObjectId resource(identities.at(1).toUtf8().constData());
    MoveToDataSource(helper->FindObject(compound), resource);
}
