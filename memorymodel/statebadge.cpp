// SPDX-License-Identifier: MIT
#include "memorymodel/statebadge.h"

#include "datamodel/notifications.h"
#include "memorymodel/sourcecontrol.h"
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

const qreal gBadgeSide = 8;
const qreal gMarkWidth = 7;
const std::size_t gSharedPixmaps = 512;

/// A corner of a badge, in eighths of its side.
struct Corner
{
    int m_x;
    int m_y;
};

/// One badge: a colour and a shape.
struct Badge
{
    unsigned m_state;
    const char* m_text;
    QRgb m_colour;
    int m_count;
    Corner m_corners[12];
};

const Badge gBadges[] = {
    {eCheckedIn, "Checked in", qRgb(120, 130, 145), 4, {{1, 1}, {7, 1}, {7, 7}, {1, 7}}},
    {eCheckedOut, "Checked out", qRgb(210, 45, 45), 6, {{0, 4}, {2, 3}, {3, 5}, {7, 0}, {8, 2}, {3, 8}}},
    {eCheckedOutByOther,
     "Checked out by someone else",
     qRgb(150, 60, 170),
     12,
     {{0, 2}, {2, 0}, {4, 2}, {6, 0}, {8, 2}, {6, 4}, {8, 6}, {6, 8}, {4, 6}, {2, 8}, {0, 6}, {2, 4}}},
    {eOutOfDate, "Out of date", qRgb(235, 160, 20), 3, {{4, 0}, {8, 8}, {0, 8}}},
    {eWritable, "Writable without a check-out", qRgb(45, 110, 220), 4, {{4, 0}, {8, 4}, {4, 8}, {0, 4}}},
    {eAdded,
     "New, not checked in yet",
     qRgb(40, 160, 70),
     12,
     {{3, 0}, {5, 0}, {5, 3}, {8, 3}, {8, 5}, {5, 5}, {5, 8}, {3, 8}, {3, 5}, {0, 5}, {0, 3}, {3, 3}}},
};

const Badge* FindBadge(unsigned in_state)
{
    const Badge* const found = std::find_if(std::begin(gBadges), std::end(gBadges),
                                            [in_state](const Badge& in_badge) { return in_badge.m_state == in_state; });
    return found == std::end(gBadges) ? nullptr : found;
}

/// A badge painted on a copy, which keeps everything that the icon's pixmap knows of itself.
QPixmap Compose(const QPixmap& in_base, const Badge& in_badge, bool in_ownSpace)
{
    const qreal ratio = qtcompat::PixelRatio(in_base);
    const qreal width = in_base.width() / ratio;
    const qreal height = in_base.height() / ratio;
    const qreal side = std::min(gBadgeSide, std::min(in_ownSpace ? width : width - gMarkWidth, height));
    if (side <= 0)
        return in_base;

    QPolygonF shape;
    for (int i = 0; i < in_badge.m_count; ++i)
        shape.append(QPointF(width - side + in_badge.m_corners[i].m_x * side / 8,
                             height - side + in_badge.m_corners[i].m_y * side / 8));
    QPixmap icon = in_base;
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(in_badge.m_colour));
    painter.drawPolygon(shape);
    return icon;
}

} // namespace

QPixmap StateBadges::Decorate(const QPixmap& in_base, unsigned in_state, bool in_ownSpace)
{
    const Badge* const badge = FindBadge(in_state);
    if (!badge || in_base.isNull())
        return in_base;
    const auto key = std::make_tuple(in_base.cacheKey(), in_state, in_ownSpace);
    const auto found = m_shared.find(key);
    if (found != m_shared.end())
        return found->second;
    if (m_shared.size() >= gSharedPixmaps)
        m_shared.clear();
    const QPixmap icon = Compose(in_base, *badge, in_ownSpace);
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
