// SPDX-License-Identifier: MIT
/// A node in the graph: a box with an icon and a name.
#pragma once

#include "datamodel/itemid.h"

#include <QIcon>
#include <QPoint>
#include <QString>
#include <QWidget>

namespace host
{

/// A child of the canvas. The left mouse button moves it inside the canvas; the Delete key deletes it.
class GraphBox : public QWidget
{
    Q_OBJECT

public:
    /// \param in_graph the compound whose graph the box is in; the invalid identity for none
    GraphBox(const vireo::datamodel::ItemID& in_item, const vireo::datamodel::ItemID& in_graph, const QIcon& in_icon,
             QWidget* in_canvas);

    const vireo::datamodel::ItemID& GetItem() const { return m_item; }
    const vireo::datamodel::ItemID& GetGraph() const { return m_graph; }

    const QString& GetName() const { return m_name; }
    /// A long name is drawn shortened; the tool tip has all of it.
    void SetName(const QString& in_name);
    const QString& GetDrawnName() const { return m_drawnName; }

    /// Greys the box out while its item is not in the library: a dashed edge, and a tool tip that says why. It can
    /// still be moved and deleted.
    void SetMissing(bool in_missing);
    bool IsMissing() const { return m_missing; }

    /// Moves the centre of the box to a point of the canvas, or as near as the edges of the canvas allow.
    void MoveCentreTo(const QPoint& in_point);

protected:
    void paintEvent(QPaintEvent* in_event) override;
    void mousePressEvent(QMouseEvent* in_event) override;
    void mouseMoveEvent(QMouseEvent* in_event) override;
    void keyPressEvent(QKeyEvent* in_event) override;

private:
    void MoveInside(const QPoint& in_topLeft);

    void UpdateToolTip();

    vireo::datamodel::ItemID m_item;
    vireo::datamodel::ItemID m_graph;
    QIcon m_icon;
    QString m_name;
    QString m_drawnName;
    bool m_missing = false;
    QPoint m_grip; // where the mouse holds the box, in the box's pixels
};

} // namespace host
