// SPDX-License-Identifier: MIT
#include "host/graphcanvas.h"

#include "host/graphbox.h"
#include "memorymodel/library.h"
#include "nodebrowser/dragformat.h"
#include "qtcompat/qtcompat.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

using vireo::datamodel::ItemID;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace host
{

namespace
{

const int gGridStep = 20;
const double gSmallestGridScale = 0.5;
const double gSmallestScale = 0.1;
const double gLargestScale = 4.0;
const double gZoomStep = 1.25;
const double gFitMargin = 24.0;
const double gEdge = 8.0;       // between a box and the end of what can be scrolled to
const double gCascade = 24.0;   // from one placed node to the next
const int gWheelTurn = 120;     // what a wheel reports for one notch
const double gWheelPixels = 60; // what one notch moves the view by

} // namespace

GraphCanvas::GraphCanvas(QUndoStack& in_stack) : m_stack(in_stack)
{
    setScene(&m_scene);
    setFrameShape(QFrame::NoFrame);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setDragMode(QGraphicsView::RubberBandDrag);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Graph"));
    connect(&m_scene, &QGraphicsScene::selectionChanged, this, &GraphCanvas::OnSelectionChanged);
}

GraphCanvas::~GraphCanvas()
{
    m_scene.disconnect(this);
}

void GraphCanvas::SetLibrary(const memorymodel::Library* in_library)
{
    m_library = in_library;
    m_compound = ItemID();
    m_sights.clear();
    m_graph = std::make_unique<Graph>(m_stack);
    connect(m_graph.get(), &Graph::Changed, this, &GraphCanvas::OnGraphChanged);
    ShowGraph();
}

void GraphCanvas::SetCompound(const ItemID& in_compound)
{
    if (in_compound == m_compound)
        return;
    m_sights[m_compound] = GetSight();
    m_compound = in_compound;
    ShowGraph();
}

void GraphCanvas::ShowGraph()
{
    m_boxes.clear();
    m_scene.clear();
    for (const auto& [number, node] : m_graph->GetNodes())
        ShowNode(number, node);
    SetSight(m_sights[m_compound]);
    viewport()->update();
}

void GraphCanvas::ShowNode(int in_number, const GraphNode& in_node)
{
    if (in_node.m_compound != m_compound)
        return;
    GraphBox*& box = m_boxes[in_number];
    if (!box)
    {
        box = new GraphBox(in_number, in_node.m_item, font());
        m_scene.addItem(box);
        box->Show(GetItemHelp(*m_library, in_node.m_item));
    }
    box->setPos(in_node.m_position);
}

void GraphCanvas::OnGraphChanged(const GraphChange& in_change)
{
    for (const auto& [number, node] : in_change)
    {
        if (node)
            ShowNode(number, *node);
        else if (const auto known = m_boxes.find(number); known != m_boxes.end())
        {
            // A selected box tells of its end while it ends. Nobody is to find it by then.
            const std::unique_ptr<GraphBox> box(known->second);
            m_boxes.erase(known);
        }
    }
    SetSight(GetSight());
    viewport()->update();
}

void GraphCanvas::Refresh()
{
    std::map<ItemID, ItemHelp> helps; // each item is looked up once, however many boxes it has
    for (GraphBox* const box : GetBoxes())
    {
        const auto [help, isNew] = helps.try_emplace(box->GetItem());
        if (isNew)
            help->second = GetItemHelp(*m_library, box->GetItem());
        box->Show(help->second);
    }
    SetSight(GetSight());
}

QList<GraphBox*> GraphCanvas::GetBoxes() const
{
    QList<GraphBox*> boxes;
    for (const auto& [number, box] : m_boxes)
        boxes << box;
    return boxes;
}

QList<GraphBox*> GraphCanvas::GetSelectedBoxes() const
{
    QList<GraphBox*> boxes = GetBoxes();
    boxes.erase(
        std::remove_if(boxes.begin(), boxes.end(), [](const GraphBox* in_box) { return !in_box->isSelected(); }),
        boxes.end());
    return boxes;
}

QString GraphCanvas::NameOf(const QList<GraphBox*>& in_boxes) const
{
    return in_boxes.size() == 1 ? in_boxes.first()->GetName()
                                : tr("%n nodes", nullptr, static_cast<int>(in_boxes.size()));
}

// Nodes come, move and go

bool GraphCanvas::MayPlace(const ItemID& in_item) const
{
    return m_library && m_library->GetSourceOf(in_item) && in_item.GetType() != LibType::gType;
}

void GraphCanvas::Place(const ItemID& in_item, const QPointF& in_position)
{
    if (!MayPlace(in_item))
        return;
    const int number = m_graph->MakeNumber();
    const QPointF position(std::round(in_position.x()), std::round(in_position.y()));
    m_graph->Do(tr("Add %1").arg(GetItemHelp(*m_library, in_item).m_name),
                {{number, GraphNode{in_item, m_compound, position}}});
    m_scene.clearSelection();
    m_boxes[number]->setSelected(true);
}

void GraphCanvas::PlaceInSight(const ItemID& in_item)
{
    QPointF position = mapToScene(viewport()->rect().center()).toPoint();
    const auto isTaken = [&] {
        return std::any_of(m_boxes.begin(), m_boxes.end(),
                           [&](const auto& in_box) { return in_box.second->pos() == position; });
    };
    while (isTaken())
        position += QPointF(gCascade, gCascade);
    Place(in_item, position);
}

void GraphCanvas::DeleteSelected()
{
    const QList<GraphBox*> boxes = GetSelectedBoxes();
    GraphChange change;
    for (const GraphBox* const box : boxes)
        change[box->GetNumber()] = std::nullopt;
    if (!boxes.isEmpty())
        m_graph->Do(tr("Delete %1").arg(NameOf(boxes)), change);
}

void GraphCanvas::CommitMoves()
{
    QList<GraphBox*> moved;
    GraphChange change;
    for (GraphBox* const box : GetBoxes())
    {
        GraphNode node = m_graph->GetNodes().at(box->GetNumber());
        const QPointF position(box->pos().toPoint());
        if (position == node.m_position)
            continue;
        node.m_position = position;
        change[box->GetNumber()] = node;
        moved << box;
    }
    if (!moved.isEmpty())
        m_graph->Do(tr("Move %1").arg(NameOf(moved)), change);
}

void GraphCanvas::SelectAll()
{
    for (GraphBox* const box : GetBoxes())
        box->setSelected(true);
}

void GraphCanvas::OnSelectionChanged()
{
    const QList<GraphBox*> selected = GetSelectedBoxes();
    if (selected.size() == 1)
        Q_EMIT NodeSelected(selected.first()->GetItem());
}

// Drops

ItemID GraphCanvas::GetNode(const QMimeData& in_data) const
{
    const QString format = nodebrowser::GetDragFormat();
    if (!m_library || !in_data.hasFormat(format))
        return ItemID();
    const ItemID item = m_library->FindBySerialized(nodebrowser::DecodeDrag(in_data.data(format)));
    return MayPlace(item) ? item : ItemID();
}

void GraphCanvas::AcceptDrag(QDropEvent& io_event) const
{
    if ((io_event.possibleActions() & Qt::CopyAction) && GetNode(*io_event.mimeData()).IsValid())
    {
        io_event.setDropAction(Qt::CopyAction);
        io_event.accept();
    }
    else
        io_event.ignore();
}

void GraphCanvas::dragEnterEvent(QDragEnterEvent* in_event)
{
    AcceptDrag(*in_event);
}

void GraphCanvas::dragMoveEvent(QDragMoveEvent* in_event)
{
    AcceptDrag(*in_event);
}

void GraphCanvas::dropEvent(QDropEvent* in_event)
{
    AcceptDrag(*in_event);
    if (in_event->isAccepted())
        Place(GetNode(*in_event->mimeData()), mapToScene(qtcompat::EventPosition(*in_event)));
}

// The mouse

void GraphCanvas::mousePressEvent(QMouseEvent* in_event)
{
    if (in_event->button() == Qt::MiddleButton)
    {
        m_panFrom = qtcompat::EventPosition(*in_event);
        viewport()->setCursor(Qt::ClosedHandCursor);
        return;
    }
    QGraphicsView::mousePressEvent(in_event);
}

void GraphCanvas::mouseMoveEvent(QMouseEvent* in_event)
{
    if (in_event->buttons() & Qt::MiddleButton)
    {
        const QPoint position = qtcompat::EventPosition(*in_event);
        const QPointF way = QPointF(m_panFrom - position) / GetScale();
        m_panFrom = position;
        SetSight({GetSight().m_topLeft + way, GetScale()});
        return;
    }
    QGraphicsView::mouseMoveEvent(in_event);
}

void GraphCanvas::mouseReleaseEvent(QMouseEvent* in_event)
{
    if (in_event->button() == Qt::MiddleButton)
    {
        viewport()->unsetCursor();
        return;
    }
    QGraphicsView::mouseReleaseEvent(in_event);
    if (in_event->button() == Qt::LeftButton)
        CommitMoves();
}

void GraphCanvas::mouseDoubleClickEvent(QMouseEvent* in_event)
{
    const GraphBox* const box = dynamic_cast<GraphBox*>(itemAt(qtcompat::EventPosition(*in_event)));
    if (box && in_event->button() == Qt::LeftButton && box->GetItem().GetType() == VireoType::gCompound &&
        !box->IsMissing())
        Q_EMIT CompoundEntered(ItemID(box->GetItem())); // a copy: the box goes
    else
        QGraphicsView::mouseDoubleClickEvent(in_event);
    in_event->accept();
}

void GraphCanvas::wheelEvent(QWheelEvent* in_event)
{
    const QPointF turns = QPointF(in_event->angleDelta()) / gWheelTurn;
    if (in_event->modifiers() & Qt::ControlModifier)
    {
        Zoom(GetScale() * std::pow(gZoomStep, turns.y()), qtcompat::EventPosition(*in_event));
    }
    else
    {
        const bool sideways = in_event->modifiers() & Qt::ShiftModifier;
        QPointF way = in_event->pixelDelta().isNull() ? turns * gWheelPixels : QPointF(in_event->pixelDelta());
        way = sideways && way.x() == 0.0 ? QPointF(way.y(), 0.0) : way;
        SetSight({GetSight().m_topLeft - way / GetScale(), GetScale()});
    }
    in_event->accept();
}

// What is in sight

void GraphCanvas::SetSight(const Sight& in_sight)
{
    if (m_isArranging)
        return;
    m_isArranging = true;
    setTransform(QTransform::fromScale(in_sight.m_scale, in_sight.m_scale));
    QSize size;
    // Scroll bars that come or go change the size of what is in sight, once.
    for (int round = 0; round < 3 && viewport()->size() != size; ++round)
    {
        size = viewport()->size();
        // Half a pixel less: what fits exactly must not seem too large when it is multiplied again.
        QRectF area(in_sight.m_topLeft, QSizeF(size.width() - 0.5, size.height() - 0.5) / in_sight.m_scale);
        for (const GraphBox* const box : GetBoxes())
            area |= box->sceneBoundingRect().adjusted(-gEdge, -gEdge, gEdge, gEdge);
        setSceneRect(area);
        horizontalScrollBar()->setValue(qRound(in_sight.m_topLeft.x() * in_sight.m_scale));
        verticalScrollBar()->setValue(qRound(in_sight.m_topLeft.y() * in_sight.m_scale));
    }
    m_isArranging = false;
}

void GraphCanvas::Zoom(double in_scale, const QPoint& in_fixed)
{
    const double scale = std::max(gSmallestScale, std::min(in_scale, gLargestScale));
    SetSight({mapToScene(in_fixed) - QPointF(in_fixed) / scale, scale});
}

void GraphCanvas::ZoomIn()
{
    Zoom(GetScale() * gZoomStep, viewport()->rect().center());
}

void GraphCanvas::ZoomOut()
{
    Zoom(GetScale() / gZoomStep, viewport()->rect().center());
}

void GraphCanvas::ZoomToFullSize()
{
    Zoom(1.0, viewport()->rect().center());
}

void GraphCanvas::FitAll()
{
    if (m_boxes.empty())
    {
        SetSight(Sight());
        return;
    }
    QRectF area;
    for (const GraphBox* const box : GetBoxes())
        area |= box->sceneBoundingRect();
    area.adjust(-gFitMargin, -gFitMargin, gFitMargin, gFitMargin);
    const QSizeF room = maximumViewportSize(); // without scroll bars: none are needed then
    const double fitting = std::min({1.0, room.width() / area.width(), room.height() / area.height()});
    const double scale = std::max(gSmallestScale, fitting);
    SetSight({area.center() - QPointF(room.width(), room.height()) / scale / 2.0, scale});
}

void GraphCanvas::resizeEvent(QResizeEvent* in_event)
{
    QGraphicsView::resizeEvent(in_event);
    SetSight(GetSight());
}

// Painting

void GraphCanvas::paintEvent(QPaintEvent* in_event)
{
    QGraphicsView::paintEvent(in_event);
    QPainter painter(viewport());
    if (m_boxes.empty())
    {
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("Drag a node here from the library,\nor press Tab to search for one"));
    }
    if (hasFocus())
    {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void GraphCanvas::drawBackground(QPainter* in_painter, const QRectF& in_rect)
{
    in_painter->fillRect(in_rect, palette().color(QPalette::Base));
    const double step = GetScale() < gSmallestGridScale ? gGridStep * 5.0 : gGridStep;
    in_painter->setPen(QPen(palette().color(QPalette::Mid), 0.0));
    const auto cellOf = [step](double in_position) { return static_cast<int>(std::floor(in_position / step)); };
    for (int row = cellOf(in_rect.top()); row <= cellOf(in_rect.bottom()); ++row)
        for (int column = cellOf(in_rect.left()); column <= cellOf(in_rect.right()); ++column)
            in_painter->drawPoint(QPointF((column + 0.5) * step, (row + 0.5) * step));
}

} // namespace host
