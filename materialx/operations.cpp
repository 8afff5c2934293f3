// SPDX-License-Identifier: MIT
#include "materialx/operations.h"

#include "materialx/characters.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace materialx
{
namespace
{

/// Why the attributes of an item cannot be changed to hold a text; empty when they can.
std::string WhyNotWritable(const Library& in_library, const Item& in_item, const std::string& in_text)
{
    if (!in_item.m_parent.empty() || !IsNodeOrGraph(DeclarationOf(in_library, in_item.m_declaration)))
        return "Only nodes can be changed.";
    if (!DocumentOf(in_library, in_item.m_declaration.m_document).CanBeEdited())
        return gNotUtf8;
    return IsXmlText(in_text) ? std::string() : gNotXml;
}

/// Sets an attribute of the declaration of an item, or removes it.
DocumentEdit EditAttribute(const Library& in_library, const Item& in_item, std::string_view in_name,
                           const std::string* in_value)
{
    const std::size_t document = in_item.m_declaration.m_document;
    const std::string& text = DocumentOf(in_library, document).GetBytes();
    const std::size_t element = DeclarationOf(in_library, in_item.m_declaration).m_span.m_begin;
    return {document,
            in_value ? SetAttribute(text, element, in_name, *in_value) : RemoveAttribute(text, element, in_name)};
}

} // namespace

Plan Refuse(std::string in_reason)
{
    return {{}, std::move(in_reason)};
}

void DeclareTags(const Document& in_document, const Style& in_style, std::vector<std::string>& io_lines)
{
    const std::vector<Declaration>& declarations = in_document.GetDeclarations();
    const auto has = [&declarations](const auto& in_condition) {
        return std::any_of(declarations.begin(), declarations.end(), in_condition);
    };
    if (has([](const Declaration& in_declaration) {
            return in_declaration.m_kind == eDeclaration::eAttribute && in_declaration.m_node == "tags";
        }))
        return;
    std::string name = "AD_tags";
    while (has([&name](const Declaration& in_declaration) { return in_declaration.m_name == name; }))
        name += '_';
    io_lines.push_back(in_style.m_indent + "<attributedef name=\"" + name +
                       "\" attrname=\"tags\" type=\"string\" value=\"\" elements=\"nodedef,nodegraph\"" +
                       in_style.m_emptyEnd);
}

Plan Rename(const Library& in_library, const Item& in_item, const std::string& in_name)
{
    const std::string refusal = WhyNotWritable(in_library, in_item, in_name);
    if (!refusal.empty())
        return Refuse(refusal);
    if (in_name == in_item.m_shownName)
        return Plan();
    const bool isPlain = in_name.empty() || in_name == in_item.m_name;
    return {{EditAttribute(in_library, in_item, "uiname", isPlain ? nullptr : &in_name)}, std::string()};
}

Plan SetTags(const Library& in_library, const Item& in_item, const std::string& in_tags)
{
    const std::string refusal = WhyNotWritable(in_library, in_item, in_tags);
    if (!refusal.empty())
        return Refuse(refusal);
    if (in_tags == JoinTags(in_item.m_tags))
        return Plan();
    if (in_tags == JoinTags(TagsOfTheRules(in_library, in_item)))
        return {{EditAttribute(in_library, in_item, "tags", nullptr)}, std::string()};
    // What stands further behind is edited first, so that the offsets before it stay.
    Plan plan;
    const std::size_t index = in_item.m_declaration.m_document;
    const Document& document = DocumentOf(in_library, index);
    std::vector<std::string> lines;
    DeclareTags(document, StyleOf(document), lines);
    if (!lines.empty())
        plan.m_change.push_back({index, AppendElements(document, lines)});
    plan.m_change.push_back(EditAttribute(in_library, in_item, "tags", &in_tags));
    return plan;
}

} // namespace materialx
