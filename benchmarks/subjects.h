// SPDX-License-Identifier: MIT
/// The windows that are measured side by side.
#pragma once

#include "content.h"
#include "listpeer.h"
#include "panel.h"
#include "table.h"
#include "treepeer.h"

#include <memory>
#include <vector>

/// A window and the column that its times belong to.
struct Subject
{
    eColumn m_column;
    Panel m_panel;
};

/// The browser and both peers, each with all items of the library. A library that is too large for the peers has none.
struct Subjects
{
    explicit Subjects(const Content& in_content);

    /// Null for a library that is too large.
    std::unique_ptr<ListPeer> m_list;
    std::unique_ptr<TreePeer> m_tree;
    std::unique_ptr<CNodeBrowser> m_browser;
    std::vector<Subject> m_all;
};
