// SPDX-License-Identifier: MIT
#include "materialx/items.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace materialx
{
namespace
{

using Tags = std::vector<std::string>;

/// A declaration and where it is.
struct Declared
{
    const Declaration* m_declaration;
    DeclarationIndex m_index;
};

/// The declarations of one kind in all documents, in the order of their paths.
std::vector<Declared> Collect(const Library& in_library, eDeclaration in_kind)
{
    std::vector<Declared> found;
    for (const std::size_t document : InPathOrder(in_library))
    {
        const std::vector<Declaration>& declarations = in_library.m_documents[document].m_document.GetDeclarations();
        for (std::size_t i = 0; i < declarations.size(); ++i)
            if (declarations[i].m_kind == in_kind)
                found.push_back({&declarations[i], {document, i}});
    }
    return found;
}

/// What implements a definition, and which graphs implement one.
class Implementations
{
public:
    Implementations(const std::vector<Declared>& in_graphs, const std::vector<Declared>& in_implementations)
    {
        for (const Declared& graph : in_graphs)
            m_byGraph.insert(graph.m_declaration->m_nodeDef);
        for (const Declared& implementation : in_implementations)
        {
            const Declaration& declaration = *implementation.m_declaration;
            (declaration.m_nodeGraph.empty() ? m_byOther : m_byGraph).insert(declaration.m_nodeDef);
            m_namedGraphs.insert(declaration.m_nodeGraph);
        }
        // The empty text stands for "none". Nothing implements a definition without a name.
        m_byGraph.erase(std::string_view());
        m_byOther.erase(std::string_view());
    }

    eKind GetKind(const Declaration& in_nodeDef) const
    {
        if (m_byGraph.count(in_nodeDef.m_name) != 0)
            return eKind::eCompound;
        return m_byOther.count(in_nodeDef.m_name) != 0 ? eKind::eSolver : eKind::eSignature;
    }

    bool IsFree(const Declaration& in_graph) const
    {
        return in_graph.m_nodeDef.empty() && m_namedGraphs.count(in_graph.m_name) == 0;
    }

private:
    std::unordered_set<std::string_view> m_byGraph;
    std::unordered_set<std::string_view> m_byOther;
    std::unordered_set<std::string_view> m_namedGraphs;
};

/// The definitions with one "node" value, in reading order; at least one.
using NodeDefGroup = std::vector<Declared>;

std::vector<NodeDefGroup> GroupByNode(const std::vector<Declared>& in_nodeDefs)
{
    std::vector<NodeDefGroup> groups;
    std::unordered_map<std::string_view, std::size_t> groupOfNode;
    groupOfNode.reserve(in_nodeDefs.size());
    for (const Declared& nodeDef : in_nodeDefs)
    {
        if (nodeDef.m_declaration->m_node.empty())
            continue;
        const auto [known, isNew] = groupOfNode.emplace(nodeDef.m_declaration->m_node, groups.size());
        if (isNew)
            groups.emplace_back();
        groups[known->second].push_back(nodeDef);
    }
    return groups;
}

/// Appends the texts that are not empty and not there yet.
class DistinctTags
{
public:
    void Add(const std::string& in_tag)
    {
        const std::size_t few = 8; // up to here to compare costs less than to look up
        if (in_tag.empty() || (m_tags.size() < few && std::find(m_tags.begin(), m_tags.end(), in_tag) != m_tags.end()))
            return;
        if (m_tags.size() == few)
            m_known.insert(m_tags.begin(), m_tags.end());
        if (m_tags.size() < few || m_known.insert(in_tag).second)
            m_tags.push_back(in_tag);
    }

    Tags Take() { return std::move(m_tags); }

private:
    Tags m_tags;
    std::unordered_set<std::string> m_known;
};

Tags Split(const std::string& in_tags)
{
    Tags tags;
    if (in_tags.empty())
        return tags;
    std::size_t begin = 0;
    for (std::size_t end = in_tags.find(';'); end != std::string::npos; end = in_tags.find(';', begin))
    {
        tags.push_back(in_tags.substr(begin, end - begin));
        begin = end + 1;
    }
    tags.push_back(in_tags.substr(begin));
    return tags;
}

Tags RuledTags(const Library& in_library, const NodeDefGroup& in_group)
{
    DistinctTags tags;
    for (const Declared& nodeDef : in_group)
        tags.Add(nodeDef.m_declaration->m_group);
    for (const Declared& nodeDef : in_group)
        tags.Add(in_library.m_documents[nodeDef.m_index.m_document].m_topFolder);
    return tags.Take();
}

Tags FolderTag(const Library& in_library, const DeclarationIndex& in_index)
{
    DistinctTags tags;
    tags.Add(in_library.m_documents[in_index.m_document].m_topFolder);
    return tags.Take();
}

Tags GroupTag(const Declaration& in_declaration)
{
    DistinctTags tags;
    tags.Add(in_declaration.m_group);
    return tags.Take();
}

/// Makes the items in the order of the library.
class ItemMaker
{
public:
    explicit ItemMaker(const Library& in_library)
        : m_library(in_library),
          m_graphs(Collect(in_library, eDeclaration::eNodeGraph)),
          m_implementations(m_graphs, Collect(in_library, eDeclaration::eImplementation))
    {
    }

    std::vector<Item> Make()
    {
        std::size_t declarations = 0; // most of them make an item
        for (const LibraryDocument& document : m_library.m_documents)
            declarations += document.m_document.GetDeclarations().size();
        m_items.reserve(declarations);
        for (const Declared& type : Collect(m_library, eDeclaration::eType))
            if (!type.m_declaration->m_name.empty())
                Add(eKind::eType, type, type.m_declaration->m_name, GroupTag(*type.m_declaration));
        for (const Declared& units : Collect(m_library, eDeclaration::eUnits))
            for (const InnerElement& unit : units.m_declaration->m_inner)
                Add(eKind::eGlobalConstant, units, unit.m_name, GroupTag(*units.m_declaration));
        for (const NodeDefGroup& group : GroupByNode(Collect(m_library, eDeclaration::eNodeDef)))
            AddNode(group);
        for (const Declared& graph : m_graphs)
            if (!graph.m_declaration->m_name.empty() && m_implementations.IsFree(*graph.m_declaration))
                AddDeclared(eKind::eCompound, graph, graph.m_declaration->m_name, FolderTag(m_library, graph.m_index));
        for (const Declared& graph : m_graphs)
            if (!graph.m_declaration->m_name.empty())
                AddGraphContent(graph);
        return std::move(m_items);
    }

private:
    void AddNode(const NodeDefGroup& in_group)
    {
        const Declared& first = in_group.front();
        const std::string& node = first.m_declaration->m_node;
        const bool isPolymorphic = in_group.size() > 1;
        const eKind kind = isPolymorphic ? eKind::ePolymorphicSolver : m_implementations.GetKind(*first.m_declaration);
        Item& item = AddDeclared(kind, first, node, RuledTags(m_library, in_group));
        item.m_isLoop = !isPolymorphic && first.m_declaration->m_isLoop;
        m_kindOfNode.emplace(node, kind);
        if (!isPolymorphic)
            return;
        for (const Declared& nodeDef : in_group)
        {
            const Declaration& declaration = *nodeDef.m_declaration;
            if (declaration.m_name.empty())
                continue;
            Item& special = AddDeclared(m_implementations.GetKind(declaration), nodeDef, declaration.m_name,
                                        RuledTags(m_library, {nodeDef}));
            special.m_isLoop = declaration.m_isLoop;
            special.m_specializes = node;
        }
    }

    /// A node inside a graph is of the kind that it is an instance of; an unknown one is a signature.
    void AddGraphContent(const Declared& in_graph)
    {
        for (const InnerElement& node : in_graph.m_declaration->m_inner)
        {
            const auto known = m_kindOfNode.find(node.m_node);
            Add(known == m_kindOfNode.end() ? eKind::eSignature : known->second, in_graph, node.m_name,
                FolderTag(m_library, in_graph.m_index))
                .m_parent = in_graph.m_declaration->m_name;
        }
    }

    Item& Add(eKind in_kind, const Declared& in_declared, const std::string& in_name, Tags in_tags)
    {
        Item& item = m_items.emplace_back();
        item.m_kind = in_kind;
        item.m_name = in_name;
        item.m_shownName = in_name;
        item.m_tags = std::move(in_tags);
        item.m_source = m_library.m_documents[in_declared.m_index.m_document].m_source;
        item.m_declaration = in_declared.m_index;
        return item;
    }

    /// Adds an item whose declaration may say how it is shown.
    Item& AddDeclared(eKind in_kind, const Declared& in_declared, const std::string& in_name, Tags in_tags)
    {
        const Declaration& declaration = *in_declared.m_declaration;
        Item& item =
            Add(in_kind, in_declared, in_name, declaration.m_tags ? Split(*declaration.m_tags) : std::move(in_tags));
        if (!declaration.m_uiName.empty())
            item.m_shownName = declaration.m_uiName;
        return item;
    }

    const Library& m_library;
    const std::vector<Declared> m_graphs;
    const Implementations m_implementations;
    std::unordered_map<std::string_view, eKind> m_kindOfNode;
    std::vector<Item> m_items;
};

} // namespace

std::string JoinTags(const std::vector<std::string>& in_tags)
{
    std::string joined;
    for (const std::string& tag : in_tags)
        joined += (&tag == &in_tags.front() ? "" : ";") + tag;
    return joined;
}

std::vector<Item> MakeItems(const Library& in_library)
{
    return ItemMaker(in_library).Make();
}

void ReadHowShown(const Library& in_library, Item& io_item)
{
    const Declaration& declaration = DeclarationOf(in_library, io_item.m_declaration);
    if (!io_item.m_parent.empty() || io_item.m_kind == eKind::eGlobalConstant)
        return; // inside the declaration
    io_item.m_shownName = declaration.m_uiName.empty() ? io_item.m_name : declaration.m_uiName;
    io_item.m_tags = declaration.m_tags ? Split(*declaration.m_tags) : TagsOfTheRules(in_library, io_item);
}

std::vector<std::string> TagsOfTheRules(const Library& in_library, const Item& in_item)
{
    const Declaration& declaration = DeclarationOf(in_library, in_item.m_declaration);
    if (declaration.m_kind == eDeclaration::eNodeGraph)
        return FolderTag(in_library, in_item.m_declaration);
    if (declaration.m_kind != eDeclaration::eNodeDef)
        return GroupTag(declaration);
    if (in_item.m_kind != eKind::ePolymorphicSolver)
        return RuledTags(in_library, {{&declaration, in_item.m_declaration}});
    NodeDefGroup group = Collect(in_library, eDeclaration::eNodeDef);
    group.erase(
        std::remove_if(group.begin(), group.end(),
                       [&](const Declared& in_nodeDef) { return in_nodeDef.m_declaration->m_node != in_item.m_name; }),
        group.end());
    return RuledTags(in_library, group);
}

} // namespace materialx
