// SPDX-License-Identifier: MIT
/// The windows that are measured, each with a search field above a list.
#pragma once

#include "nodebrowser/nodebrowser.h"

#include <memory>

class QLineEdit;
class QScrollBar;
class QWidget;

/// All windows have the browser's measures, in pixels.
const int gWindowWidth = 300;
const int gWindowHeight = 800;
const int gListTop = 43;
const int gRowHeight = 24;

/// The parts of a window that steps act on. The window owns them.
struct Panel
{
    QWidget* m_window;
    QWidget* m_list; ///< the widget that paints the rows; the window itself for the browser
    QLineEdit* m_field;
    QScrollBar* m_bar;
};

/// A browser with the tab "All" and without a library, painted once.
std::unique_ptr<CNodeBrowser> ShowBrowser();

/// The same with a library.
std::unique_ptr<CNodeBrowser> ShowBrowser(const vireo::datamodel::ItemLibraryAccessor& in_library);

Panel GetPanel(CNodeBrowser& in_browser);

/// Gives a window its size and paints it for the first time.
void ShowPanel(const Panel& in_panel);
