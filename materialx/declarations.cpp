// SPDX-License-Identifier: MIT
#include "materialx/declarations.h"

#include <pugixml.hpp>

#include <utility>

namespace materialx
{
namespace
{

/// So many bytes of elements are read at once: enough that a call costs nothing, and little beside a document.
constexpr std::size_t gChunkSize = 256 * 1024;

constexpr std::pair<std::string_view, eDeclaration> gElements[] = {
    {"nodedef", eDeclaration::eNodeDef},     {"implementation", eDeclaration::eImplementation},
    {"nodegraph", eDeclaration::eNodeGraph}, {"typedef", eDeclaration::eType},
    {"unitdef", eDeclaration::eUnits},       {"attributedef", eDeclaration::eAttribute}};

eDeclaration KindOf(std::string_view in_element)
{
    for (const auto& [name, kind] : gElements)
        if (name == in_element)
            return kind;
    return eDeclaration::eOther;
}

/// Where an attribute of a kind of element goes; null for one that nobody asks for.
std::string* FieldOf(std::string_view in_attribute, Declaration& io_declaration)
{
    const eDeclaration kind = io_declaration.m_kind;
    const auto isOf = [kind](eDeclaration in_a, eDeclaration in_b) { return kind == in_a || kind == in_b; };
    if (in_attribute == "name")
        return &io_declaration.m_name;
    if (in_attribute == "uiname" && isOf(eDeclaration::eNodeDef, eDeclaration::eNodeGraph))
        return &io_declaration.m_uiName;
    if (in_attribute == "tags" && isOf(eDeclaration::eNodeDef, eDeclaration::eNodeGraph))
        return &io_declaration.m_tags.emplace();
    if (in_attribute == "nodedef" && isOf(eDeclaration::eImplementation, eDeclaration::eNodeGraph))
        return &io_declaration.m_nodeDef;
    switch (kind)
    {
    case eDeclaration::eNodeDef:
        return in_attribute == "node"        ? &io_declaration.m_node
               : in_attribute == "nodegroup" ? &io_declaration.m_group
               : in_attribute == "inherit"   ? &io_declaration.m_nodeDef
                                             : nullptr;
    case eDeclaration::eImplementation:
        return in_attribute == "nodegraph" ? &io_declaration.m_nodeGraph : nullptr;
    case eDeclaration::eType:
        return in_attribute == "semantic" ? &io_declaration.m_group : nullptr;
    case eDeclaration::eUnits:
        return in_attribute == "unittype" ? &io_declaration.m_group : nullptr;
    case eDeclaration::eAttribute:
        return in_attribute == "attrname" ? &io_declaration.m_node : nullptr;
    default:
        return nullptr;
    }
}

/// Whether an element inside a node graph is something else than a node. A node's element is called like what it is
/// an instance of, so any name may be one.
bool IsGraphInterface(std::string_view in_element)
{
    return in_element == "input" || in_element == "output" || in_element == "parameter" || in_element == "token" ||
           in_element == "backdrop" || in_element == "xi:include";
}

void ReadInner(const pugi::xml_node& in_element, Declaration& io_declaration)
{
    const bool isGraph = io_declaration.m_kind == eDeclaration::eNodeGraph;
    for (const pugi::xml_node& inner : in_element.children())
    {
        const std::string_view element = inner.name();
        const char* const name = inner.attribute("name").value();
        if (*name != '\0' && (isGraph ? !IsGraphInterface(element) : element == "unit"))
            io_declaration.m_inner.push_back({name, isGraph ? std::string(element) : std::string()});
    }
}

void Read(const pugi::xml_node& in_element, Declaration& out_declaration)
{
    out_declaration.m_kind = KindOf(in_element.name());
    for (const pugi::xml_attribute& attribute : in_element.attributes())
    {
        const std::string_view name = attribute.name();
        if (std::string* const field = FieldOf(name, out_declaration))
            *field = attribute.value();
        else if (name == "loop" && out_declaration.m_kind == eDeclaration::eNodeDef)
            out_declaration.m_isLoop = std::string_view(attribute.value()) == "true";
    }
    if (out_declaration.m_kind == eDeclaration::eNodeGraph || out_declaration.m_kind == eDeclaration::eUnits)
        ReadInner(in_element, out_declaration);
}

/// Reads a text in place: it is no longer the same afterwards.
pugi::xml_parse_result Parse(std::string& io_text, pugi::xml_document& out_elements)
{
    return out_elements.load_buffer_inplace(io_text.data(), io_text.size(),
                                            pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_eol,
                                            pugi::encoding_utf8);
}

} // namespace

bool DeclareTheSame(const Declaration& in_a, const Declaration& in_b)
{
    return in_a.m_kind == in_b.m_kind && in_a.m_isLoop == in_b.m_isLoop && in_a.m_name == in_b.m_name &&
           in_a.m_node == in_b.m_node && in_a.m_nodeDef == in_b.m_nodeDef && in_a.m_nodeGraph == in_b.m_nodeGraph &&
           in_a.m_group == in_b.m_group && in_a.m_inner == in_b.m_inner;
}

bool SayTheSame(const Declaration& in_a, const Declaration& in_b)
{
    return DeclareTheSame(in_a, in_b) && in_a.m_uiName == in_b.m_uiName && in_a.m_tags == in_b.m_tags;
}

std::optional<Fault> ReadDeclarations(std::string_view in_text, const std::vector<Span>& in_elements,
                                      std::vector<Declaration>& io_declarations)
{
    pugi::xml_document chunk;
    std::string bytes;
    io_declarations.reserve(io_declarations.size() + in_elements.size());
    for (std::size_t first = 0; first < in_elements.size();)
    {
        const std::size_t begin = in_elements[first].m_begin;
        std::size_t last = first + 1;
        while (last < in_elements.size() && in_elements[last].m_end - begin <= gChunkSize)
            ++last;
        bytes.assign(in_text.substr(begin, in_elements[last - 1].m_end - begin));
        const pugi::xml_parse_result result = Parse(bytes, chunk);
        if (!result)
            return Fault{begin + static_cast<std::size_t>(result.offset), result.description()};
        pugi::xml_node element = chunk.first_child();
        for (; first < last; ++first, element = element.next_sibling())
        {
            Declaration declaration;
            declaration.m_span = in_elements[first];
            Read(element, declaration);
            io_declarations.push_back(std::move(declaration));
        }
    }
    return std::nullopt;
}

std::string ReadAttribute(std::string_view in_text, std::size_t in_element, std::string_view in_name)
{
    const StartTag tag = ScanStartTag(in_text, in_element);
    const Attribute* const attribute = tag.Find(in_text, in_name);
    if (!attribute)
        return std::string();
    std::string element =
        "<a" + std::string(in_text.substr(attribute->m_begin, attribute->m_value.m_end + 1 - attribute->m_begin)) +
        "/>";
    pugi::xml_document document;
    Parse(element, document);
    return document.first_child().first_attribute().value();
}

std::vector<Output> ReadOutputs(std::string_view in_element)
{
    std::string element(in_element);
    pugi::xml_document document;
    Parse(element, document);
    std::vector<Output> outputs;
    for (const pugi::xml_node& output : document.first_child().children("output"))
        outputs.push_back({output.attribute("name").value(), output.attribute("type").value()});
    return outputs;
}

} // namespace materialx
