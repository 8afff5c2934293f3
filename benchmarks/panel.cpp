// SPDX-License-Identifier: MIT
#include "panel.h"

#include "measure.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QTabBar>

namespace
{

const int gTabAll = 2;

} // namespace

std::unique_ptr<CNodeBrowser> ShowBrowser()
{
    std::unique_ptr<CNodeBrowser> browser(new CNodeBrowser(eConfigNodeBrowser));
    browser->findChild<QTabBar*>()->setCurrentIndex(gTabAll);
    ShowPanel(GetPanel(*browser));
    return browser;
}

std::unique_ptr<CNodeBrowser> ShowBrowser(const vireo::datamodel::ItemLibraryAccessor& in_library)
{
    std::unique_ptr<CNodeBrowser> browser = ShowBrowser();
    browser->SetItemLibrary(in_library);
    Settle();
    return browser;
}

Panel GetPanel(CNodeBrowser& in_browser)
{
    return {&in_browser, &in_browser, in_browser.findChild<QLineEdit*>(), in_browser.findChild<QScrollBar*>()};
}

void ShowPanel(const Panel& in_panel)
{
    in_panel.m_window->resize(gWindowWidth, gWindowHeight);
    in_panel.m_window->show();
    Settle();
}
