// SPDX-License-Identifier: MIT
/// A change of a text as the bytes that go and the bytes that come.
#pragma once

#include "materialx/export.h"

#include <cstddef>
#include <string>
#include <vector>

namespace materialx
{

/// Replaces the bytes at one offset of a text. All that undoing needs is in it.
struct Edit
{
    std::size_t m_offset = 0;
    std::string m_removed;
    std::string m_inserted;
};

/// The edit that takes an edit back.
MATERIALX_EXPORT Edit Inverse(const Edit& in_edit);

struct DocumentEdit
{
    std::size_t m_document = 0; ///< an index into the documents of the library
    Edit m_edit;
};

/// One step: edits that are made one after the other, each for the texts that those before it leave.
using Change = std::vector<DocumentEdit>;

/// The step that takes a step back.
MATERIALX_EXPORT Change Inverse(const Change& in_change);

} // namespace materialx
