// SPDX-License-Identifier: MIT
/// The tab bar of the browser.
#pragma once

#include <QTabBar>

/// A tab bar that is 23 pixels high whatever the style and the toolkit version: placed below the search field it ends
/// exactly where the list begins, so that it covers no row.
class BrowserTabBar : public QTabBar
{
public:
    explicit BrowserTabBar(QWidget* in_parent) : QTabBar(in_parent) {}

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    QSize tabSizeHint(int in_index) const override;
};
