/// A browser whose commands can be called like the context menu calls them.
#pragma once

#include "tests/nodebrowser/browserfixture.h"

#include <QSignalSpy>

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
