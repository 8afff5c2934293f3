// SPDX-License-Identifier: MIT
/// A peer: what a team would write with the toolkit's own item views instead of the browser.
#pragma once

#include "panel.h"

#include "datamodel/itemlibrary.h"

#include <QWidget>

#include <cstddef>
#include <string>
#include <vector>

class QAbstractItemView;

/// A search field above an item view whose rows, icons and list are as large as the browser's.
class Peer : public QWidget
{
public:
    Panel GetPanel() const { return m_panel; }

    /// Fills the view from a library. Call it once.
    virtual void Open(const vireo::datamodel::ItemLibraryAccessor& in_library) = 0;

    /// How many rows the search found.
    virtual std::size_t GetRowCount() const = 0;

protected:
    /// Takes ownership of the view.
    explicit Peer(QAbstractItemView* in_view);

    /// Called with the lowered, distinct words at every change of the search text.
    virtual void Search(const std::vector<std::string>& in_words) = 0;

private:
    const Panel m_panel;
};
