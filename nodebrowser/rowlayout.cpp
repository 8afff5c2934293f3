// SPDX-License-Identifier: MIT
#include "nodebrowser/rowlayout.h"

#include <algorithm>

namespace nodebrowser
{
namespace
{

const int gNameLeft = 35;

} // namespace

std::size_t RowLayout::RowAt(const QPoint& in_point) const
{
    if (in_point.x() >= m_width || in_point.y() <= m_listTop)
        return gNoRow;
    return static_cast<std::size_t>((m_scrollOffset - m_listTop + in_point.y()) / gRowHeight);
}

int RowLayout::RowTop(std::size_t in_row) const
{
    return m_listTop - m_scrollOffset + static_cast<int>(in_row) * gRowHeight;
}

QRect RowLayout::BandRect(std::size_t in_row) const
{
    const int top = RowTop(in_row);
    return QRect(QPoint(0, top), QPoint(m_width, top + gRowHeight));
}

QRect RowLayout::NameRect(std::size_t in_row) const
{
    QRect rect = BandRect(in_row);
    rect.setLeft(gNameLeft);
    return rect;
}

QRect RowLayout::ListRect() const
{
    return QRect(0, m_listTop, m_width, m_height - m_listTop);
}

bool RowLayout::IsInList(const QPoint& in_point) const
{
    return in_point.x() >= 0 && in_point.x() < m_width && in_point.y() >= m_listTop && in_point.y() < m_height;
}

int RowLayout::OffsetToShow(std::size_t in_row) const
{
    const int above = ListRect().top() - RowTop(in_row);
    const int below = RowTop(in_row) + gRowHeight - 1 - ListRect().bottom();
    return m_scrollOffset + (above > 0 ? -above : std::max(below, 0));
}

RowRange RowLayout::VisibleRows(std::size_t in_rowCount) const
{
    const int bottom = m_scrollOffset + m_height - m_listTop;
    const int end = bottom > 0 ? (bottom + gRowHeight - 1) / gRowHeight : 0;
    RowRange rows;
    rows.m_end = std::min(in_rowCount, static_cast<std::size_t>(end));
    rows.m_first = std::min(rows.m_end, static_cast<std::size_t>(m_scrollOffset / gRowHeight));
    return rows;
}

} // namespace nodebrowser
