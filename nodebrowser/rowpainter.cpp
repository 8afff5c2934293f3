// SPDX-License-Identifier: MIT
#include "nodebrowser/rowpainter.h"

#include "nodebrowser/stateicon.h"

#include <QPainter>

namespace nodebrowser
{
namespace
{

const int gIconLeft = 9;
const int gMarkedIconLeft = gIconLeft - gFactoryMarkWidth;
const int gIconInset = 2;

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
        io_painter.drawPixmap(in_content.m_marked ? gMarkedIconLeft : gIconLeft, m_layout.RowTop(in_row) + gIconInset,
                              in_content.m_icon);
    m_texts.Draw(io_painter, m_layout.NameRect(in_row),
                 in_content.m_dirty ? in_content.m_name + QLatin1Char('*') : in_content.m_name);
}

} // namespace nodebrowser
