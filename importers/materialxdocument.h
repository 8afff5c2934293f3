// SPDX-License-Identifier: MIT
/// What one MaterialX document declares, as it stands there. No rule about items is known here.
#pragma once

#include "importers/materialxcontent.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace importers
{

struct TypeElement
{
    QString m_name;
    QString m_semantic;
    std::size_t m_document;
};

struct UnitElement
{
    QString m_name;
    QString m_unitType; ///< of the "unitdef" around it
    std::size_t m_document;
};

struct NodeDefElement
{
    QString m_name; ///< may be empty
    QString m_node;
    QString m_nodeGroup;
    std::size_t m_document;
};

struct ImplementationElement
{
    QString m_nodeDef;   ///< the definition that it implements
    QString m_nodeGraph; ///< the graph that does it; empty: something else does
};

struct GraphNode
{
    QString m_name;
    QString m_node;
};

struct NodeGraphElement
{
    QString m_name;
    QString m_nodeDef; ///< the definition that it implements; empty for none
    std::vector<GraphNode> m_nodes;
    std::size_t m_document;
};

/// The declarations of any number of documents, each kind in reading order.
struct MaterialXElements
{
    std::vector<TypeElement> m_types;
    std::vector<UnitElement> m_units;
    std::vector<NodeDefElement> m_nodeDefs;
    std::vector<ImplementationElement> m_implementations;
    std::vector<NodeGraphElement> m_nodeGraphs;
};

/// Reads a document and appends its declarations. After an error they are incomplete and of no use.
/// \param in_document the index of the document, which each element keeps
std::optional<MaterialXError> ReadDocument(const QString& in_file, std::size_t in_document,
                                           MaterialXElements& io_elements);

} // namespace importers
