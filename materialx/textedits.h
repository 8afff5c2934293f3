// SPDX-License-Identifier: MIT
/// The smallest edits of a document's text. Each says what would change; nothing is changed here.
#pragma once

#include "materialx/document.h"
#include "materialx/edit.h"
#include "materialx/export.h"
#include "materialx/markup.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Offsets of elements are those of their "<", in a text that is well-formed. Values and names are UTF-8.
namespace materialx
{

/// How a document is written, as far as its text tells.
struct Style
{
    std::string m_lineEnd = "\n";
    std::string m_indent = "  ";   ///< of the elements directly inside the outermost one
    std::string m_emptyEnd = "/>"; ///< with a space in front where the document has one
};

MATERIALX_EXPORT Style StyleOf(const Document& in_document);

/// Gives an attribute another value between the quotes that it has, or adds it behind the last one, with the quotes and
/// the white space of that.
MATERIALX_EXPORT Edit SetAttribute(std::string_view in_text, std::size_t in_element, std::string_view in_name,
                                   std::string_view in_value);

/// Removes an attribute and the white space in front of it. An edit of nothing when it is not there.
MATERIALX_EXPORT Edit RemoveAttribute(std::string_view in_text, std::size_t in_element, std::string_view in_name);

/// Adds elements behind all others, each on a line of its own. A document without bytes becomes one.
/// \param in_elements the lines of the elements; each begins with the indentation and has no line end at its end
/// \param in_rootTag the start tag of the outermost element, for a document without bytes
MATERIALX_EXPORT Edit AppendElements(const Document& in_document, const std::vector<std::string>& in_elements,
                                     std::string_view in_rootTag = "<materialx version=\"1.39\">");

/// The comment right above an element: alone on its lines, with no empty line between. Empty where there is none.
MATERIALX_EXPORT Span CommentAbove(const Document& in_document, Span in_element);

/// Removes an element and the comment right above it, with the lines that they leave empty.
MATERIALX_EXPORT Edit RemoveElement(const Document& in_document, Span in_element);

/// An element and the comment right above it as lines for another document, in the style of that. Inside the element
/// only the line ends change.
/// \param in_added names and values of attributes that the element has not, and is to have there
MATERIALX_EXPORT std::string CopyElement(const Document& in_document, Span in_element, const Style& in_style,
                                         const std::vector<std::pair<std::string, std::string>>& in_added = {});

} // namespace materialx
