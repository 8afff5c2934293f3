// SPDX-License-Identifier: MIT
/// A library in memory with the items that are measured.
#pragma once

#include "memorymodel/datalayer.h"
#include "names.h"

#include <vector>

/// The largest library that the peers are measured with: beyond it they take minutes.
const std::size_t gLargestForPeers = 100000;

/// It must outlive all windows that show it. Source control is off.
struct Content
{
    /// Half compounds, half solvers, in the order of the names given.
    explicit Content(const std::vector<NamedItem>& in_items);

    std::size_t GetCount() const { return m_library.GetItemCount(); }
    bool HasPeers() const { return GetCount() <= gLargestForPeers; }

    memorymodel::DataLayer m_layer;
    memorymodel::Library& m_library;
};
