// SPDX-License-Identifier: MIT
/// The browser of the reference host: the command line can set it, and it reports its rows.
#pragma once

#include "host/row.h"
#include "nodebrowser/nodebrowser.h"

#include <vector>

namespace memorymodel
{
class Library;
}

namespace host
{

class LibraryBrowser : public CNodeBrowser
{
public:
    LibraryBrowser();

    /// Selects a tab, as a click on it does.
    /// \param in_tab from 0, in the order of the tabs
    void SelectTab(int in_tab);

    /// Sets the text of the search field, as typing does.
    void Search(const QString& in_text);

    /// The rows as last painted, in display order.
    /// \param in_library the library that the browser shows
    std::vector<Row> GetRows(const memorymodel::Library& in_library) const;
};

} // namespace host
