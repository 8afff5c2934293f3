// SPDX-License-Identifier: MIT
#include "materialx/markup.h"

#include "materialx/characters.h"

#include <algorithm>

namespace materialx
{
namespace
{

using std::size_t;

/// Goes through a text once. A function that returns false has set the fault.
class Checker
{
public:
    Checker(std::string_view in_text, size_t in_begin, size_t in_end)
        : m_text(in_text.substr(0, in_end)), m_offset(in_begin)
    {
    }

    std::optional<Fault> Document(Outline& out_outline)
    {
        if (!Prolog() || !Root(out_outline) || !Epilog())
            return m_fault;
        out_outline.m_hasDocumentType = m_hasDocumentType;
        return std::nullopt;
    }

    std::optional<Fault> Content(bool in_hasDocumentType, std::vector<Span>& out_elements)
    {
        m_hasDocumentType = in_hasDocumentType;
        while (m_offset < m_text.size())
            if (!Piece(out_elements))
                return m_fault;
        if (!m_open.empty())
            Fail(m_text.size(), "An element is not closed");
        return m_fault;
    }

private:
    bool Fail(size_t in_offset, const char* in_reason)
    {
        if (!m_fault)
            m_fault = Fault{std::min(in_offset, m_text.size()), in_reason};
        return false;
    }

    bool StartsWith(std::string_view in_start) const { return m_text.substr(m_offset, in_start.size()) == in_start; }
    char Next() const { return m_offset < m_text.size() ? m_text[m_offset] : '\0'; }

    bool SkipSpace()
    {
        const size_t begin = m_offset;
        while (m_offset < m_text.size() && Is(m_text[m_offset], eSpace))
            ++m_offset;
        return m_offset > begin;
    }

    bool SkipBehind(std::string_view in_end, size_t in_from, const char* in_reason)
    {
        const size_t end = m_text.find(in_end, in_from);
        if (end == std::string_view::npos)
            return Fail(m_text.size(), in_reason);
        m_offset = end + in_end.size();
        return true;
    }

    bool Name(Span& out_name)
    {
        out_name.m_begin = m_offset;
        if (!Is(Next(), eNameStart))
            return Fail(m_offset, m_offset < m_text.size() ? "A name is expected" : "The document ends too early");
        while (m_offset < m_text.size() && Is(m_text[m_offset], eName))
            ++m_offset;
        out_name.m_end = m_offset;
        return true;
    }

    bool Prolog()
    {
        if (StartsWith("\xEF\xBB\xBF"))
            m_offset += 3;
        if (StartsWith("<?xml") && m_offset + 5 < m_text.size() && Is(m_text[m_offset + 5], eSpace) &&
            !SkipBehind("?>", m_offset, "The XML declaration is not closed"))
            return false;
        while (true)
        {
            if (!Misc())
                return false;
            if (!StartsWith("<!DOCTYPE"))
                break;
            if (m_hasDocumentType)
                return Fail(m_offset, "A second document type");
            m_hasDocumentType = true;
            if (!DocumentType())
                return false;
        }
        return true;
    }

    /// White space, comments and instructions outside the outermost element.
    bool Misc()
    {
        while (SkipSpace() || StartsWith("<!--") || StartsWith("<?"))
            if ((StartsWith("<!--") && !Comment()) || (StartsWith("<?") && !Instruction()))
                return false;
        return true;
    }

    bool Epilog()
    {
        return Misc() && (m_offset == m_text.size() || Fail(m_offset, "Text behind the outermost element"));
    }

    bool Root(Outline& out_outline)
    {
        out_outline.m_root = m_offset;
        if (m_offset == m_text.size())
            return Fail(m_offset, "The document has no element");
        if (Next() != '<')
            return Fail(m_offset, "Text in front of the outermost element");
        bool isEmpty = false;
        if (!Tag(isEmpty))
            return false;
        out_outline.m_contentBegin = m_offset;
        out_outline.m_contentEnd = m_offset;
        out_outline.m_isEmpty = isEmpty;
        m_topDepth = 1;
        while (!m_open.empty())
        {
            out_outline.m_contentEnd = m_offset;
            if (m_offset == m_text.size())
                return Fail(m_offset, "The document ends too early");
            if (!Piece(out_outline.m_elements))
                return false;
        }
        return true;
    }

