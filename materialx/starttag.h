// SPDX-License-Identifier: MIT
/// Where the parts of a start tag stand in a text, in bytes.
#pragma once

#include <cstddef>
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

/// The parts of the start tag that begins at an offset of a text that was checked. Linear in the length of the tag.
StartTag ScanStartTag(std::string_view in_text, std::size_t in_begin);

/// A text as it stands between quotes of the given kind.
std::string EscapeAttribute(std::string_view in_text, char in_quote);

/// An attribute with a space in front, in double quotes.
std::string WriteAttribute(std::string_view in_name, std::string_view in_value);

} // namespace materialx
