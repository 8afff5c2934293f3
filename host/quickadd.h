// SPDX-License-Identifier: MIT
/// The pop-up that adds a node where the pointer is.
#pragma once

#include "datamodel/itemid.h"

#include <QFrame>

namespace memorymodel
{
class Library;
}

namespace host
{

class LibraryBrowser;

/// A browser with the text cursor in its search field. Enter chooses the selected row, or the first one; a click
/// chooses the row under the pointer; Escape and a press outside close it. It stays a while for the next time: to show
/// it again builds no list.
class QuickAdd : public QFrame
{
    Q_OBJECT

public:
    /// \param in_library must outlive the pop-up
    QuickAdd(const memorymodel::Library& in_library, QWidget* in_parent);

    /// Opens near a point of the screen, inside of that screen, with an empty search.
    void OpenAt(const QPoint& in_screen);

    LibraryBrowser& GetBrowser() { return *m_browser; }

Q_SIGNALS:
    /// An item was chosen. The pop-up stays open: whoever can use the item closes it.
    void Chosen(const vireo::datamodel::ItemID& in_item);

protected:
    bool eventFilter(QObject* in_object, QEvent* in_event) override;
    void keyPressEvent(QKeyEvent* in_event) override;

private Q_SLOTS:
    void Choose();

private:
    LibraryBrowser* const m_browser;
};

} // namespace host