    /// Text up to the next "<", or what begins there.
    bool Piece(std::vector<Span>& out_elements)
    {
        if (Next() != '<')
            return Text();
        switch (m_offset + 1 < m_text.size() ? m_text[m_offset + 1] : '\0')
        {
        case '!':
            return StartsWith("<![CDATA[") ? SkipBehind("]]>", m_offset, "A CDATA section is not closed") : Comment();
        case '?':
            return Instruction();
        case '/':
            return EndTag(out_elements);
        default:
            break;
        }
        // In a whole document the outermost element is open, in a part of one nothing is.
        const size_t begin = m_offset;
        const size_t depth = m_open.size();
        if (depth == m_topDepth)
            m_topBegin = begin;
        bool isEmpty = false;
        if (!Tag(isEmpty))
            return false;
        if (isEmpty && depth == m_topDepth)
            out_elements.push_back({begin, m_offset});
        return true;
    }

    bool Text()
    {
        const size_t found = m_text.find('<', m_offset);
        const size_t end = found == std::string_view::npos ? m_text.size() : found;
        SkipSpace();
        while (m_offset < end)
        {
            const char byte = m_text[m_offset];
            if (byte == '&' && !Reference(m_offset))
                return false;
            if (byte == ']' && StartsWith("]]>"))
                return Fail(m_offset, "\"]]>\" outside a CDATA section");
            ++m_offset;
        }
        return true;
    }

    bool Comment()
    {
        if (!StartsWith("<!--"))
            return Fail(m_offset, "\"<!\" begins nothing that may stand here");
        const size_t begin = m_offset;
        if (!SkipBehind("--", begin + 4, "A comment is not closed"))
            return false;
        if (Next() != '>')
            return Fail(m_offset, m_offset < m_text.size() ? "\"--\" inside a comment" : "A comment is not closed");
        ++m_offset;
        return true;
    }

    bool Instruction()
    {
        const size_t begin = m_offset;
        m_offset += 2;
        Span target;
        if (!Name(target))
            return false;
        std::string name(target.In(m_text));
        std::transform(name.begin(), name.end(), name.begin(), [](char c) { return static_cast<char>(c | 0x20); });
        if (name == "xml")
            return Fail(begin, "An XML declaration that is not at the start");
        if (!Is(Next(), eSpace) && !StartsWith("?>"))
            return Fail(m_offset, "White space is expected");
        return SkipBehind("?>", m_offset, "An instruction is not closed");
    }

    /// The declarations inside are passed over: nothing of them is ever used.
    bool DocumentType()
    {
        bool isInside = false;
        for (m_offset += 9; m_offset < m_text.size();)
        {
            const char byte = m_text[m_offset];
            if (byte == '"' || byte == '\'')
            {
                if (!SkipBehind(std::string_view(&byte, 1), m_offset + 1, "The document type is not closed"))
                    return false;
            }
            else if (StartsWith("<!--") || StartsWith("<?"))
            {
                if (!(StartsWith("<?") ? Instruction() : Comment()))
                    return false;
            }
            else
            {
                ++m_offset;
                if (byte == '[')
                    isInside = true;
                else if (byte == ']')
                    isInside = false;
                else if (byte == '>' && !isInside)
                    return true;
            }
        }
        return Fail(m_offset, "The document type is not closed");
    }

    bool Tag(bool& out_isEmpty)
    {
        ++m_offset;
        Span name;
        if (!Name(name))
            return false;
        m_names.clear();
        while (true)
        {
            const bool isSpace = SkipSpace();
            const char byte = Next();
            if (byte == '>')
            {
                ++m_offset;
                m_open.push_back(name);
                out_isEmpty = false;
                break;
            }
            if (byte == '/')
            {
                ++m_offset;
                if (Next() != '>')
                    return Fail(m_offset, "\">\" is expected");
                ++m_offset;
                out_isEmpty = true;
                break;
            }
            if (m_offset == m_text.size())
                return Fail(m_offset, "The document ends inside a tag");
            if (!isSpace)
                return Fail(m_offset, "White space is expected");
            if (!OneAttribute())
                return false;
        }
        return AreDistinct();
    }

    bool OneAttribute()
    {
        Span name;
        if (!Name(name))
            return false;
        m_names.push_back(name);
        SkipSpace();
        if (Next() != '=')
            return Fail(m_offset, "\"=\" is expected");
        ++m_offset;
        SkipSpace();
        const char quote = Next();
        if (quote != '"' && quote != '\'')
            return Fail(m_offset, "The value of an attribute has no quotes");
        for (++m_offset; m_offset < m_text.size(); ++m_offset)
        {
            const char byte = m_text[m_offset];
            if (!Is(byte, eValueStop))
                continue;
            if (byte == quote)
            {
                ++m_offset;
                return true;
            }
            if (byte == '<')
                return Fail(m_offset, "\"<\" in the value of an attribute");
            if (byte == '&' && !Reference(m_offset))
                return false;
        }
        return Fail(m_offset, "The value of an attribute is not closed");
    }

