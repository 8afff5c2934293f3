// SPDX-License-Identifier: MIT
/// Maps points to rows and rows to rectangles. Pure arithmetic in the widget's pixels; knows no widget.
#pragma once

#include <QPoint>
#include <QRect>

#include <cstddef>

namespace nodebrowser
{

/// No row at all. It is this 32-bit value on every platform on purpose. To learn whether a row exists, compare it with
/// the count of rows, never with this value.
const std::size_t gNoRow = 4294967295u;

/// Row height in pixels.
const int gRowHeight = 24;

/// In pixels: both sides of the clear button, the height of the search field, the width of the scroll bar.
const int gHeaderHeight = 20;

/// The y of the first row in a list that is not scrolled: below the search field. A tab bar adds its room.
const int gListTop = 23;
const int gTabBarRoom = 20;

/// The rows from m_first to the one before m_end.
struct RowRange
{
    std::size_t m_first;
    std::size_t m_end;
};

/// The geometry of the list at one moment. Every function takes constant time, however many rows there are.
struct RowLayout
{
    int m_width = 0;        ///< of the widget
    int m_height = 0;       ///< of the widget
    int m_listTop = 0;      ///< the y of the first row when nothing is scrolled
    int m_scrollOffset = 0; ///< pixels that the rows are moved up by

    /// The row under a point; gNoRow for a point in the header or right of the widget. The pixel line at the list top
    /// belongs to the header, so the first row is one pixel shorter for the mouse than for the eye. The result may be
    /// past the last row: compare it with the count of rows.
    std::size_t RowAt(const QPoint& in_point) const;

    /// The upper edge of a row.
    int RowTop(std::size_t in_row) const;

    /// The selection band: one pixel wider and taller than the row, on purpose.
    QRect BandRect(std::size_t in_row) const;

    /// The rectangle of the row's name. It ends at the band's right edge, even if a scroll bar covers that.
    QRect NameRect(std::size_t in_row) const;

    /// The part of the widget that rows are drawn in.
    QRect ListRect() const;

    /// Whether a point is in ListRect(). The pixel line at the list top counts, unlike in RowAt().
    bool IsInList(const QPoint& in_point) const;

    /// The scroll offset nearest to the present one that has a row in sight.
    int OffsetToShow(std::size_t in_row) const;

    /// The rows that have at least one pixel line in ListRect().
    RowRange VisibleRows(std::size_t in_rowCount) const;
};

} // namespace nodebrowser
