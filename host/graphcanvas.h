/// The graph of the reference host: a surface that nodes are dragged to from the browser.
#pragma once

#include "datamodel/itemid.h"

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
class GraphCanvas : public QWidget
{
    Q_OBJECT

public:
    GraphCanvas();

    /// Takes all boxes away and accepts items of this library from now on; null for none. The library must be replaced
    /// here before it dies.
    void SetLibrary(const memorymodel::Library* in_library);

    /// Names the boxes as their items are named now.
    void UpdateNames();

protected:
    void dragEnterEvent(QDragEnterEvent* in_event) override;
    void dropEvent(QDropEvent* in_event) override;
    void childEvent(QChildEvent* in_event) override;
    void paintEvent(QPaintEvent* in_event) override;

private:
    /// The node that a drag carries; the invalid identity for everything else.
    vireo::datamodel::ItemID GetNode(const QMimeData& in_data) const;
    void SetNameOf(GraphBox& in_box) const;

    const memorymodel::Library* m_library = nullptr;
};

} // namespace host
