// SPDX-License-Identifier: MIT
/// A browser whose commands can be called like the context menu calls them.
#pragma once

#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/modaluser.h"

#include <QMenu>
#include <QSignalSpy>

#include <functional>

/// Counts the signal and opens the commands to tests.
class CommandBrowser : public ProbedBrowser
{
public:
    explicit CommandBrowser(eConfigType in_config = eConfigNodeBrowser)
        : ProbedBrowser(in_config), m_signals(this, SIGNAL(SelectionChanged()))
    {
    }

    using CNodeBrowser::OnCheckOutItem;
    using CNodeBrowser::OnDeleteItem;
    using CNodeBrowser::OnEditItemTags;
    using CNodeBrowser::OnMakeItemWritable;
    using CNodeBrowser::OnNewCompound;
    using CNodeBrowser::OnNewLoopCompound;
    using CNodeBrowser::OnNewSignature;
    using CNodeBrowser::OnRenameItem;
    using CNodeBrowser::OnSaveGraphLibrary;
    using CNodeBrowser::OnShowItemFiles;
    using ProbedBrowser::PopContexMenu;

    int SignalCount() const { return static_cast<int>(m_signals.count()); }

    /// Selects a row; a row that is not there selects nothing.
    void Select(int in_row) { QTest::mouseClick(this, Qt::LeftButton, Qt::NoModifier, RowCentre(in_row)); }

    /// The right press that opens the context menu; returns when the menu is closed.
    void RightPress(int in_row) { QTest::mousePress(this, Qt::RightButton, Qt::NoModifier, RowCentre(in_row)); }

private:
    QSignalSpy m_signals;
};

/// Keeps what the move to another data source throws away from the toolkit.
class GuardedBrowser : public CommandBrowser
{
public:
    bool m_threw = false;

protected:
    void OnDatasourceChange() override
    {
        try
        {
            CNodeBrowser::OnDatasourceChange();
        }
        catch (const nexa4::ExBase::NullPtr&)
        {
            m_threw = true;
        }
    }
};

/// Opens the context menu of a row with the right button, and does something in it.
inline void UseMenu(CommandBrowser& in_browser, int in_row, const std::function<void(QMenu&)>& in_action)
{
    ModalUser user;
    user.WhenMenuOpens(in_action);
    in_browser.RightPress(in_row);
    QVERIFY(user.IsDone());
}

/// The same in the menu of the data sources that a compound can be moved to.
inline void UseSources(CommandBrowser& in_browser, int in_row, const std::function<void(QMenu&)>& in_action)
{
    ModalUser user;
    user.WhenMenuOpens([](QMenu& in_menu) {
        if (GoTo(in_menu, "Compound source"))
            Press(in_menu, Qt::Key_Right);
    });
    user.WhenMenuOpens(in_action);
    in_browser.RightPress(in_row);
    QVERIFY(user.IsDone());
}
