// SPDX-License-Identifier: MIT
/// The manual, the keyboard shortcuts, and what this program is.
#pragma once

#include <QMenu>

class QMainWindow;

namespace host
{

class HelpMenu : public QMenu
{
    Q_OBJECT

public:
    /// \param in_window whose menus have the shortcuts; the parent
    explicit HelpMenu(QMainWindow& in_window);

private Q_SLOTS:
    void ShowManual();
    void ShowShortcuts();
    void ShowAbout();

private:
    QMainWindow& m_window;
};

} // namespace host
