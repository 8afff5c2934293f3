// SPDX-License-Identifier: MIT
/// The tab bar of the browser.
#pragma once

#include <QTabBar>

namespace nodebrowser
{

/// A tab bar that is 23 pixels high in every style and toolkit version. It fills the room between the search field and
/// the list, so it covers no row.
class BrowserTabBar : public QTabBar
{
public:
    explicit BrowserTabBar(QWidget* in_parent) : QTabBar(in_parent) {}

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    QSize tabSizeHint(int in_index) const override;
};

} // namespace nodebrowser
