// SPDX-License-Identifier: MIT
/// What one MaterialX document declares, as it stands there. No rule about items is known here.
#pragma once

#include "importers/materialx.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace importers
{

struct TypeElement
{
    QString name;
    QString semantic;
    std::size_t document;
};

struct UnitElement
{
    QString name;
    QString unitType; ///< of the "unitdef" around it
    std::size_t document;
};

struct NodeDefElement
{
    QString name; ///< may be empty
    QString node;
    QString nodeGroup;
    std::size_t document;
};

struct ImplementationElement
{
    QString nodeDef;   ///< the definition that it implements
    QString nodeGraph; ///< the graph that does it; empty: something else does
};

struct GraphNode
{
    QString name;
    QString node;
};

struct NodeGraphElement
{
    QString name;
    QString nodeDef; ///< the definition that it implements; empty for none
    std::vector<GraphNode> nodes;
    std::size_t document;
};

/// The declarations of any number of documents, each kind in reading order.
struct MaterialXElements
{
    std::vector<TypeElement> types;
    std::vector<UnitElement> units;
    std::vector<NodeDefElement> nodeDefs;
    std::vector<ImplementationElement> implementations;
    std::vector<NodeGraphElement> nodeGraphs;
};

/// Reads a document and appends its declarations. After an error they are incomplete and of no use.
/// \param in_document is put into the elements, to tell later which document they are from
std::optional<MaterialXError> ReadDocument(const QString& in_file, std::size_t in_document,
                                           MaterialXElements& inout_elements);

} // namespace importers
