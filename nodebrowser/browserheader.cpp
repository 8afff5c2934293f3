// SPDX-License-Identifier: MIT
#include "nodebrowser/browserheader.h"

#include "nodebrowser/browsertabbar.h"
#include "nodebrowser/rowlayout.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QString>
#include <QStyle>

namespace nodebrowser
{

BrowserHeader::BrowserHeader(QWidget& in_browser, bool in_withTabs)
    : m_scrollBar(new QScrollBar(Qt::Vertical, &in_browser)),
      m_searchField(nullptr),
      m_clearButton(nullptr),
      m_tabBar(nullptr)
{
    m_scrollBar->hide();
    m_searchField = new QLineEdit(&in_browser);
    m_clearButton =
        new QPushButton(in_browser.style()->standardIcon(QStyle::SP_TitleBarCloseButton), QString(), &in_browser);
    m_searchField->setAccessibleName(QString::fromLatin1("Search"));
    m_clearButton->setAccessibleName(QString::fromLatin1("Clear search"));
    if (!in_withTabs)
        return;
    m_tabBar = new BrowserTabBar(&in_browser);
    m_tabBar->addTab(QString::fromLatin1("Nodes"));
    m_tabBar->addTab(QString::fromLatin1("Types"));
    m_tabBar->addTab(QString::fromLatin1("All"));
    m_tabBar->setCurrentIndex(0);
}

void BrowserHeader::Arrange(const RowLayout& in_layout)
{
    const int right = in_layout.m_width - gHeaderHeight;
    m_searchField->setGeometry(0, 0, right, gHeaderHeight);
    m_clearButton->setGeometry(right, 0, gHeaderHeight, gHeaderHeight);
    if (m_tabBar)
        m_tabBar->move(0, gHeaderHeight);
    m_scrollBar->setGeometry(right, in_layout.m_listTop, gHeaderHeight, in_layout.m_height - in_layout.m_listTop);
}

void BrowserHeader::FitScrollBar(const RowLayout& in_layout, int in_contentHeight)
{
    const int available = in_layout.m_height - in_layout.m_listTop;
    if (available >= in_contentHeight)
    {
        m_scrollBar->setValue(0);
        m_scrollBar->hide();
        return;
    }
    m_scrollBar->setPageStep(available);
    m_scrollBar->setMinimum(0);
    m_scrollBar->setMaximum(in_contentHeight - available);
    m_scrollBar->show();
}

void BrowserHeader::Delete()
{
    delete m_scrollBar;
    delete m_tabBar;
    delete m_searchField;
    delete m_clearButton;
}

} // namespace nodebrowser
