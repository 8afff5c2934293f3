// SPDX-License-Identifier: MIT
/// The window that answers "Show Files".
#pragma once

#include "datamodel/itemid.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace memorymodel
{
class Library;
}

namespace host
{

/// Lists the documents of an item, each with its state and its last commits, and opens their folder. An item that is in
/// memory only has none.
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

    /// Call it after a change of the library: shows the present documents. Closes the window when the item is gone. It
    /// follows what git has of them by itself.
    void Refresh();

private Q_SLOTS:
    void OnOpenFolder();

private:
    FilesWindow(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item, QWidget& in_parent);

    const memorymodel::Library& m_library;
    const vireo::datamodel::ItemID m_item;
    QLabel* m_label;
    QTreeWidget* m_list;
    QPushButton* m_openFolder;
};

} // namespace host
