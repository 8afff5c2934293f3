// SPDX-License-Identifier: MIT
/// New definitions in documents, and identifiers for them.
#pragma once

#include "materialx/export.h"
#include "materialx/operations.h"

#include <cstddef>
#include <string>

namespace materialx
{

enum class eNewKind
{
    eSignature,
    eCompound,
    eLoopCompound
};

struct NewNode
{
    eNewKind m_kind = eNewKind::eSignature;
    std::string m_name;     ///< any text; the identifiers are made from it, valid and new in the library
    std::string m_category; ///< may be empty
    std::string m_inherit;  ///< the name of a definition; without effect when there is no such definition
};

/// Adds a definition, and for compounds a graph that implements it, at the end of a document. A document without bytes
/// becomes one.
/// \param out_nodeDef the name of the new definition
MATERIALX_EXPORT Plan AddNode(const Library& in_library, std::size_t in_document, const NewNode& in_node,
                              std::string* out_nodeDef = nullptr);

} // namespace materialx
