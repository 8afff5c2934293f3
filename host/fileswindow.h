// SPDX-License-Identifier: MIT
/// The window that answers "Show Files".
#pragma once

#include "datamodel/itemid.h"

#include <QDialog>

class QLabel;
class QListWidget;

namespace memorymodel
{
class Library;
}

namespace host
{

/// Lists where an item is stored: the location of its data source, and the item's own path in it. A location that is a
/// file or a folder on disk is listed alone: it contains many items.
///
/// Not modal; Escape closes it, and it destroys itself when it is closed.
class FilesWindow : public QDialog
{
    Q_OBJECT

public:
    /// Opens the window of an item, or brings the one that is open already to the front. Nothing opens for an item that
    /// the library does not have.
    /// \param in_library must not die before the window does
    static void Open(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item,
                     QWidget& in_parent);

    /// Call it after a change of the library: shows the present location. Closes the window when the item is gone.
    void Refresh();

private:
    FilesWindow(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item, QWidget& in_parent);

    const memorymodel::Library& m_library;
    const vireo::datamodel::ItemID m_item;
    QLabel* m_sourceLabel;
    QListWidget* m_list;
};

} // namespace host
