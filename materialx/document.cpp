// SPDX-License-Identifier: MIT
#include "materialx/document.h"

#include "materialx/encoding.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace materialx
{
namespace
{

std::optional<Fault> ReadText(std::string_view in_text, Outline& out_outline,
                              std::vector<Declaration>& out_declarations)
{
    if (std::optional<Fault> fault = CheckDocument(in_text, out_outline))
        return fault;
    if (ScanStartTag(in_text, out_outline.m_root).m_name.In(in_text) != "materialx")
        return Fault{out_outline.m_root, "No MaterialX document"};
    std::vector<Span> elements = std::move(out_outline.m_elements);
    out_outline.m_elements.clear();
    out_declarations.reserve(elements.size() + 64); // so that the first new elements move none of these
    return ReadDeclarations(in_text, elements, out_declarations);
}

void Replace(std::string& io_text, const Edit& in_edit)
{
    io_text.replace(in_edit.m_offset, in_edit.m_removed.size(), in_edit.m_inserted);
}

} // namespace

std::optional<Fault> Document::Read(std::string in_bytes, std::size_t* out_line)
{
    Outline outline;
    std::vector<Declaration> declarations;
    std::optional<std::string> decoded;
    std::optional<Fault> fault = DecodeDocument(in_bytes, decoded);
    const std::string& text = decoded ? *decoded : in_bytes;
    if (!fault)
        fault = ReadText(text, outline, declarations);
    if (fault)
    {
        if (out_line)
            *out_line = LineOf(text, fault->m_offset);
        return fault;
    }
    m_canBeEdited = !decoded;
    m_bytes = std::move(in_bytes);
    m_outline = std::move(outline);
    m_declarations = std::move(declarations);
    return std::nullopt;
}

std::optional<Fault> Document::Apply(const Edit& in_edit, std::optional<Range>* out_touched)
{
    std::optional<Range> unused;
    std::optional<Range>& touched = out_touched ? *out_touched : unused;
    touched.reset();
    if (!m_canBeEdited)
        return Fault{in_edit.m_offset, "The document is not UTF-8"};
    if (in_edit.m_offset > m_bytes.size() ||
        m_bytes.compare(in_edit.m_offset, in_edit.m_removed.size(), in_edit.m_removed) != 0)
        return Fault{in_edit.m_offset, "The bytes to be replaced are not there"};
    if (in_edit.m_removed.size() == m_bytes.size() && in_edit.m_inserted.empty())
    {
        *this = Document();
        return std::nullopt;
    }
    const std::size_t editEnd = in_edit.m_offset + in_edit.m_removed.size();
    if (!m_outline.m_isEmpty && in_edit.m_offset >= m_outline.m_contentBegin && editEnd <= m_outline.m_contentEnd &&
        !IsEmpty())
        return ReadAround(in_edit, touched);
    std::string bytes = m_bytes;
    Replace(bytes, in_edit);
    std::optional<std::string> decoded;
    if (const std::optional<Fault> fault = DecodeDocument(bytes, decoded))
        return fault;
    if (decoded)
        return Fault{in_edit.m_offset, "An edit cannot change the encoding"};
    return Read(std::move(bytes));
}

std::optional<Fault> Document::ReadAround(const Edit& in_edit, std::optional<Range>& out_touched)
{
    const std::size_t editEnd = in_edit.m_offset + in_edit.m_removed.size();
    const auto first =
        std::partition_point(m_declarations.begin(), m_declarations.end(), [&](const Declaration& in_declaration) {
            return in_declaration.m_span.m_end <= in_edit.m_offset;
        });
    const auto last = std::partition_point(first, m_declarations.end(), [&](const Declaration& in_declaration) {
        return in_declaration.m_span.m_begin < editEnd;
    });
    const std::size_t oldEnd = last == m_declarations.end() ? m_outline.m_contentEnd : last->m_span.m_begin;
    // Unsigned numbers wrap around, so that adding this also makes smaller.
    const std::size_t growth = in_edit.m_inserted.size() - in_edit.m_removed.size();
    const Span part = {first == m_declarations.begin() ? m_outline.m_contentBegin : std::prev(first)->m_span.m_end,
                       oldEnd + growth};
    Replace(m_bytes, in_edit);
    std::vector<Span> elements;
    std::vector<Declaration> read;
    std::optional<Fault> fault = CheckContent(m_bytes, part, m_outline.m_hasDocumentType, elements);
    if (!fault)
        fault = ReadDeclarations(m_bytes, elements, read);
    if (fault)
    {
        Replace(m_bytes, Inverse(in_edit));
        return fault;
    }
    for (auto behind = last; behind != m_declarations.end(); ++behind)
        behind->m_span = {behind->m_span.m_begin + growth, behind->m_span.m_end + growth};
    m_outline.m_contentEnd += growth;
    if (std::equal(first, last, read.begin(), read.end(), DeclareTheSame))
    {
        const auto number = static_cast<std::size_t>(std::distance(m_declarations.begin(), first));
        out_touched = Range{number, number + read.size()};
    }
    const auto replaced = std::min(std::distance(first, last), static_cast<std::ptrdiff_t>(read.size()));
    const auto rest = std::move(read.begin(), read.begin() + replaced, first);
    if (rest != last)
        m_declarations.erase(rest, last);
    else
        m_declarations.insert(rest, std::make_move_iterator(read.begin() + replaced),
                              std::make_move_iterator(read.end()));
    return std::nullopt;
}

} // namespace materialx
