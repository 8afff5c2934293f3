// SPDX-License-Identifier: MIT
/// Maps points to rows and rows to places. Pure arithmetic in the widget's pixels; knows no widget.
#pragma once

#include <QPoint>
#include <QRect>

#include <cstddef>

namespace nodebrowser
{

/// No row at all. Deliberately this 32-bit value on every platform; whether an index denotes a row is always asked of
/// the number of rows, never of this value.
const std::size_t gNoRow = 4294967295u;

/// Height of a row, and of the column's only unit.
const int gRowHeight = 24;

/// Size of the clear button, height of the search field, width of the scroll bar.
const int gHeaderHeight = 20;

/// Where the first row starts in an unscrolled list: below the search field, and below the tab bar if there is one.
const int gListTop = 23;
const int gTabBarRoom = 20;

/// Rows from m_first up to, not including, m_end.
struct RowRange
{
    std::size_t m_first;
    std::size_t m_end;
};

/// The geometry of the list at one moment. Every function is constant time whatever the number of rows.
struct RowLayout
{
    int m_width = 0;        ///< of the widget
    int m_height = 0;       ///< of the widget
    int m_listTop = 0;      ///< where the first row starts when nothing is scrolled
    int m_scrollOffset = 0; ///< pixels that the rows are moved up by

    /// The row under a point, or gNoRow. The line at exactly the list top still belongs to the header, which makes the
    /// first row one pixel shorter for the mouse than for the eye. The result may lie past the last row: it is not
    /// compared with the number of rows here.
    std::size_t RowAt(const QPoint& in_point) const;

    /// The upper edge of a row.
    int RowTop(std::size_t in_row) const;

    /// The selection band: one pixel wider and taller than the row, on purpose.
    QRect BandRect(std::size_t in_row) const;

    /// Where the row's name is drawn: up to the band's right edge, whether or not a scroll bar covers it.
    QRect NameRect(std::size_t in_row) const;

    /// The part of the widget that rows are drawn in.
    QRect ListRect() const;

    /// Whether a point lies in that part, its edges and the list top included.
    bool IsInList(const QPoint& in_point) const;

    /// The rows of which at least one pixel line lies in the list, out of this many.
    RowRange VisibleRows(std::size_t in_rowCount) const;
};

} // namespace nodebrowser
