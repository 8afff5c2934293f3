// SPDX-License-Identifier: MIT
/// What a MaterialX document declares, as it stands there. No rule about items is known here.
#pragma once

#include "materialx/markup.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace materialx
{

/// The elements directly inside the outermost one that the rules know.
enum class eDeclaration
{
    eType,           ///< "typedef"
    eUnits,          ///< "unitdef"
    eNodeDef,        ///< "nodedef"
    eImplementation, ///< "implementation"
    eNodeGraph,      ///< "nodegraph"
    eAttribute,      ///< "attributedef"
    eOther
};

/// A unit inside a "unitdef", or a node inside a "nodegraph".
struct InnerElement
{
    std::string m_name;
    std::string m_node; ///< of a node: what it is an instance of

    bool operator==(const InnerElement& in_other) const
    {
        return m_name == in_other.m_name && m_node == in_other.m_node;
    }
};

/// One element directly inside the outermost one. Texts are UTF-8, empty where the attribute is missing.
struct Declaration
{
    eDeclaration m_kind = eDeclaration::eOther;
    bool m_isLoop = false;             ///< of a "nodedef": loop="true"
    Span m_span;                       ///< in the text of the document
    std::string m_name;                ///< of any element
    std::string m_node;                ///< of a "nodedef": "node"; of an "attributedef": "attrname"
    std::string m_nodeDef;             ///< of what implements: the definition; of a "nodedef": "inherit"
    std::string m_nodeGraph;           ///< of an "implementation": the graph that it names
    std::string m_group;               ///< "nodegroup", "semantic" or "unittype"
    std::string m_uiName;              ///< of a "nodedef" or "nodegraph"
    std::optional<std::string> m_tags; ///< of a "nodedef" or "nodegraph": "tags"
    std::vector<InnerElement> m_inner;
};

/// Whether two declarations say the same, wherever they stand.
bool SayTheSame(const Declaration& in_a, const Declaration& in_b);

/// The same but for how they are shown: "uiname" and "tags".
bool DeclareTheSame(const Declaration& in_a, const Declaration& in_b);

/// Reads elements that were checked and appends what they declare, one declaration an element, in their order. Memory
/// for the elements themselves is bounded by the largest one.
/// \param in_elements elements of the text that follow each other
std::optional<Fault> ReadDeclarations(std::string_view in_text, const std::vector<Span>& in_elements,
                                      std::vector<Declaration>& io_declarations);

/// The value of an attribute of the element at an offset; empty without it. The text is well-formed.
std::string ReadAttribute(std::string_view in_text, std::size_t in_element, std::string_view in_name);

/// An output of a definition or a graph.
struct Output
{
    std::string m_name;
    std::string m_type;
};

/// The outputs directly inside an element.
std::vector<Output> ReadOutputs(std::string_view in_element);

} // namespace materialx
