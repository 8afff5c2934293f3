// SPDX-License-Identifier: MIT
#include "nodebrowser/browsertabbar.h"

#include "nodebrowser/rowlayout.h"

namespace nodebrowser
{

namespace
{

const int gTabBarHeight = gListTop + gTabBarRoom - gHeaderHeight;

QSize WithTabBarHeight(const QSize& in_size)
{
    return QSize(in_size.width(), gTabBarHeight);
}

} // namespace

QSize BrowserTabBar::sizeHint() const
{
    return WithTabBarHeight(QTabBar::sizeHint());
}

QSize BrowserTabBar::minimumSizeHint() const
{
    return WithTabBarHeight(QTabBar::minimumSizeHint());
}

QSize BrowserTabBar::tabSizeHint(int in_index) const
{
    return WithTabBarHeight(QTabBar::tabSizeHint(in_index));
}

} // namespace nodebrowser
