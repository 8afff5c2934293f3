// SPDX-License-Identifier: MIT
#include "nodebrowser/rowpainter.h"

#include "nodebrowser/stateicon.h"
#include "qtcompat/qtcompat.h"

#include <QPainter>
#include <QPointF>

namespace nodebrowser
{
namespace
{

const int gIconLeft = 9;
const int gIconInset = 2;

/// Where the icon begins. The column of a mark is a whole number of device pixels wide, so that all icons behind it
/// stand on one line with those without a mark.
double IconLeft(const RowContent& in_content)
{
    if (!in_content.m_marked)
        return gIconLeft;
    const double ratio = qtcompat::PixelRatio(in_content.m_icon);
    return gIconLeft - qRound(gFactoryMarkWidth * ratio) / ratio;
}

} // namespace

void RowPainter::BeginFrame(const QPainter& in_painter, const RowLayout& in_layout)
{
    m_layout = in_layout;
    m_texts.BeginFrame(in_painter);
}

void RowPainter::Draw(QPainter& io_painter, std::size_t in_row, const RowContent& in_content, const QBrush& in_band)
{
    if (in_band.style() != Qt::NoBrush)
        io_painter.fillRect(m_layout.BandRect(in_row), in_band);
    if (!in_content.m_icon.isNull())
        io_painter.drawPixmap(QPointF(IconLeft(in_content), m_layout.RowTop(in_row) + gIconInset), in_content.m_icon);
    m_texts.Draw(io_painter, m_layout.NameRect(in_row),
                 in_content.m_dirty ? in_content.m_name + QLatin1Char('*') : in_content.m_name);
}

} // namespace nodebrowser
