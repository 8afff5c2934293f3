// SPDX-License-Identifier: MIT
/// Where the parts of an XML text stand, in bytes, and whether the text is well-formed.
#pragma once

#include "materialx/export.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace materialx
{

/// A part of a text: offsets of its first byte and of the byte behind it.
struct Span
{
    std::size_t m_begin = 0;
    std::size_t m_end = 0;

    std::string_view In(std::string_view in_text) const { return in_text.substr(m_begin, m_end - m_begin); }
};

struct Attribute
{
    Span m_name;
    Span m_value;        ///< between the quotes
    std::size_t m_begin; ///< of the white space in front of the name
};

/// A start tag: "<name attribute="value">" or, for an element without content, "<name/>".
struct StartTag
{
    Span m_name;
    std::vector<Attribute> m_attributes;
    std::size_t m_end = 0; ///< behind ">"
    bool m_isEmpty = false;

    /// Null when there is no attribute of that name.
    const Attribute* Find(std::string_view in_text, std::string_view in_name) const;
};

/// The outermost element of a document and the elements directly inside it.
struct Outline
{
    std::size_t m_root = 0;         ///< offset of its "<"
    std::size_t m_contentBegin = 0; ///< behind its start tag
    std::size_t m_contentEnd = 0;   ///< of its end tag; the same as m_contentBegin for an empty element
    bool m_isEmpty = false;         ///< "<name/>"
    bool m_hasDocumentType = false;
    std::vector<Span> m_elements;
};

/// Why and where a text is not well-formed.
struct Fault
{
    std::size_t m_offset;
    std::string m_reason;
};

/// Checks a whole document in UTF-8, a byte order mark included. The reader of the elements takes more than XML allows;
/// this is what makes the difference an error. A reference to an entity other than the five of XML is a fault, except
/// in a document with a document type: there it may be declared, and stays the text that it is.
///
/// Time is linear, but for an element with n attributes n log n; memory grows with the depth of the nesting.
MATERIALX_EXPORT std::optional<Fault> CheckDocument(std::string_view in_text, Outline& out_outline);

/// Checks a part of a document as the content of its outermost element: whole elements, comments and text.
/// \param out_elements the elements on the top level of the part, with offsets into the text
std::optional<Fault> CheckContent(std::string_view in_text, Span in_part, bool in_hasDocumentType,
                                  std::vector<Span>& out_elements);

/// The parts of the start tag that begins at an offset of a text that was checked. Linear in the length of the tag.
StartTag ScanStartTag(std::string_view in_text, std::size_t in_begin);

/// Whether all of a text may stand in XML: UTF-8 without control characters.
bool IsXmlText(std::string_view in_text);

/// A text as it stands between quotes of the given kind.
std::string EscapeAttribute(std::string_view in_text, char in_quote);

/// The line of an offset, from 1.
std::size_t LineOf(std::string_view in_text, std::size_t in_offset);

} // namespace materialx
