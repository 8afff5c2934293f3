// SPDX-License-Identifier: MIT
/// What the documents say about an item, for people.
#pragma once

#include "materialx/export.h"
#include "materialx/items.h"

#include <QString>

#include <cstddef>
#include <string>
#include <vector>

namespace materialx
{

/// An input or output. Where definitions differ in its type, the types have ", " between them; a value is there only
/// when all of them agree on it.
struct Port
{
    std::string m_name;
    std::string m_type;
    std::string m_value;
};

/// Texts are UTF-8, as the document has them; empty where it says nothing.
struct Description
{
    std::string m_name; ///< as it is shown, in its own characters
    std::string m_doc;
    std::string m_group; ///< the node group of a node, the semantic of a type, the unit type of a unit
    std::vector<std::string> m_tags;
    std::vector<Port> m_inputs;
    std::vector<Port> m_outputs;
    std::size_t m_definitions = 0; ///< how many definitions the inputs and outputs come from
    QString m_document;            ///< path from the opened folder
    std::size_t m_line = 0;        ///< of the declaration, from 1
};

/// Describes an item by its declarations: one, or those that share a "node" value. What a definition inherits comes
/// before what it has itself. For a node inside a graph there are no inputs and outputs.
///
/// Reads the declarations again, and the document up to the first one for its line. Looks through all declarations
/// once if a definition inherits.
/// \param in_declarations at least one; the first one is that of the item
MATERIALX_EXPORT Description Describe(const Library& in_library, const Item& in_item,
                                      const std::vector<DeclarationIndex>& in_declarations);

} // namespace materialx
