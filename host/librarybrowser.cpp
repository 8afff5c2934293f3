// SPDX-License-Identifier: MIT
#include "host/librarybrowser.h"

#include "datamodel/sourcecontrol.h"
#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "nodebrowser/rowlayout.h"
#include "qtcompat/latin1.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTabBar>
#include <QToolTip>

#include <algorithm>
#include <utility>

using nodebrowser::gRowHeight;
using qtcompat::FromLatin1;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;
using vireo::datamodel::VireoType;

namespace host
{

namespace
{

/// Of the first row in a list that is not scrolled. The line of pixels there is not a part of it.
const int gTop = nodebrowser::gListTop + nodebrowser::gTabBarRoom;

} // namespace

LibraryBrowser::LibraryBrowser() : CNodeBrowser(eConfigNodeBrowser)
{
    m_afterFrame.setSingleShot(true);
    connect(&m_afterFrame, &QTimer::timeout, this, &LibraryBrowser::Painted);
    connect(&GetSearchField(), &QLineEdit::textChanged, this, &LibraryBrowser::ClearSelection);
    connect(findChild<QTabBar*>(), &QTabBar::currentChanged, this, &LibraryBrowser::ClearSelection);
}

void LibraryBrowser::paintEvent(QPaintEvent* in_event)
{
    CNodeBrowser::paintEvent(in_event);
    m_afterFrame.start(0);
}

QLineEdit& LibraryBrowser::GetSearchField() const
{
    return *findChild<QLineEdit*>();
}

void LibraryBrowser::SelectTab(int in_tab)
{
    findChild<QTabBar*>()->setCurrentIndex(in_tab);
}

void LibraryBrowser::Search(const QString& in_text)
{
    GetSearchField().setText(in_text);
}

void LibraryBrowser::SetToolTips(std::function<QString(const ItemID&)> in_getText)
{
    m_getToolTip = std::move(in_getText);
}

std::vector<Row> LibraryBrowser::GetRows(const memorymodel::Library& in_library) const
{
    std::vector<Row> rows(GetRowCount());
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        ItemAccessor accessor = GetRowItem(i);
        const ItemID item = accessor.GetItemID();
        rows[i].m_kind = QLatin1String(GetItemLabel(in_library, item).m_word);
        rows[i].m_name = GetItemName(in_library, item);
        for (const std::string& tag : GetSearchTags(item))
            rows[i].m_tags << FromLatin1(tag);
        CompareToFilter(accessor, &rows[i].m_score);
    }
    return rows;
}

void LibraryBrowser::BringUpToDate()
{
    repaint();
}

void LibraryBrowser::MoveSelection(int in_rows)
{
    BringUpToDate();
    const int count = static_cast<int>(GetRowCount());
    if (count == 0)
        return;
    const int selected = static_cast<int>(FindSelectedRow());
    const int wanted = selected < count ? std::max(0, std::min(selected + in_rows, count - 1)) : 0;
    const std::size_t row = static_cast<std::size_t>(wanted);
    BringIntoSight(row);
    SendPress(QPoint(width() / 2, GetTop(wanted) + gRowHeight / 2));
}

int LibraryBrowser::GetPageSize() const
{
    return std::max(1, GetListHeight() / gRowHeight);
}

void LibraryBrowser::ShowSelection()
{
    const std::size_t row = FindSelectedRow();
    if (row < GetRowCount())
        BringIntoSight(row);
    update();
}

void LibraryBrowser::ClearSelection()
{
    SendPress(QPoint(0, 0)); // above the list
}

bool LibraryBrowser::event(QEvent* in_event)
{
    if (in_event->type() == QEvent::ToolTip && ShowToolTip(static_cast<const QHelpEvent&>(*in_event)))
        return true;
    return CNodeBrowser::event(in_event);
}

/// \return false when that is for source control to do
bool LibraryBrowser::ShowToolTip(const QHelpEvent& in_event)
{
    const int below = in_event.pos().y() - GetTop(0);
    const bool isOnRow = in_event.pos().y() > gTop && below >= 0;
    const ItemID item = isOnRow ? GetRowItem(static_cast<std::size_t>(below / gRowHeight)).GetItemID() : ItemID();
    const bool isControlled = item.GetType() == VireoType::gCompound && ScsUtils::IsFileVersionControlActive();
    const QString text = item.IsValid() && !isControlled && m_getToolTip ? m_getToolTip(item) : QString();
    if (!text.isEmpty())
        QToolTip::showText(in_event.globalPos(), text, this);
    return !text.isEmpty();
}

void LibraryBrowser::PopContexMenu(const QPoint& in_position, std::size_t in_row)
{
    repaint();
    CNodeBrowser::PopContexMenu(in_position, in_row);
}

void LibraryBrowser::mousePressEvent(QMouseEvent* in_event)
{
    const QPointer<LibraryBrowser> alive(this); // a menu may be open for long
    CNodeBrowser::mousePressEvent(in_event);
    if (alive)
        update();
}

QScrollBar& LibraryBrowser::GetScrollBar() const
{
    return *findChild<QScrollBar*>();
}

int LibraryBrowser::GetListHeight() const
{
    return height() - gTop;
}

int LibraryBrowser::GetTop(int in_row) const
{
    return gTop - GetScrollBar().value() + in_row * gRowHeight;
}

std::size_t LibraryBrowser::FindSelectedRow()
{
    const std::size_t count = GetRowCount();
    const ItemID selected = GetSelection();
    std::size_t row = 0;
    while (row < count && !(selected.IsValid() && GetRowItem(row).GetItemID() == selected))
        ++row;
    return row;
}

void LibraryBrowser::BringIntoSight(std::size_t in_row)
{
    const int above = gTop - GetTop(static_cast<int>(in_row));
    const int below = -above + gRowHeight - GetListHeight();
    QScrollBar& bar = GetScrollBar();
    bar.setValue(bar.value() + (above > 0 ? -above : std::max(below, 0)));
}

void LibraryBrowser::SendPress(const QPoint& in_position)
{
    QMouseEvent press(QEvent::MouseButtonPress, in_position, mapToGlobal(in_position), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(this, &press);
}

} // namespace host
