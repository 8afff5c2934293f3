// SPDX-License-Identifier: MIT
/// The graph of the reference host: a surface that nodes are dragged to from the browser.
#pragma once

#include "datamodel/itemid.h"

#include <QString>
#include <QWidget>

class QDropEvent;
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
/// library is shown here: a compound that is edited again has its boxes. When an item leaves the library, for example
/// because its creation is undone, its boxes stay and are greyed out until the item comes back.
class GraphCanvas : public QWidget
{
    Q_OBJECT

public:
    GraphCanvas();

    /// Deletes all boxes and accepts items of this library from now on; null for none. Set another one before the
    /// library dies.
    void SetLibrary(const memorymodel::Library* in_library);

    /// Shows the graph of a compound of the library and names it at the top; the invalid identity for none.
    void SetCompound(const vireo::datamodel::ItemID& in_compound);

    /// Call it after a change of the library: brings names and boxes up to date.
    void Refresh();

    /// The line at the top left: "Editing Blend"; empty for no compound.
    const QString& GetCaption() const { return m_caption; }

protected:
    void dragEnterEvent(QDragEnterEvent* in_event) override;
    void dropEvent(QDropEvent* in_event) override;
    void childEvent(QChildEvent* in_event) override;
    void paintEvent(QPaintEvent* in_event) override;

private:
    /// The node that a drag carries; the invalid identity for everything else.
    vireo::datamodel::ItemID GetNode(const QMimeData& in_data) const;
    void RefreshBox(GraphBox& io_box) const;
    bool IsGraphEmpty() const;

    const memorymodel::Library* m_library = nullptr;
    vireo::datamodel::ItemID m_compound;
    QString m_caption;
};

} // namespace host
