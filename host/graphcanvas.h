// SPDX-License-Identifier: MIT
/// The canvas of the reference host: it shows a graph, and nodes are dragged to it from the browser.
#pragma once

#include "datamodel/itemid.h"
#include "host/graph.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QList>

#include <map>
#include <memory>

class QMimeData;

namespace memorymodel
{
class Library;
}

namespace host
{

class GraphBox;

/// Takes the drop of a row of the browser (mime format "vireo/toc.key": the serialized identity of an item as one
/// QString in a QDataStream) and shows a box for the item where it was dropped. Nodes of all kinds can be dropped,
/// signatures and global constants too. Types cannot: a graph does not contain any. Everything else is refused while it
/// is dragged over the canvas.
///
/// Every compound has a graph of its own, and there is one more for no compound. Graphs start empty and live while the
/// library is shown here. When an item leaves the library, for example because its creation is undone, its boxes stay
/// and are greyed out until the item comes back.
///
/// The left button selects and moves boxes, or draws a frame around those to select. The middle one and the wheel move
/// the view, Ctrl and the wheel zoom. Scroll bars are there while something is out of sight. Placing, moving and
/// deleting are commands on the stack; a move is made when the button is released.
class GraphCanvas : public QGraphicsView
{
    Q_OBJECT

public:
    /// \param in_stack must outlive the canvas
    explicit GraphCanvas(QUndoStack& in_stack);
    ~GraphCanvas() override;

    /// Forgets all graphs and accepts items of this library from now on; null for none. Set another one before the
    /// library dies.
    void SetLibrary(const memorymodel::Library* in_library);

    /// Shows the graph of a compound of the library, as it was last looked at; the invalid identity for none.
    void SetCompound(const vireo::datamodel::ItemID& in_compound);

    /// Call it after a change of the library: brings names, inputs and outputs up to date.
    void Refresh();

    /// The boxes of the graph that is shown, in the order in which they came.
    QList<GraphBox*> GetBoxes() const;
    /// Those of them that are selected.
    QList<GraphBox*> GetSelectedBoxes() const;

    /// Whether a graph can contain the item: a node of this library.
    bool MayPlace(const vireo::datamodel::ItemID& in_item) const;

    /// Adds a node and selects it, if it may be placed.
    /// \param in_position of its title, in the scene
    void Place(const vireo::datamodel::ItemID& in_item, const QPointF& in_position);

    /// The same, near the middle of what is in sight, and not right on top of another node.
    void PlaceInSight(const vireo::datamodel::ItemID& in_item);

public Q_SLOTS:
    void DeleteSelected();
    void SelectAll();
    void ZoomIn();
    void ZoomOut();
    void ZoomToFullSize();
    /// Brings all boxes into sight, as large as they fit, and not larger than at full size.
    void FitAll();

Q_SIGNALS:
    /// One box, and no other, was selected.
    void NodeSelected(const vireo::datamodel::ItemID& in_item);
    /// The box of a compound was double-clicked.
    void CompoundEntered(const vireo::datamodel::ItemID& in_compound);

protected:
    void dragEnterEvent(QDragEnterEvent* in_event) override;
    void dragMoveEvent(QDragMoveEvent* in_event) override;
    void dropEvent(QDropEvent* in_event) override;
    void mousePressEvent(QMouseEvent* in_event) override;
    void mouseMoveEvent(QMouseEvent* in_event) override;
    void mouseReleaseEvent(QMouseEvent* in_event) override;
    void mouseDoubleClickEvent(QMouseEvent* in_event) override;
    void wheelEvent(QWheelEvent* in_event) override;
    void resizeEvent(QResizeEvent* in_event) override;
    void paintEvent(QPaintEvent* in_event) override;
    void drawBackground(QPainter* in_painter, const QRectF& in_rect) override;

private Q_SLOTS:
    void OnGraphChanged(const host::GraphChange& in_change);
    void OnSelectionChanged();

private:
    /// What of a graph is in sight.
    struct Sight
    {
        QPointF m_topLeft;
        double m_scale = 1.0;
    };

    /// The node that a drag carries; the invalid identity for everything else.
    vireo::datamodel::ItemID GetNode(const QMimeData& in_data) const;
    void AcceptDrag(QDropEvent& io_event) const;
    void ShowNode(int in_number, const GraphNode& in_node);
    void ShowGraph();
    void CommitMoves();
    /// "Blend" for one box, "3 nodes" for more.
    QString NameOf(const QList<GraphBox*>& in_boxes) const;

    double GetScale() const { return transform().m11(); }
    Sight GetSight() const { return {mapToScene(QPoint()), GetScale()}; }
    /// Shows the graph from this corner on, also where there are no boxes.
    void SetSight(const Sight& in_sight);
    void Zoom(double in_scale, const QPoint& in_fixed);

    const memorymodel::Library* m_library = nullptr;
    QUndoStack& m_stack;
    QGraphicsScene m_scene;
    std::unique_ptr<Graph> m_graph;
    std::map<int, GraphBox*> m_boxes;
    vireo::datamodel::ItemID m_compound;
    std::map<vireo::datamodel::ItemID, Sight> m_sights;
    bool m_isArranging = false;
    QPoint m_panFrom; // where the pointer was when the view was last moved
};

} // namespace host
