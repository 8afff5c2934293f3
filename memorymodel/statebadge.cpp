// SPDX-License-Identifier: MIT
#include "memorymodel/statebadge.h"

#include "datamodel/notifications.h"
#include "memorymodel/accessstate.h"
#include "qtcompat/qtcompat.h"

#include <QPainter>
#include <QPointF>
#include <QPolygonF>

#include <algorithm>
#include <cstddef>

namespace memorymodel
{
namespace
{

/// The column left of an icon where the factory mark or a badge stands. A badge is as wide, and as high.
const qreal gColumnWidth = 7;
const std::size_t gSharedPixmaps = 512;

/// The side of a badge in the units of its corners. One unit is half a pixel when the ratio is 1.
const int gUnits = 14;

/// A corner of a badge, in fourteenths of its side.
struct Corner
{
    int m_x;
    int m_y;
};

/// One badge: a colour and a shape. The colours are bright enough for dark palettes and dark enough for light ones.
struct Badge
{
    unsigned m_state;
    const char* m_text;
    QRgb m_colour;
    int m_count;
    Corner m_corners[12];
};

const Badge gBadges[] = {
    {eCheckedIn, "Checked in", qRgb(120, 130, 145), 4, {{2, 2}, {12, 2}, {12, 12}, {2, 12}}},
    {eCheckedOut, "Checked out", qRgb(235, 70, 70), 6, {{0, 8}, {3, 5}, {6, 8}, {11, 0}, {14, 3}, {6, 14}}},
    {eCheckedOutByOther,
     "Checked out by someone else",
     qRgb(183, 101, 208),
     12,
     {{0, 3}, {3, 0}, {7, 4}, {11, 0}, {14, 3}, {10, 7}, {14, 11}, {11, 14}, {7, 10}, {3, 14}, {0, 11}, {4, 7}}},
    {eOutOfDate, "Out of date", qRgb(189, 122, 16), 3, {{7, 0}, {14, 14}, {0, 14}}},
    {eWritable, "Writable without a check-out", qRgb(110, 114, 242), 4, {{7, 0}, {14, 7}, {7, 14}, {0, 7}}},
    {eAdded,
     "New, not checked in yet",
     qRgb(43, 147, 72),
     12,
     {{4, 0}, {10, 0}, {10, 4}, {14, 4}, {14, 10}, {10, 10}, {10, 14}, {4, 14}, {4, 10}, {0, 10}, {0, 4}, {4, 4}}},
    {eStaged, "Staged", qRgb(43, 147, 72), 6, {{0, 8}, {3, 5}, {6, 8}, {11, 0}, {14, 3}, {6, 14}}},
    {eReadOnlyFile,
     "Read-only file",
     qRgb(120, 130, 145),
     8,
     {{2, 6}, {4, 6}, {4, 0}, {10, 0}, {10, 6}, {12, 6}, {12, 14}, {2, 14}}},
    {eIgnored, "Ignored", qRgb(120, 130, 145), 4, {{0, 10}, {10, 0}, {14, 4}, {4, 14}}},
    {eConflicted,
     "In conflict",
     qRgb(235, 70, 70),
     8,
     {{4, 0}, {10, 0}, {14, 4}, {14, 10}, {10, 14}, {4, 14}, {0, 10}, {0, 4}}},
};

const Badge* FindBadge(unsigned in_state)
{
    const Badge* const found = std::find_if(std::begin(gBadges), std::end(gBadges),
                                            [in_state](const Badge& in_badge) { return in_badge.m_state == in_state; });
    return found == std::end(gBadges) ? nullptr : found;
}

/// How many pixels a corner lies from the badge's side. Even corners end straight edges and are rounded, since an edge
/// is sharp only between two pixels. Odd corners are tips.
qreal ToPixels(int in_corner, qreal in_side)
{
    const qreal exact = in_corner * in_side / gUnits;
    return in_corner % 2 ? exact : qRound(exact);
}

/// Paints a badge onto the lower edge of a picture whose ratio is 1.
void PaintBadge(QPixmap& io_picture, const Badge& in_badge, qreal in_left, qreal in_side)
{
    QPolygonF shape;
    for (int i = 0; i < in_badge.m_count; ++i)
        shape.append(QPointF(in_left + ToPixels(in_badge.m_corners[i].m_x, in_side),
                             io_picture.height() - in_side + ToPixels(in_badge.m_corners[i].m_y, in_side)));
    QPainter painter(&io_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(in_badge.m_colour));
    painter.drawPolygon(shape);
}

/// An icon with a free column at its left.
QPixmap AddColumn(const QPixmap& in_icon, int in_width)
{
    QPixmap widened(in_icon.width() + in_width, in_icon.height());
    widened.fill(Qt::transparent);
    QPainter painter(&widened);
    painter.drawPixmap(in_width, 0, in_icon);
    return widened;
}

/// An icon as it is shown with a state.
/// \param in_badge null for a state without a badge
QPixmap Compose(const QPixmap& in_base, const Badge* in_badge, bool in_ownSpace)
{
    // Everything is painted in device pixels: at a ratio of 1.5, others would end inside of one.
    const qreal ratio = qtcompat::PixelRatio(in_base);
    const int column = qRound(gColumnWidth * ratio);
    QPixmap icon = in_base;
    qtcompat::SetPixelRatio(icon, 1);
    if (in_ownSpace)
        icon = AddColumn(icon, column);
    const int space = in_ownSpace ? column : icon.width() - column;
    const int side = std::min(static_cast<int>(gColumnWidth * ratio), std::min(space, icon.height()));
    if (in_badge && side > 0)
        PaintBadge(icon, *in_badge, in_ownSpace ? 0 : icon.width() - side, side);
    qtcompat::SetPixelRatio(icon, ratio);
    return icon;
}

} // namespace

QPixmap StateBadges::Decorate(const QPixmap& in_base, unsigned in_state, bool in_ownSpace)
{
    const Badge* const badge = FindBadge(in_state);
    const bool isMarked = badge || (in_ownSpace && in_state != vireo::datamodel::eAccessStateUnknown);
    if (in_base.isNull() || !isMarked)
        return in_base;
    const auto key = std::make_tuple(in_base.cacheKey(), in_state, in_ownSpace);
    const auto found = m_shared.find(key);
    if (found != m_shared.end())
        return found->second;
    if (m_shared.size() >= gSharedPixmaps)
        m_shared.clear();
    const QPixmap icon = Compose(in_base, badge, in_ownSpace);
    m_shared[key] = icon;
    return icon;
}

const char* GetStateText(unsigned in_state)
{
    if (const Badge* const badge = FindBadge(in_state))
        return badge->m_text;
    return in_state == vireo::datamodel::eAccessStateRequested ? "State requested" : "Unknown state";
}

} // namespace memorymodel