    bool Reference(size_t in_offset)
    {
        size_t end = in_offset + 1;
        if (end < m_text.size() && m_text[end] == '#')
            ++end;
        while (end < m_text.size() && Is(m_text[end], eName))
            ++end;
        const std::string_view name = m_text.substr(in_offset + 1, end - in_offset - 1);
        if (end == m_text.size() || m_text[end] != ';' || name.empty())
            return Fail(in_offset, "\"&\" begins no reference");
        if (name[0] == '#')
            return IsCharacterReference(name) || Fail(in_offset, "A reference to a character that XML does not allow");
        if (name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos")
            return true;
        return (m_hasDocumentType && Is(name[0], eNameStart)) || Fail(in_offset, "A reference to an unknown entity");
    }

    /// Whether no two attributes of a tag have one name.
    bool AreDistinct()
    {
        const auto isLess = [this](const Span& in_a, const Span& in_b) { return in_a.In(m_text) < in_b.In(m_text); };
        const auto isEqual = [this](const Span& in_a, const Span& in_b) { return in_a.In(m_text) == in_b.In(m_text); };
        const size_t few = 12; // up to here all pairs cost less than sorting
        auto found = m_names.end();
        if (m_names.size() <= few)
        {
            for (auto name = m_names.begin(); name != m_names.end() && found == m_names.end(); ++name)
                if (std::any_of(m_names.begin(), name, [&](const Span& in_other) { return isEqual(in_other, *name); }))
                    found = name;
        }
        else
        {
            std::sort(m_names.begin(), m_names.end(), isLess);
            found = std::adjacent_find(m_names.begin(), m_names.end(), isEqual);
        }
        return found == m_names.end() || Fail(found->m_begin, "An attribute that is there already");
    }

    bool EndTag(std::vector<Span>& out_elements)
    {
        const size_t begin = m_offset;
        m_offset += 2;
        Span name;
        if (!Name(name))
            return false;
        if (m_open.empty() || m_open.back().In(m_text) != name.In(m_text))
            return Fail(begin, "An end tag without its start tag");
        SkipSpace();
        if (Next() != '>')
            return Fail(m_offset, "\">\" is expected");
        ++m_offset;
        m_open.pop_back();
        if (m_open.size() == m_topDepth)
            out_elements.push_back({m_topBegin, m_offset});
        return true;
    }

    std::string_view m_text;
    size_t m_offset;
    bool m_hasDocumentType = false;
    std::vector<Span> m_open; ///< the names of the elements around the offset
    std::vector<Span> m_names;
    size_t m_topDepth = 0; ///< how many elements are open around those that are told
    size_t m_topBegin = 0; ///< where the latest of those begins
    std::optional<Fault> m_fault;
};

/// The earlier one of two faults: that of the markup in front of a wrong character, or the character.
template <class Check> std::optional<Fault> CheckWithCharacters(std::string_view in_text, Span in_part, Check in_check)
{
    const size_t sound = in_part.m_begin + FindWrongCharacter(in_part.In(in_text));
    std::optional<Fault> fault = in_check(Checker(in_text, in_part.m_begin, sound));
    if (sound < in_part.m_end && (!fault || fault->m_offset >= sound))
        return Fault{sound, "A byte that is no part of a character that XML allows"};
    return fault;
}

} // namespace

std::optional<Fault> CheckDocument(std::string_view in_text, Outline& out_outline)
{
    out_outline = Outline();
    return CheckWithCharacters(in_text, {0, in_text.size()},
                               [&](Checker io_checker) { return io_checker.Document(out_outline); });
}

std::optional<Fault> CheckContent(std::string_view in_text, Span in_part, bool in_hasDocumentType,
                                  std::vector<Span>& out_elements)
{
    out_elements.clear();
    return CheckWithCharacters(
        in_text, in_part, [&](Checker io_checker) { return io_checker.Content(in_hasDocumentType, out_elements); });
}

std::size_t LineOf(std::string_view in_text, std::size_t in_offset)
{
    const std::string_view before = in_text.substr(0, in_offset);
    return 1 + static_cast<size_t>(std::count(before.begin(), before.end(), '\n'));
}

} // namespace materialx
