// SPDX-License-Identifier: MIT
#include "importers/materialxitems.h"

#include <QHash>
#include <QSet>

namespace importers
{
namespace
{

/// What implements a definition, and which graphs implement one.
class Implementations
{
public:
    explicit Implementations(const MaterialXElements& in_elements)
    {
        for (const NodeGraphElement& graph : in_elements.m_nodeGraphs)
            m_byGraph.insert(graph.m_nodeDef);
        for (const ImplementationElement& implementation : in_elements.m_implementations)
        {
            (implementation.m_nodeGraph.isEmpty() ? m_byOther : m_byGraph).insert(implementation.m_nodeDef);
            m_namedGraphs.insert(implementation.m_nodeGraph);
        }
        // The empty text stands for "none". Nothing implements a definition without a name.
        m_byGraph.remove(QString());
        m_byOther.remove(QString());
    }

    eMaterialXKind GetKind(const NodeDefElement& in_nodeDef) const
    {
        if (m_byGraph.contains(in_nodeDef.m_name))
            return eMaterialXKind::eCompound;
        return m_byOther.contains(in_nodeDef.m_name) ? eMaterialXKind::eSolver : eMaterialXKind::eSignature;
    }

    bool IsFree(const NodeGraphElement& in_graph) const
    {
        return in_graph.m_nodeDef.isEmpty() && !m_namedGraphs.contains(in_graph.m_name);
    }

private:
    QSet<QString> m_byGraph;
    QSet<QString> m_byOther;
    QSet<QString> m_namedGraphs;
};

/// The definitions with one "node" value, in reading order; at least one.
using NodeDefGroup = std::vector<const NodeDefElement*>;

std::vector<NodeDefGroup> GroupByNode(const std::vector<NodeDefElement>& in_nodeDefs)
{
    std::vector<NodeDefGroup> groups;
    QHash<QString, std::size_t> groupOfNode;
    for (const NodeDefElement& nodeDef : in_nodeDefs)
    {
        const auto known = groupOfNode.constFind(nodeDef.m_node);
        if (known != groupOfNode.constEnd())
        {
            groups[*known].push_back(&nodeDef);
            continue;
        }
        groupOfNode.insert(nodeDef.m_node, groups.size());
        groups.push_back({&nodeDef});
    }
    return groups;
}

QStringList DistinctTags(const QStringList& in_texts)
{
    QStringList tags = in_texts;
    tags.removeAll(QString());
    tags.removeDuplicates();
    return tags;
}

QStringList MakeTags(const NodeDefGroup& in_group, const std::vector<MaterialXDocument>& in_documents)
{
    QStringList nodeGroups;
    QStringList folders;
    for (const NodeDefElement* nodeDef : in_group)
    {
        nodeGroups.append(nodeDef->m_nodeGroup);
        folders.append(in_documents[nodeDef->m_document].m_topFolder);
    }
    return DistinctTags(nodeGroups + folders);
}

/// Makes the items in the order of the content.
class ItemMaker
{
public:
    ItemMaker(const MaterialXElements& in_elements, const std::vector<MaterialXDocument>& in_documents)
        : m_elements(in_elements), m_documents(in_documents), m_implementations(in_elements)
    {
    }

    std::vector<MaterialXItem> Make()
    {
        for (const TypeElement& type : m_elements.m_types)
            Add(eMaterialXKind::eType, type.m_name, DistinctTags({type.m_semantic}), type.m_document);
        for (const UnitElement& unit : m_elements.m_units)
            Add(eMaterialXKind::eGlobalConstant, unit.m_name, DistinctTags({unit.m_unitType}), unit.m_document);
        for (const NodeDefGroup& group : GroupByNode(m_elements.m_nodeDefs))
            AddNode(group);
        for (const NodeGraphElement& graph : m_elements.m_nodeGraphs)
            if (m_implementations.IsFree(graph))
                Add(eMaterialXKind::eCompound, graph.m_name, FolderTag(graph.m_document), graph.m_document);
        for (const NodeGraphElement& graph : m_elements.m_nodeGraphs)
            AddGraphContent(graph);
        return std::move(m_items);
    }

private:
    void AddNode(const NodeDefGroup& in_group)
    {
        const NodeDefElement& first = *in_group.front();
        const bool isPolymorphic = in_group.size() > 1;
        const eMaterialXKind kind =
            isPolymorphic ? eMaterialXKind::ePolymorphicSolver : m_implementations.GetKind(first);
        Add(kind, first.m_node, MakeTags(in_group, m_documents), first.m_document);
        m_kindOfNode.insert(first.m_node, kind);
        if (!isPolymorphic)
            return;
        for (const NodeDefElement* nodeDef : in_group)
            if (!nodeDef->m_name.isEmpty())
                Add(m_implementations.GetKind(*nodeDef), nodeDef->m_name, MakeTags({nodeDef}, m_documents),
                    nodeDef->m_document)
                    .m_specializes = first.m_node;
    }

    /// A node inside a graph is of the kind that it is an instance of; an unknown one is a signature.
    void AddGraphContent(const NodeGraphElement& in_graph)
    {
        const QStringList tags = FolderTag(in_graph.m_document);
        for (const GraphNode& node : in_graph.m_nodes)
            Add(m_kindOfNode.value(node.m_node, eMaterialXKind::eSignature), node.m_name, tags, in_graph.m_document)
                .m_parent = in_graph.m_name;
    }

    MaterialXItem& Add(eMaterialXKind in_kind, const QString& in_name, const QStringList& in_tags,
                       std::size_t in_document)
    {
        m_items.push_back({in_kind, in_name, in_tags, QString(), QString(), m_documents[in_document].m_source});
        return m_items.back();
    }

    QStringList FolderTag(std::size_t in_document) const
    {
        return DistinctTags({m_documents[in_document].m_topFolder});
    }

    const MaterialXElements& m_elements;
    const std::vector<MaterialXDocument>& m_documents;
    const Implementations m_implementations;
    QHash<QString, eMaterialXKind> m_kindOfNode;
    std::vector<MaterialXItem> m_items;
};

} // namespace

std::vector<MaterialXItem> MakeItems(const MaterialXElements& in_elements,
                                     const std::vector<MaterialXDocument>& in_documents)
{
    return ItemMaker(in_elements, in_documents).Make();
}

} // namespace importers
