/// A node in the graph: a box with an icon and a name.
#pragma once

#include "datamodel/itemid.h"

#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QWidget>

namespace host
{

/// A child of the canvas. The left button moves it, inside of the canvas; Delete takes it away.
class GraphBox : public QWidget
{
    Q_OBJECT

public:
    GraphBox(const vireo::datamodel::ItemID& in_item, const QPixmap& in_icon, QWidget* in_canvas);

    const vireo::datamodel::ItemID& GetItem() const { return m_item; }

    const QString& GetName() const { return m_name; }
    /// A long name is drawn shortened; the tool tip has all of it.
    void SetName(const QString& in_name);
    const QString& GetDrawnName() const { return m_drawnName; }

    /// Moves the box so that its middle is at a point of the canvas, or as near as the canvas' edges allow.
    void MoveCentreTo(const QPoint& in_point);

protected:
    void paintEvent(QPaintEvent* in_event) override;
    void mousePressEvent(QMouseEvent* in_event) override;
    void mouseMoveEvent(QMouseEvent* in_event) override;
    void keyPressEvent(QKeyEvent* in_event) override;

private:
    void MoveInside(const QPoint& in_topLeft);

    vireo::datamodel::ItemID m_item;
    QPixmap m_icon;
    QString m_name;
    QString m_drawnName;
    QPoint m_grip; // where the mouse holds the box, in the box's pixels
};

} // namespace host
