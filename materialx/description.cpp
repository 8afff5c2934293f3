// SPDX-License-Identifier: MIT
#include "materialx/description.h"

#include "materialx/encoding.h"

#include <pugixml.hpp>

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace materialx
{
namespace
{

/// So many definitions may inherit from each other. It ends circles.
constexpr int gMostAncestors = 64;

/// The texts that declarations stand in.
class Texts
{
public:
    explicit Texts(const Library& in_library) : m_library(in_library) {}

    std::string_view Of(std::size_t in_document)
    {
        const Document& document = m_library.m_documents[in_document].m_document;
        if (document.CanBeEdited())
            return document.GetBytes();
        const auto [known, isNew] = m_decoded.emplace(in_document, std::nullopt);
        if (isNew)
            DecodeDocument(document.GetBytes(), known->second);
        return known->second ? std::string_view(*known->second) : std::string_view(document.GetBytes());
    }

private:
    const Library& m_library;
    std::unordered_map<std::size_t, std::optional<std::string>> m_decoded;
};

/// Reads a declaration once more, with all that stands in it.
void Parse(std::string_view in_element, pugi::xml_document& out_element)
{
    out_element.load_buffer(in_element.data(), in_element.size(),
                            pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_eol, pugi::encoding_utf8);
}

/// The definitions of a library by their names; the first one of each name. Found when the first one is asked for.
class Definitions
{
public:
    explicit Definitions(const Library& in_library) : m_library(in_library) {}

    std::optional<DeclarationIndex> Find(const std::string& in_name)
    {
        if (!std::exchange(m_isRead, true))
            Read();
        const auto found = m_byName.find(in_name);
        return found == m_byName.end() ? std::nullopt : std::optional<DeclarationIndex>(found->second);
    }

private:
    void Read()
    {
        for (const std::size_t document : InPathOrder(m_library))
        {
            const std::vector<Declaration>& all = m_library.m_documents[document].m_document.GetDeclarations();
            for (std::size_t i = 0; i < all.size(); ++i)
                if (all[i].m_kind == eDeclaration::eNodeDef)
                    m_byName.emplace(all[i].m_name, DeclarationIndex{document, i});
        }
    }

    const Library& m_library;
    bool m_isRead = false;
    std::unordered_map<std::string_view, DeclarationIndex> m_byName;
};

/// A declaration behind those that it inherits from, the farthest first.
std::vector<DeclarationIndex> WithAncestors(const Library& in_library, const DeclarationIndex& in_index,
                                            Definitions& io_definitions)
{
    std::vector<DeclarationIndex> line = {in_index};
    while (static_cast<int>(line.size()) < gMostAncestors)
    {
        const Declaration& declaration = DeclarationOf(in_library, line.back());
        if (declaration.m_kind != eDeclaration::eNodeDef || declaration.m_nodeDef.empty())
            break;
        const std::optional<DeclarationIndex> ancestor = io_definitions.Find(declaration.m_nodeDef);
        if (!ancestor)
            break;
        line.push_back(*ancestor);
    }
    std::reverse(line.begin(), line.end());
    return line;
}

/// Inputs or outputs in the order in which they are first named.
class Ports
{
public:
    /// Takes one of a definition; one of the same name that the definition inherits is replaced.
    void Put(Port in_port)
    {
        const auto [known, isNew] = m_indexOfName.emplace(in_port.m_name, m_ports.size());
        if (isNew)
            m_ports.push_back(std::move(in_port));
        else
            m_ports[known->second] = std::move(in_port);
    }

    /// Takes those of another definition of the same node.
    void Merge(const Ports& in_other)
    {
        for (const Port& port : in_other.m_ports)
        {
            const auto [known, isNew] = m_indexOfName.emplace(port.m_name, m_ports.size());
            if (isNew)
                m_ports.push_back(port);
            Merge(port, m_ports[known->second]);
        }
    }

    std::vector<Port> Take() { return std::move(m_ports); }

private:
    void Merge(const Port& in_other, Port& io_port)
    {
        // No text of a document has a zero byte. The first one has its type already.
        const bool isNewType = m_types.insert(in_other.m_name + '\0' + in_other.m_type).second;
        if (isNewType && in_other.m_type != io_port.m_type)
            io_port.m_type += ", " + in_other.m_type;
        if (io_port.m_value != in_other.m_value)
            io_port.m_value.clear();
    }

    std::vector<Port> m_ports;
    std::unordered_map<std::string, std::size_t> m_indexOfName;
    std::unordered_set<std::string> m_types; ///< of what was merged: names and types
};

struct Interface
{
    Ports m_inputs;
    Ports m_outputs;
};

void ReadPorts(const pugi::xml_node& in_element, Interface& io_interface)
{
    for (const pugi::xml_node& child : in_element.children())
    {
        const std::string_view element = child.name();
        const Port port = {child.attribute("name").value(), child.attribute("type").value(),
                           child.attribute("value").value()};
        if (port.m_name.empty())
            continue;
        if (element == "input" || element == "parameter" || element == "token")
            io_interface.m_inputs.Put(port);
        else if (element == "output")
            io_interface.m_outputs.Put({port.m_name, port.m_type, std::string()});
    }
}

Interface InterfaceOf(const Library& in_library, const DeclarationIndex& in_index, Texts& io_texts,
                      Definitions& io_definitions)
{
    Interface found;
    for (const DeclarationIndex& index : WithAncestors(in_library, in_index, io_definitions))
    {
        pugi::xml_document element;
        Parse(DeclarationOf(in_library, index).m_span.In(io_texts.Of(index.m_document)), element);
        ReadPorts(element.first_child(), found);
    }
    return found;
}

std::string DocOf(const Library& in_library, const Item& in_item, Texts& io_texts)
{
    pugi::xml_document parsed;
    const DeclarationIndex& index = in_item.m_declaration;
    Parse(DeclarationOf(in_library, index).m_span.In(io_texts.Of(index.m_document)), parsed);
    const pugi::xml_node element = parsed.first_child();
    const bool isInside = !in_item.m_parent.empty() || in_item.m_kind == eKind::eGlobalConstant;
    return isInside ? element.find_child_by_attribute("name", in_item.m_name.c_str()).attribute("doc").value()
                    : element.attribute("doc").value();
}

} // namespace

Description Describe(const Library& in_library, const Item& in_item,
                     const std::vector<DeclarationIndex>& in_declarations)
{
    Texts texts(in_library);
    const DeclarationIndex& first = in_item.m_declaration;
    const Declaration& declaration = DeclarationOf(in_library, first);
    const LibraryDocument& document = in_library.m_documents[first.m_document];
    Description description;
    description.m_name = in_item.m_shownName;
    description.m_doc = DocOf(in_library, in_item, texts);
    description.m_group = in_item.m_parent.empty() ? declaration.m_group : std::string();
    description.m_tags = in_item.m_tags;
    description.m_document = document.m_relativePath;
    description.m_line = LineOf(texts.Of(first.m_document), declaration.m_span.m_begin);
    if (!in_item.m_parent.empty() ||
        (declaration.m_kind != eDeclaration::eNodeDef && declaration.m_kind != eDeclaration::eNodeGraph))
        return description;
    Definitions definitions(in_library);
    Interface all;
    for (const DeclarationIndex& index : in_declarations)
    {
        const Interface own = InterfaceOf(in_library, index, texts, definitions);
        all.m_inputs.Merge(own.m_inputs);
        all.m_outputs.Merge(own.m_outputs);
    }
    description.m_inputs = all.m_inputs.Take();
    description.m_outputs = all.m_outputs.Take();
    description.m_definitions = in_declarations.size();
    return description;
}

} // namespace materialx
