// SPDX-License-Identifier: MIT
#include "materialx/moving.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace materialx
{
namespace
{

/// An attribute of the outermost element; empty without it.
std::string RootAttribute(const Document& in_document, const char* in_name)
{
    return in_document.IsEmpty() ? std::string()
                                 : ReadAttribute(in_document.GetBytes(), in_document.GetOutline().m_root, in_name);
}

/// Attributes that elements take from the outermost one.
constexpr const char* gInherited[] = {"colorspace", "fileprefix", "geomprefix"};

/// Why an element would not mean the same in another document; empty when it would.
std::string WhyOtherMeaning(const Document& in_from, const Document& in_to)
{
    for (const char* const name : {"version", "namespace"})
        if (!in_to.IsEmpty() && RootAttribute(in_from, name) != RootAttribute(in_to, name))
            return std::string("The documents differ in \"") + name + "\".";
    for (const char* const name : gInherited)
        if (RootAttribute(in_from, name).empty() && !RootAttribute(in_to, name).empty())
            return std::string("There the elements would come under a \"") + name + "\" of the document.";
    return std::string();
}

/// The start tag for a new document that takes elements of another one.
std::string RootTagLike(const Document& in_from)
{
    std::string tag = "<materialx";
    for (const char* const name : {"version", "namespace"})
        if (const std::string value = RootAttribute(in_from, name); !value.empty())
            tag += WriteAttribute(name, value);
    return tag + ">";
}

/// The lines of an element for another document, with the attributes that it took from the outermost element.
std::string LinesFor(const Document& in_from, const Declaration& in_element, const Document& in_to,
                     const Style& in_style)
{
    std::vector<std::pair<std::string, std::string>> added;
    for (const char* const name : gInherited)
    {
        const std::string value = RootAttribute(in_from, name);
        const StartTag tag = ScanStartTag(in_from.GetBytes(), in_element.m_span.m_begin);
        if (IsNodeOrGraph(in_element) && value != RootAttribute(in_to, name) && !tag.Find(in_from.GetBytes(), name))
            added.emplace_back(name, value);
    }
    return CopyElement(in_from, in_element.m_span, in_style, added);
}

/// The document that takes the elements of another one when they come into a source.
std::size_t TargetOf(std::size_t in_document, std::size_t in_source, Library& io_library)
{
    const auto fileName = [](const LibraryDocument& in_of) {
        return in_of.m_relativePath.section(QLatin1Char('/'), -1);
    };
    const QString wanted = fileName(io_library.m_documents[in_document]);
    for (const std::size_t i : InPathOrder(io_library))
    {
        const LibraryDocument& document = io_library.m_documents[i];
        if (document.m_source == in_source && !document.m_document.IsEmpty() && fileName(document) == wanted)
            return i;
    }
    const Source& source = io_library.m_sources[in_source];
    const QString prefix = source.m_folder.isEmpty() ? QString() : source.m_folder + QLatin1Char('/');
    return FindOrAddDocument(prefix + source.m_name + QStringLiteral(".mtlx"), io_library);
}

/// Indices of documents.
using Documents = std::vector<std::size_t>;
using DocumentsByName = std::unordered_map<std::string_view, Documents>;
using NamesByName = std::unordered_map<std::string_view, std::vector<std::string_view>>;

/// Adds a document that is the last one of the list, or comes behind it.
void Add(std::size_t in_document, Documents& io_documents)
{
    if (io_documents.empty() || io_documents.back() != in_document)
        io_documents.push_back(in_document);
}

void Append(const DocumentsByName& in_from, std::string_view in_name, Documents& io_documents)
{
    if (const auto found = in_from.find(in_name); found != in_from.end())
        io_documents.insert(io_documents.end(), found->second.begin(), found->second.end());
}

template <class Value> void SortDistinct(std::vector<Value>& io_values)
{
    std::sort(io_values.begin(), io_values.end());
    io_values.erase(std::unique(io_values.begin(), io_values.end()), io_values.end());
}

} // namespace

std::vector<DeclarationIndex> ElementsOf(const Library& in_library, const Item& in_item)
{
    const Declaration& first = DeclarationOf(in_library, in_item.m_declaration);
    if (first.m_kind != eDeclaration::eNodeDef)
        return {in_item.m_declaration};
    const bool isPolymorphic = in_item.m_kind == eKind::ePolymorphicSolver;
    const auto isDefinition = [&](const Declaration& in_declaration) {
        return isPolymorphic ? in_declaration.m_kind == eDeclaration::eNodeDef && in_declaration.m_node == first.m_node
                             : &in_declaration == &first;
    };
    std::unordered_set<std::string_view> nodeDefs;
    std::unordered_set<std::string_view> graphs;
    const auto forEach = [&in_library](const auto& in_visit) {
        for (const std::size_t document : InPathOrder(in_library))
            for (const Declaration& declaration : DocumentOf(in_library, document).GetDeclarations())
                in_visit(document, declaration);
    };
    forEach([&](std::size_t, const Declaration& in_declaration) {
        if (isDefinition(in_declaration))
            nodeDefs.insert(in_declaration.m_name);
    });
    nodeDefs.erase(std::string_view());
    forEach([&](std::size_t, const Declaration& in_declaration) {
        if (in_declaration.m_kind == eDeclaration::eImplementation && nodeDefs.count(in_declaration.m_nodeDef) != 0)
            graphs.insert(in_declaration.m_nodeGraph);
    });
    graphs.erase(std::string_view());
    std::vector<DeclarationIndex> elements;
    forEach([&](std::size_t in_document, const Declaration& in_declaration) {
        const bool isGraph = in_declaration.m_kind == eDeclaration::eNodeGraph;
        const bool isImplementation = isGraph || in_declaration.m_kind == eDeclaration::eImplementation;
        if (isDefinition(in_declaration) || (isImplementation && nodeDefs.count(in_declaration.m_nodeDef) != 0) ||
            (isGraph && graphs.count(in_declaration.m_name) != 0))
            elements.push_back(
                {in_document, static_cast<std::size_t>(&in_declaration -
                                                       DocumentOf(in_library, in_document).GetDeclarations().data())});
    });
    return elements;
}

ItemDocuments DocumentsOf(const Library& in_library, const std::vector<Item>& in_items)
{
    DocumentsByName ofNode;           // of its definitions, for nodes with several
    DocumentsByName ofGraph;          // by name
    DocumentsByName ofImplementation; // of what implements a definition
    NamesByName graphsOf;             // that a definition's name
    NamesByName nodeDefsOf;           // of a node with several
    for (const Item& item : in_items)
        if (item.m_kind == eKind::ePolymorphicSolver)
            ofNode[DeclarationOf(in_library, item.m_declaration).m_node];
    for (std::size_t i = 0; i < in_library.m_documents.size(); ++i)
        for (const Declaration& declaration : DocumentOf(in_library, i).GetDeclarations())
            switch (declaration.m_kind)
            {
            case eDeclaration::eNodeDef:
                if (const auto node = ofNode.find(declaration.m_node); node != ofNode.end())
                {
                    Add(i, node->second);
                    nodeDefsOf[declaration.m_node].push_back(declaration.m_name);
                }
                break;
            case eDeclaration::eImplementation:
                Add(i, ofImplementation[declaration.m_nodeDef]);
                graphsOf[declaration.m_nodeDef].push_back(declaration.m_nodeGraph);
                break;
            case eDeclaration::eNodeGraph:
                Add(i, ofImplementation[declaration.m_nodeDef]);
                Add(i, ofGraph[declaration.m_name]);
                break;
            default:
                break;
            }
    ofImplementation.erase(std::string_view());
    graphsOf.erase(std::string_view());
    ofGraph.erase(std::string_view());
    // Any number of elements may have one name: what follows from a name is found once, and not for each of them.
    for (auto& [nodeDef, graphs] : graphsOf)
    {
        Documents& documents = ofImplementation[nodeDef];
        SortDistinct(graphs);
        for (const std::string_view graph : graphs)
            Append(ofGraph, graph, documents);
        SortDistinct(documents);
    }
    for (auto& [node, nodeDefs] : nodeDefsOf)
        SortDistinct(nodeDefs);
    ItemDocuments all;
    Documents documents;
    for (const Item& item : in_items)
    {
        documents.assign(1, item.m_declaration.m_document);
        const Declaration& first = DeclarationOf(in_library, item.m_declaration);
        if (first.m_kind == eDeclaration::eNodeDef && item.m_kind == eKind::ePolymorphicSolver)
        {
            Append(ofNode, first.m_node, documents);
            for (const std::string_view nodeDef : nodeDefsOf[first.m_node])
                Append(ofImplementation, nodeDef, documents);
        }
        else if (first.m_kind == eDeclaration::eNodeDef)
            Append(ofImplementation, first.m_name, documents);
        SortDistinct(documents);
        all.Append(documents);
    }
    return all;
}

Plan Remove(const Library& in_library, const Item& in_item)
{
    if (!in_item.m_parent.empty() || in_item.m_kind == eKind::eGlobalConstant)
        return Refuse("Only types and nodes can be removed.");
    if (!in_item.m_specializes.empty() || in_item.m_kind == eKind::ePolymorphicSolver)
        return Refuse("A node with several definitions cannot be removed.");
    const std::vector<DeclarationIndex> elements = ElementsOf(in_library, in_item);
    std::unordered_set<std::string_view> graphs;
    std::unordered_set<const Declaration*> gone;
    for (const DeclarationIndex& element : elements)
    {
        const Declaration& declaration = DeclarationOf(in_library, element);
        gone.insert(&declaration);
        if (declaration.m_kind == eDeclaration::eNodeGraph)
            graphs.insert(declaration.m_name);
    }
    for (const LibraryDocument& document : in_library.m_documents)
        for (const Declaration& declaration : document.m_document.GetDeclarations())
            if (declaration.m_kind == eDeclaration::eImplementation && gone.count(&declaration) == 0 &&
                graphs.count(declaration.m_nodeGraph) != 0)
                return Refuse("Its graph implements another node, too.");
    Plan plan;
    // From the last one to the first, so that the offsets before it stay.
    for (auto element = elements.rbegin(); element != elements.rend(); ++element)
    {
        const Document& document = DocumentOf(in_library, element->m_document);
        if (!document.CanBeEdited())
            return Refuse(gNotUtf8);
        plan.m_change.push_back(
            {element->m_document, RemoveElement(document, DeclarationOf(in_library, *element).m_span)});
    }
    return plan;
}

Plan Move(Library& io_library, const Item& in_item, std::size_t in_source)
{
    if (!in_item.m_parent.empty() || in_item.m_kind == eKind::eGlobalConstant)
        return Refuse("Only types and nodes can be moved.");
    std::vector<DeclarationIndex> elements = ElementsOf(io_library, in_item);
    elements.erase(std::remove_if(elements.begin(), elements.end(),
                                  [&](const DeclarationIndex& in_index) {
                                      return io_library.m_documents[in_index.m_document].m_source == in_source;
                                  }),
                   elements.end());
    // Targets first: that may add documents, after which no reference into the list would be good.
    std::map<std::size_t, std::size_t> targetOf;
    for (const DeclarationIndex& element : elements)
        if (targetOf.count(element.m_document) == 0)
            targetOf[element.m_document] = TargetOf(element.m_document, in_source, io_library);
    std::map<std::size_t, std::vector<std::string>> linesOf;
    std::map<std::size_t, std::string> rootTagOf;
    std::unordered_set<std::size_t> withTags;
    Plan plan;
    // From the last one to the first, so that the offsets before it stay.
    for (auto element = elements.rbegin(); element != elements.rend(); ++element)
    {
        const Document& from = DocumentOf(io_library, element->m_document);
        const std::size_t target = targetOf[element->m_document];
        const Document& to = DocumentOf(io_library, target);
        if (!from.CanBeEdited() || !to.CanBeEdited())
            return Refuse(gNotUtf8);
        const std::string refusal = WhyOtherMeaning(from, to);
        if (!refusal.empty())
            return Refuse(refusal);
        const std::string rootTag = RootTagLike(from);
        if (rootTagOf.emplace(target, rootTag).first->second != rootTag)
            return Refuse("The documents of the elements differ in \"version\" or \"namespace\".");
        const Declaration& declaration = DeclarationOf(io_library, *element);
        if (declaration.m_tags)
            withTags.insert(target);
        std::vector<std::string>& lines = linesOf[target];
        lines.insert(lines.begin(), LinesFor(from, declaration, to, StyleOf(to)));
        plan.m_change.push_back({element->m_document, RemoveElement(from, declaration.m_span)});
    }
    for (auto& [target, lines] : linesOf)
    {
        const Document& to = DocumentOf(io_library, target);
        if (withTags.count(target) != 0)
            DeclareTags(to, StyleOf(to), lines);
        plan.m_change.push_back({target, AppendElements(to, lines, rootTagOf[target])});
    }
    return plan;
}

} // namespace materialx
