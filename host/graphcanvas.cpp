// SPDX-License-Identifier: MIT
#include "host/graphcanvas.h"

#include "host/graphbox.h"
#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "nodebrowser/dragformat.h"
#include "qtcompat/qtcompat.h"

#include <QChildEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

using vireo::datamodel::ItemID;
using vireo::datamodel::LibType;

namespace host
{

namespace
{

const int gGridStep = 20;
const int gCaptionMargin = 12;

} // namespace

GraphCanvas::GraphCanvas()
{
    setAcceptDrops(true);
}

void GraphCanvas::SetLibrary(const memorymodel::Library* in_library)
{
    qDeleteAll(findChildren<GraphBox*>());
    m_library = in_library;
    SetCompound(ItemID());
}

ItemID GraphCanvas::GetNode(const QMimeData& in_data) const
{
    const QString format = nodebrowser::GetDragFormat();
    if (!m_library || !in_data.hasFormat(format))
        return ItemID();
    const ItemID item = m_library->FindBySerialized(nodebrowser::DecodeDrag(in_data.data(format)));
    return item.GetType() == LibType::gType ? ItemID() : item;
}

void GraphCanvas::dragEnterEvent(QDragEnterEvent* in_event)
{
    if ((in_event->possibleActions() & Qt::CopyAction) && GetNode(*in_event->mimeData()).IsValid())
    {
        in_event->setDropAction(Qt::CopyAction);
        in_event->accept();
    }
}

void GraphCanvas::dropEvent(QDropEvent* in_event)
{
    const ItemID item = GetNode(*in_event->mimeData());
    if (!item.IsValid())
        return;
    const QIcon icon(QLatin1String(GetItemLabel(*m_library, item).m_icon));
    GraphBox* const box = new GraphBox(item, m_compound, icon, this);
    RefreshBox(*box);
    box->MoveCentreTo(qtcompat::EventPosition(*in_event));
    box->show();
    in_event->setDropAction(Qt::CopyAction);
    in_event->accept();
}

void GraphCanvas::RefreshBox(GraphBox& io_box) const
{
    const bool missing = !m_library->GetSourceOf(io_box.GetItem());
    io_box.SetMissing(missing);
    // An item that is gone has no name; its box keeps the last one.
    if (!missing)
        io_box.SetName(GetItemName(*m_library, io_box.GetItem()));
}

void GraphCanvas::SetCompound(const ItemID& in_compound)
{
    m_compound = in_compound;
    for (GraphBox* const box : findChildren<GraphBox*>())
        box->setVisible(box->GetGraph() == m_compound);
    Refresh();
}

void GraphCanvas::Refresh()
{
    for (GraphBox* const box : findChildren<GraphBox*>())
        RefreshBox(*box);
    const QString name = m_library ? GetItemName(*m_library, m_compound) : QString();
    m_caption = name.isEmpty() ? QString() : tr("Editing %1").arg(name);
    update();
}

bool GraphCanvas::IsGraphEmpty() const
{
    for (const GraphBox* const box : findChildren<GraphBox*>())
        if (box->GetGraph() == m_compound)
            return false;
    return true;
}

void GraphCanvas::childEvent(QChildEvent* in_event)
{
    QWidget::childEvent(in_event);
    update(); // the first box takes the hint away, the last one brings it back
}

void GraphCanvas::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Mid));
    for (int y = gGridStep / 2; y < height(); y += gGridStep)
        for (int x = gGridStep / 2; x < width(); x += gGridStep)
            painter.drawPoint(x, y);
    painter.setPen(palette().color(QPalette::Text));
    if (IsGraphEmpty())
        painter.drawText(rect(), Qt::AlignCenter, tr("Drag a node here from the library"));
    const QRect line = rect().adjusted(gCaptionMargin, gCaptionMargin, -gCaptionMargin, 0);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignTop,
                     fontMetrics().elidedText(m_caption, Qt::ElideRight, line.width()));
}

} // namespace host
