// SPDX-License-Identifier: MIT
/// The browser of the reference host: the command line can set it, and it reports its rows.
#pragma once

#include "host/row.h"
#include "nodebrowser/nodebrowser.h"

#include <QTimer>

#include <vector>

namespace memorymodel
{
class Library;
}

namespace host
{

class LibraryBrowser : public CNodeBrowser
{
    Q_OBJECT

public:
    LibraryBrowser();

    /// Selects a tab, as a click on it does.
    /// \param in_tab from 0, in the order of the tabs
    void SelectTab(int in_tab);

    /// Sets the text of the search field, as typing does.
    void Search(const QString& in_text);

    /// How many rows there are, as last painted.
    using CNodeBrowser::GetRowCount;

    /// The rows as last painted, in display order.
    /// \param in_library the library that the browser shows
    std::vector<Row> GetRows(const memorymodel::Library& in_library) const;

Q_SIGNALS:
    /// Other rows, or another number of them, may have been painted: sent from the event loop after a frame.
    void Painted();

protected:
    void paintEvent(QPaintEvent* in_event) override;

private:
    QTimer m_afterFrame;
};

} // namespace host
