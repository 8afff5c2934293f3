// SPDX-License-Identifier: MIT
#include "materialx/newnode.h"

#include "materialx/characters.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace materialx
{
namespace
{

/// All names that a new one could be mistaken for.
class UsedNames
{
public:
    explicit UsedNames(const Library& in_library)
    {
        for (const LibraryDocument& document : in_library.m_documents)
            for (const Declaration& declaration : document.m_document.GetDeclarations())
            {
                m_names.insert(declaration.m_name);
                m_names.insert(declaration.m_node);
                m_names.insert(declaration.m_nodeDef);
                m_names.insert(declaration.m_nodeGraph);
                for (const InnerElement& inner : declaration.m_inner)
                    m_names.insert(inner.m_node);
            }
    }

    bool Has(const std::string& in_name) const { return m_names.count(in_name) != 0; }

    /// Whether a node of that name could stand in a graph, and its definition and graph beside others.
    bool IsFree(const std::string& in_node) const
    {
        // What else an element may be called where an instance of the node would stand.
        static const std::unordered_set<std::string_view> words = {
            "input",     "output",         "parameter",  "token",       "backdrop",    "nodedef",
            "nodegraph", "implementation", "typedef",    "unitdef",     "unittypedef", "attributedef",
            "look",      "material",       "property",   "propertyset", "materialx",   "geominfo",
            "targetdef", "variant",        "variantset", "collection",  "geompropdef", "unit"};
        return words.count(in_node) == 0 && !Has(in_node) && !Has("ND_" + in_node) && !Has("NG_" + in_node);
    }

private:
    std::unordered_set<std::string_view> m_names;
};

/// A name in the characters of an identifier, not yet a free one.
std::string MakeIdentifier(const std::string& in_name)
{
    std::string identifier;
    for (const char byte : in_name)
    {
        const bool isDigit = byte >= '0' && byte <= '9';
        const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
        const bool isNext = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; // of a character that has begun
        if (isDigit || isLetter)
            identifier += byte;
        else if (!isNext)
            identifier += '_';
    }
    const bool isStart = !identifier.empty() && (identifier[0] < '0' || identifier[0] > '9');
    return isStart ? identifier : "node_" + identifier;
}

std::string MakeNode(const Library& in_library, const std::string& in_name)
{
    const UsedNames used(in_library);
    const std::string identifier = MakeIdentifier(in_name);
    std::string node = identifier;
    for (int number = 2; !used.IsFree(node); ++number)
        node = identifier + "_" + std::to_string(number);
    return node;
}

/// The outputs of a definition and of those that it inherits from. A graph that implements it has the same ones.
std::vector<Output> OutputsOf(const Library& in_library, std::string in_nodeDef)
{
    std::map<std::string, std::pair<const Document*, const Declaration*>> nodeDefs;
    for (const LibraryDocument& document : in_library.m_documents)
        for (const Declaration& declaration : document.m_document.GetDeclarations())
            if (declaration.m_kind == eDeclaration::eNodeDef)
                nodeDefs.emplace(declaration.m_name, std::make_pair(&document.m_document, &declaration));
    std::vector<Output> outputs;
    for (auto base = nodeDefs.find(in_nodeDef); base != nodeDefs.end(); base = nodeDefs.find(in_nodeDef))
    {
        const auto [document, declaration] = base->second;
        for (Output& output : ReadOutputs(declaration->m_span.In(document->GetBytes())))
            if (std::none_of(outputs.begin(), outputs.end(),
                             [&](const Output& in_other) { return in_other.m_name == output.m_name; }))
                outputs.push_back(std::move(output));
        in_nodeDef = declaration->m_nodeDef;
        nodeDefs.erase(base); // definitions may inherit from each other in a circle
    }
    return outputs;
}

bool HasNodeDef(const Library& in_library, const std::string& in_name)
{
    for (const LibraryDocument& document : in_library.m_documents)
        for (const Declaration& declaration : document.m_document.GetDeclarations())
            if (declaration.m_kind == eDeclaration::eNodeDef && declaration.m_name == in_name)
                return !in_name.empty();
    return false;
}

std::string WriteGraph(const std::string& in_node, const std::vector<Output>& in_outputs, const Style& in_style)
{
    const std::string tag = in_style.m_indent + "<nodegraph" + WriteAttribute("name", "NG_" + in_node) +
                            WriteAttribute("nodedef", "ND_" + in_node);
    if (in_outputs.empty())
        return tag + in_style.m_emptyEnd;
    std::string lines = tag + ">" + in_style.m_lineEnd;
    for (const Output& output : in_outputs)
        lines += in_style.m_indent + in_style.m_indent + "<output" + WriteAttribute("name", output.m_name) +
                 WriteAttribute("type", output.m_type) + in_style.m_emptyEnd + in_style.m_lineEnd;
    return lines + in_style.m_indent + "</nodegraph>";
}

} // namespace

Plan AddNode(const Library& in_library, std::size_t in_document, const NewNode& in_node, std::string* out_nodeDef)
{
    const Document& document = DocumentOf(in_library, in_document);
    if (!document.CanBeEdited())
        return Refuse(gNotUtf8);
    if (!IsXmlText(in_node.m_name) || !IsXmlText(in_node.m_category))
        return Refuse(gNotXml);
    const Style style = StyleOf(document);
    const std::string node = MakeNode(in_library, in_node.m_name);
    const bool isInheriting = HasNodeDef(in_library, in_node.m_inherit);
    std::string nodeDef =
        style.m_indent + "<nodedef" + WriteAttribute("name", "ND_" + node) + WriteAttribute("node", node);
    if (!in_node.m_name.empty())
        nodeDef += WriteAttribute("uiname", in_node.m_name);
    if (!in_node.m_category.empty())
        nodeDef += WriteAttribute("nodegroup", in_node.m_category);
    if (isInheriting)
        nodeDef += WriteAttribute("inherit", in_node.m_inherit);
    if (in_node.m_kind == eNewKind::eLoopCompound)
        nodeDef += WriteAttribute("loop", "true");
    std::vector<std::string> lines = {nodeDef + style.m_emptyEnd};
    if (in_node.m_kind != eNewKind::eSignature)
        lines.push_back(
            WriteGraph(node, isInheriting ? OutputsOf(in_library, in_node.m_inherit) : std::vector<Output>(), style));
    if (out_nodeDef)
        *out_nodeDef = "ND_" + node;
    return {{{in_document, AppendElements(document, lines)}}, std::string()};
}

} // namespace materialx
