// SPDX-License-Identifier: MIT
/// Draws the rows of the list.
#pragma once

#include "nodebrowser/rowlayout.h"
#include "nodebrowser/rowtexts.h"

#include <QBrush>
#include <QPixmap>
#include <QString>

class QPainter;

namespace nodebrowser
{

/// What a row shows.
struct RowContent
{
    QString m_name;
    QPixmap m_icon;        ///< null for a row that shows only its name
    bool m_marked = false; ///< the icon starts further left, because a mark may be at its left
    bool m_dirty = false;  ///< there are unsaved changes
};

/// Keeps the shaped names of the last frames: shaping is most of the work of drawing a row.
class RowPainter
{
public:
    /// Call it before the first row of each frame.
    /// \param in_layout the geometry in this frame
    void BeginFrame(const QPainter& in_painter, const RowLayout& in_layout);

    /// \param in_band fills the row behind its icon and its name; Qt::NoBrush for none
    void Draw(QPainter& io_painter, std::size_t in_row, const RowContent& in_content, const QBrush& in_band);

private:
    RowLayout m_layout;
    RowTexts m_texts;
};

} // namespace nodebrowser
