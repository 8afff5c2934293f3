// SPDX-License-Identifier: MIT
/// The widgets around the list.
#pragma once

class QLineEdit;
class QPushButton;
class QScrollBar;
class QTabBar;
class QWidget;

namespace nodebrowser
{

struct RowLayout;

/// The search field, the clear button, the tab bar and the scroll bar. They are children of the browser, without a
/// layout.
struct BrowserHeader
{
    /// Makes the widgets. The scroll bar is hidden at first.
    BrowserHeader(QWidget& in_browser, bool in_withTabs);

    /// Gives each widget its position and size in the browser. The tab bar keeps its own size.
    void Arrange(const RowLayout& in_layout);

    /// Shows the scroll bar when the content is higher than the list, and hides it otherwise.
    void FitScrollBar(const RowLayout& in_layout, int in_contentHeight);

    /// Deletes the widgets. None may be used after it.
    void Delete();

    QScrollBar* m_scrollBar;
    QLineEdit* m_searchField;
    QPushButton* m_clearButton;
    QTabBar* m_tabBar; ///< null without tabs
};

} // namespace nodebrowser
