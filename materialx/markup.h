// SPDX-License-Identifier: MIT
/// Whether an XML text is well-formed, and where its elements stand.
#pragma once

#include "materialx/export.h"
#include "materialx/starttag.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace materialx
{

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

/// The line of an offset, from 1.
std::size_t LineOf(std::string_view in_text, std::size_t in_offset);

} // namespace materialx
