// SPDX-License-Identifier: MIT
#include "host/graphbox.h"

#include "qtcompat/qtcompat.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace host
{

namespace
{

const int gBoxHeight = 36;
const int gPadding = 10;
const int gIconSide = 20;
const int gTextLeft = gPadding + gIconSide + 8;
const int gLongestText = 260;
const double gRounding = 5.0;
const double gMissingOpacity = 0.45;

} // namespace

GraphBox::GraphBox(const vireo::datamodel::ItemID& in_item, const vireo::datamodel::ItemID& in_graph,
                   const QIcon& in_icon, QWidget* in_canvas)
    : QWidget(in_canvas), m_item(in_item), m_graph(in_graph), m_icon(in_icon)
{
    setFocusPolicy(Qt::StrongFocus);
}

void GraphBox::SetName(const QString& in_name)
{
    m_name = in_name;
    m_drawnName = fontMetrics().elidedText(in_name, Qt::ElideRight, gLongestText);
    UpdateToolTip();
    resize(gTextLeft + fontMetrics().horizontalAdvance(m_drawnName) + gPadding, gBoxHeight);
    update();
}

void GraphBox::SetMissing(bool in_missing)
{
    m_missing = in_missing;
    UpdateToolTip();
    update();
}

void GraphBox::UpdateToolTip()
{
    setToolTip(m_missing ? tr("%1 is not in the library any more").arg(m_name) : m_name);
}

void GraphBox::MoveCentreTo(const QPoint& in_point)
{
    MoveInside(in_point - rect().center());
}

void GraphBox::MoveInside(const QPoint& in_topLeft)
{
    const QSize room = parentWidget()->size() - size();
    move(std::max(0, std::min(in_topLeft.x(), room.width())), std::max(0, std::min(in_topLeft.y(), room.height())));
}

void GraphBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Dark), hasFocus() ? 2.0 : 1.0,
                        m_missing ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(palette().color(m_missing ? QPalette::Base : QPalette::Button));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0), gRounding, gRounding);

    painter.setOpacity(m_missing ? gMissingOpacity : 1.0);
    m_icon.paint(&painter, gPadding, (height() - gIconSide) / 2, gIconSide, gIconSide);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(rect().adjusted(gTextLeft, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, m_drawnName);
}

void GraphBox::mousePressEvent(QMouseEvent* in_event)
{
    m_grip = qtcompat::EventPosition(*in_event);
    raise();
}

void GraphBox::mouseMoveEvent(QMouseEvent* in_event)
{
    if (in_event->buttons() & Qt::LeftButton)
        MoveInside(mapToParent(qtcompat::EventPosition(*in_event)) - m_grip);
}

void GraphBox::keyPressEvent(QKeyEvent* in_event)
{
    if (in_event->key() == Qt::Key_Delete || in_event->key() == Qt::Key_Backspace)
        deleteLater();
    else
        QWidget::keyPressEvent(in_event);
}

} // namespace host
