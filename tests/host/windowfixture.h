// SPDX-License-Identifier: MIT
/// What tests of the window share: how it is shown and closed, its rows and menus, and settings that are nobody's.
#pragma once

#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/support/modaluser.h"
#include "tests/support/waiting.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

#include <memory>

const int gListTop = 43;
const int gRowHeight = 24;

/// The middle of a row of the browser's list, as high as it is scrolled.
inline QPoint RowCentre(int in_row)
{
    return QPoint(100, gListTop + gRowHeight * in_row + gRowHeight / 2);
}

inline void ShowMainWindow(host::MainWindow& in_window, int in_width = 900, int in_height = 600)
{
    in_window.resize(in_width, in_height);
    in_window.show();
    in_window.grab();
}

/// Takes a window away, its library, and what could be undone in it.
inline void RemoveMainWindow(std::unique_ptr<host::MainWindow>& in_window, memorymodel::DataLayer& in_layer)
{
    memorymodel::Library& library = in_window->GetLibrary();
    in_window.reset();
    in_layer.GetCommandManager().GetStack().clear();
    in_layer.RemoveLibrary(library);
}

/// Opens a menu of the menu bar with the mouse.
/// \return the open menu, or null
inline QMenu* OpenMenu(QMainWindow& in_window, const QString& in_title)
{
    QMenuBar& bar = *in_window.menuBar();
    for (QAction* const action : bar.actions())
        if (action->text() == in_title)
            QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, bar.actionGeometry(action).center());
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

/// Opens a submenu of an open menu with the keyboard.
/// \return the open submenu, or null
inline QMenu* OpenSubmenu(QMenu& in_menu, const QString& in_title)
{
    QAction* const entry = FindEntry(in_menu, in_title);
    if (!entry)
        return nullptr;
    in_menu.setActiveAction(entry);
    QTest::keyClick(&in_menu, Qt::Key_Right);
    QMenu* const open = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    return open == entry->menu() ? open : nullptr;
}

/// Hides the tool tip, and waits until it is gone: it would stay a moment, and count as a widget left alive.
inline void HideToolTip()
{
    QToolTip::hideText();
    QVERIFY(WaitFor([] { return !QToolTip::isVisible(); }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Keeps the settings of a test program away from the user's. Make one before anything reads settings.
class OwnSettings
{
public:
    OwnSettings()
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
    }

    const QTemporaryDir& GetFolder() const { return m_folder; }

private:
    QTemporaryDir m_folder;
};
