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

/// The search field, the clear button, the tab bar and the scroll bar. They are children of the browser, placed by hand.
struct BrowserHeader
{
    /// Makes them, with the scroll bar hidden.
    BrowserHeader(QWidget& in_browser, bool in_withTabs);

    /// Makes them fit the browser's size. The tab bar keeps its own.
    void Place(const RowLayout& in_layout);

    /// Shows the scroll bar for content that is higher than the list, and hides it for any other.
    void FitScrollBar(const RowLayout& in_layout, int in_contentHeight);

    /// Deletes them.
    void Delete();

    QScrollBar* m_scrollBar;
    QLineEdit* m_searchField;
    QPushButton* m_clearButton;
    QTabBar* m_tabBar; ///< null without tabs
};

} // namespace nodebrowser
