// SPDX-License-Identifier: MIT
/// What the tests of the browser share: a browser that can be looked into, and a person's way of using it.
#pragma once

#include "memorymodel/datalayer.h"
#include "nodebrowser/nodebrowser.h"
#include "nodebrowser/rowlayout.h"
#include "tests/support/testcompat.h"
#include "tests/support/waiting.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStringList>
#include <QTabBar>
#include <QTest>

#include <vector>

using nodebrowser::gHeaderHeight;
using nodebrowser::gListTop;
using nodebrowser::gNoRow;
using nodebrowser::gRowHeight;
using nodebrowser::gTabBarRoom;

/// Where the first row starts below the tab bar.
const int gBrowserTop = gListTop + gTabBarRoom;

/// A type name that reads like the one of compounds and is another one: types are told apart by address.
const char gOtherCompound[] = "Compound";

/// A browser that opens its protected side to tests and counts what happens to it.
class ProbedBrowser : public CNodeBrowser
{
public:
    explicit ProbedBrowser(eConfigType in_config = eConfigNodeBrowser) : CNodeBrowser(in_config) {}

    using CNodeBrowser::CompareToFilter;
    using CNodeBrowser::GetRowCount;
    using CNodeBrowser::GetRowItem;
    using CNodeBrowser::GetSearchTags;
    using CNodeBrowser::GetTaggedItems;

    QLineEdit& SearchField() { return *findChild<QLineEdit*>(); }
    QPushButton& ClearingButton() { return *findChild<QPushButton*>(); }
    QScrollBar& ScrollBar() { return *findChild<QScrollBar*>(); }
    QTabBar* TabBar() { return findChild<QTabBar*>(); }

    int ListTop() { return TabBar() ? gBrowserTop : gListTop; }

    /// The middle of a row of the list, wherever it is scrolled to.
    QPoint RowCentre(int in_row)
    {
        return QPoint(width() / 2, ListTop() - ScrollBar().value() + gRowHeight * in_row + gRowHeight / 2);
    }

    /// The names of the rows as last laid out.
    QStringList RowNames(const vireo::datamodel::ItemLibraryAccessor& in_library)
    {
        QStringList names;
        for (std::size_t row = 0; row < GetRowCount(); ++row)
        {
            const std::string name = in_library.GetItemName(GetRowItem(row).GetItemID(), true, nullptr);
            names << QString::fromLatin1(name.data(), static_cast<int>(name.size()));
        }
        return names;
    }

    int m_paints = 0;
    std::vector<std::size_t> m_menuRows; ///< the rows that a context menu was asked for

protected:
    void paintEvent(QPaintEvent* in_event) override
    {
        ++m_paints;
        CNodeBrowser::paintEvent(in_event);
    }

    void PopContexMenu(const QPoint& in_position, std::size_t in_row) override
    {
        m_menuRows.push_back(in_row);
        CNodeBrowser::PopContexMenu(in_position, in_row);
    }
};

/// Lets everything that was asked for happen: repaints, queued calls, timers that are due, deletions. Tests run in no
/// event loop, which alone deletes by itself.
inline void Settle()
{
    for (int round = 0; round < 5; ++round)
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        testcompat::SyncWindowSystem();
        QCoreApplication::processEvents();
    }
}

/// Shows a browser in a size and waits until it has been painted. The test fails when that does not happen.
inline void ShowBrowser(ProbedBrowser& in_browser, int in_width = 300, int in_height = 400)
{
    QApplication::setCursorFlashTime(0); // a blinking cursor repaints what lies below the search field
    in_browser.resize(in_width, in_height);
    in_browser.show();
    // What is not visible, inside a window that is hidden for example, is not waited for.
    WaitFor([&in_browser] { return in_browser.m_paints > 0 || !in_browser.isVisible(); }, 5000);
    QTest::qVerify(in_browser.m_paints > 0, "in_browser.m_paints > 0", "The browser is not painted.", __FILE__,
                   __LINE__);
    Settle();
}

/// Attaches a library to a browser and shows it.
inline void ShowLibrary(ProbedBrowser& in_browser, const vireo::datamodel::ItemLibraryAccessor& in_library,
                        int in_width = 300, int in_height = 400)
{
    in_browser.SetItemLibrary(in_library);
    ShowBrowser(in_browser, in_width, in_height);
}

/// Shows all kinds of items of a library.
inline void ShowAll(ProbedBrowser& in_browser, const vireo::datamodel::ItemLibraryAccessor& in_library)
{
    in_browser.TabBar()->setCurrentIndex(2);
    ShowLibrary(in_browser, in_library);
}

/// Adds an item of each kind, in the order of their names "1" to "7": the compounds first, the type last.
inline void AddEveryKind(memorymodel::Library& in_library)
{
    using memorymodel::NewItem;
    in_library.Add(NewItem::Compound("1"));
    in_library.Add(NewItem::Signature("2"));
    in_library.Add(NewItem::LoopCompound("3"));
    in_library.Add(NewItem::Solver("4"));
    in_library.Add(NewItem::PolymorphicSolver("5"));
    in_library.Add(NewItem::GlobalConstant("6"));
    in_library.Add(NewItem::Type("7"));
}

/// How many repaints a step leads to, counted once everything has settled.
template <class Step> int CountPaints(ProbedBrowser& in_browser, Step in_step)
{
    Settle();
    const int before = in_browser.m_paints;
    in_step();
    Settle();
    return in_browser.m_paints - before;
}
