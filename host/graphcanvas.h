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
/// signatures and global constants too; types cannot, since a graph has no place for one. Everything that is no node of
/// the library is refused while it is still over the canvas.
///
/// Every compound has a graph of its own, and there is one more for no compound. Graphs start empty and live as long as
/// the library is shown here, so a compound that was edited before comes back with its boxes. A box whose item leaves
/// the library, as when its creation is undone, stays greyed out, and lives again when the item comes back.
class GraphCanvas : public QWidget
{
    Q_OBJECT

public:
    GraphCanvas();

    /// Takes all boxes away and accepts items of this library from now on; null for none. The library must be replaced
    /// here before it dies.
    void SetLibrary(const memorymodel::Library* in_library);

    /// Shows the graph of a compound of the library and names it at the top; the invalid identity for none.
    void SetCompound(const vireo::datamodel::ItemID& in_compound);

    /// Shows names and boxes as the items are now, after a change of the library.
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
