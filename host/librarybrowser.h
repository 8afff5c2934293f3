// SPDX-License-Identifier: MIT
/// The browser of the reference host: keys and the command line can set it, and it reports its rows.
#pragma once

#include "host/row.h"
#include "nodebrowser/nodebrowser.h"

#include <QTimer>

#include <functional>
#include <vector>

class QHelpEvent;
class QLineEdit;
class QScrollBar;

namespace memorymodel
{
class Library;
}

namespace host
{

/// Selects rows by sending itself the presses that a person's mouse would send: there is no other way into the
/// selection. To find the selected row takes a look at each row before it. After another search and on another tab no
/// row is selected: nobody has picked what stands there then.
class LibraryBrowser : public CNodeBrowser
{
    Q_OBJECT

public:
    LibraryBrowser();

    QLineEdit& GetSearchField() const;

    /// Selects a tab, as a click on it does.
    /// \param in_tab from 0, in the order of the tabs
    void SelectTab(int in_tab);

    /// Sets the text of the search field, as typing does.
    void Search(const QString& in_text);

    /// Sets what the tool tips of rows say of which source control has nothing to say: all but compounds, and compounds
    /// while there is no version control. An empty text shows none.
    void SetToolTips(std::function<QString(const vireo::datamodel::ItemID&)> in_getText);

    /// How many rows there are, as last painted.
    using CNodeBrowser::GetRowCount;

    /// The rows as last painted, in display order.
    /// \param in_library the library that the browser shows
    std::vector<Row> GetRows(const memorymodel::Library& in_library) const;

    /// Finds the rows of what was typed since the last paint.
    void BringUpToDate();

    /// Selects the row so many rows below the selected one, as a click on it does, and brings it into sight. It ends at
    /// the first and the last row. Without a selected row the first one is taken.
    void MoveSelection(int in_rows);

    /// How many rows are in sight at once; at least 1.
    int GetPageSize() const;

    /// Brings the selected row into sight, and paints its band.
    void ShowSelection();

    /// Selects no row. Nobody is told.
    void ClearSelection();

Q_SIGNALS:
    /// Other rows, or another number of them, may have been painted: sent from the event loop after a frame.
    void Painted();

protected:
    void paintEvent(QPaintEvent* in_event) override;
    bool event(QEvent* in_event) override;
    /// Paints the band at the row before its menu opens.
    void PopContexMenu(const QPoint& in_position, std::size_t in_row) override;
    /// Paints the list also when the press has picked no row.
    void mousePressEvent(QMouseEvent* in_event) override;

private:
    QScrollBar& GetScrollBar() const;
    int GetListHeight() const;
    /// The upper edge of a row.
    int GetTop(int in_row) const;
    /// Past the last row when none is selected.
    std::size_t FindSelectedRow();
    void BringIntoSight(std::size_t in_row);
    void SendPress(const QPoint& in_position);
    bool ShowToolTip(const QHelpEvent& in_event);

    std::function<QString(const vireo::datamodel::ItemID&)> m_getToolTip;
    QTimer m_afterFrame;
};

} // namespace host
