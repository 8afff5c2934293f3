// SPDX-License-Identifier: MIT
#include "materialx/textedits.h"

#include <algorithm>

namespace materialx
{
namespace
{

using std::size_t;

bool IsBlank(char in_byte)
{
    return in_byte == ' ' || in_byte == '\t';
}

bool IsLineEnd(char in_byte)
{
    return in_byte == '\n' || in_byte == '\r';
}

/// The offset of the first of the blanks that end at an offset.
size_t BeforeBlanks(std::string_view in_text, size_t in_offset)
{
    while (in_offset > 0 && IsBlank(in_text[in_offset - 1]))
        --in_offset;
    return in_offset;
}

size_t BehindBlanks(std::string_view in_text, size_t in_offset)
{
    while (in_offset < in_text.size() && IsBlank(in_text[in_offset]))
        ++in_offset;
    return in_offset;
}

size_t BehindLineEnd(std::string_view in_text, size_t in_offset)
{
    if (in_text.substr(in_offset, 2) == "\r\n")
        return in_offset + 2;
    return in_offset < in_text.size() && IsLineEnd(in_text[in_offset]) ? in_offset + 1 : in_offset;
}

size_t BeforeLineEnd(std::string_view in_text, size_t in_offset)
{
    if (in_offset >= 2 && in_text.substr(in_offset - 2, 2) == "\r\n")
        return in_offset - 2;
    return in_offset > 0 && IsLineEnd(in_text[in_offset - 1]) ? in_offset - 1 : in_offset;
}

/// Whether only blanks stand in front of an offset on its line.
bool IsFirstOnLine(std::string_view in_text, size_t in_offset)
{
    const size_t begin = BeforeBlanks(in_text, in_offset);
    return begin == 0 || IsLineEnd(in_text[begin - 1]);
}

Edit MakeEdit(std::string_view in_text, Span in_span, std::string in_inserted)
{
    return {in_span.m_begin, std::string(in_span.In(in_text)), std::move(in_inserted)};
}

std::string WithLineEnds(std::string_view in_text, const std::string& in_lineEnd)
{
    std::string text;
    for (size_t i = 0; i < in_text.size();)
    {
        const size_t next = BehindLineEnd(in_text, i);
        if (next > i)
            text += in_lineEnd;
        else
            text += in_text[i];
        i = std::max(next, i + 1);
    }
    return text;
}

} // namespace

Style StyleOf(const Document& in_document)
{
    Style style;
    const std::string_view text = in_document.GetBytes();
    const size_t lineEnd = text.find_first_of("\r\n");
    if (lineEnd != std::string_view::npos)
        style.m_lineEnd = text.substr(lineEnd, BehindLineEnd(text, lineEnd) - lineEnd);
    const size_t emptyEnd = text.find("/>");
    if (emptyEnd != std::string_view::npos && emptyEnd > 0 && text[emptyEnd - 1] == ' ')
        style.m_emptyEnd = " />";
    for (const Declaration& declaration : in_document.GetDeclarations())
        if (IsFirstOnLine(text, declaration.m_span.m_begin))
        {
            const size_t begin = BeforeBlanks(text, declaration.m_span.m_begin);
            style.m_indent = text.substr(begin, declaration.m_span.m_begin - begin);
            break;
        }
    return style;
}

Edit SetAttribute(std::string_view in_text, size_t in_element, std::string_view in_name, std::string_view in_value)
{
    const StartTag tag = ScanStartTag(in_text, in_element);
    if (const Attribute* const attribute = tag.Find(in_text, in_name))
        return MakeEdit(in_text, attribute->m_value, EscapeAttribute(in_value, in_text[attribute->m_value.m_end]));
    std::string space = " ";
    char quote = '"';
    size_t end = tag.m_name.m_end;
    if (!tag.m_attributes.empty())
    {
        const Attribute& last = tag.m_attributes.back();
        space = in_text.substr(last.m_begin, last.m_name.m_begin - last.m_begin);
        quote = in_text[last.m_value.m_end];
        end = last.m_value.m_end + 1;
    }
    return {end, std::string(), space + std::string(in_name) + '=' + quote + EscapeAttribute(in_value, quote) + quote};
}

Edit RemoveAttribute(std::string_view in_text, size_t in_element, std::string_view in_name)
{
    const StartTag tag = ScanStartTag(in_text, in_element);
    if (const Attribute* const attribute = tag.Find(in_text, in_name))
        return MakeEdit(in_text, {attribute->m_begin, attribute->m_value.m_end + 1}, std::string());
    return {in_element, std::string(), std::string()};
}

Edit AppendElements(const Document& in_document, const std::vector<std::string>& in_elements,
                    std::string_view in_rootTag)
{
    const Style style = StyleOf(in_document);
    const std::string_view text = in_document.GetBytes();
    std::string lines;
    for (const std::string& element : in_elements)
        lines += style.m_lineEnd + element;
    if (in_document.IsEmpty())
        return {0, std::string(),
                "<?xml version=\"1.0\"?>" + style.m_lineEnd + std::string(in_rootTag) + lines + style.m_lineEnd +
                    "</materialx>" + style.m_lineEnd};
    const Outline& outline = in_document.GetOutline();
    if (outline.m_isEmpty)
    {
        const StartTag tag = ScanStartTag(text, outline.m_root);
        const size_t end = tag.m_attributes.empty() ? tag.m_name.m_end : tag.m_attributes.back().m_value.m_end + 1;
        return MakeEdit(text, {end, tag.m_end}, ">" + lines + style.m_lineEnd + "</materialx>");
    }
    size_t end = outline.m_contentEnd;
    while (end > outline.m_contentBegin && (IsBlank(text[end - 1]) || IsLineEnd(text[end - 1])))
        --end;
    const std::string_view space = text.substr(end, outline.m_contentEnd - end);
    if (space.find_first_of("\r\n") != std::string_view::npos)
        return {end, std::string(), lines};
    return {outline.m_contentEnd, std::string(), lines + style.m_lineEnd};
}

Span CommentAbove(const Document& in_document, Span in_element)
{
    const Span none = {in_element.m_begin, in_element.m_begin};
    const std::string_view text = in_document.GetBytes();
    const size_t end = BeforeBlanks(text, BeforeLineEnd(text, BeforeBlanks(text, in_element.m_begin)));
    const size_t contentBegin = in_document.GetOutline().m_contentBegin;
    if (end < contentBegin + 7 || text.substr(end - 3, 3) != "-->")
        return none;
    const size_t begin = text.rfind("<!--", end - 7);
    if (begin == std::string_view::npos || begin < contentBegin || !IsFirstOnLine(text, begin))
        return none;
    // What looks like a comment from its ends may be the end of one behind another.
    if (text.substr(begin + 4, end - 3 - begin - 4).find("--") != std::string_view::npos)
        return none;
    return {begin, end};
}

Edit RemoveElement(const Document& in_document, Span in_element)
{
    const std::string_view text = in_document.GetBytes();
    Span gone = {CommentAbove(in_document, in_element).m_begin, in_element.m_end};
    const size_t behind = BehindBlanks(text, gone.m_end);
    const bool isLastOnLine = behind == text.size() || IsLineEnd(text[behind]);
    if (isLastOnLine)
        gone.m_begin = BeforeBlanks(text, gone.m_begin);
    if (isLastOnLine && (gone.m_begin == 0 || IsLineEnd(text[gone.m_begin - 1])))
        gone.m_end = BehindLineEnd(text, behind);
    return MakeEdit(text, gone, std::string());
}

std::string CopyElement(const Document& in_document, Span in_element, const Style& in_style,
                        const std::vector<std::pair<std::string, std::string>>& in_added)
{
    const std::string_view text = in_document.GetBytes();
    const Span comment = CommentAbove(in_document, in_element);
    std::string lines;
    if (comment.m_end > comment.m_begin)
        lines = in_style.m_indent + WithLineEnds(comment.In(text), in_style.m_lineEnd) + in_style.m_lineEnd;
    std::string element(in_element.In(text));
    for (const auto& [name, value] : in_added)
    {
        const Edit edit = SetAttribute(element, 0, name, value);
        element.insert(edit.m_offset, edit.m_inserted);
    }
    return lines + in_style.m_indent + WithLineEnds(element, in_style.m_lineEnd);
}

} // namespace materialx
