// SPDX-License-Identifier: MIT
#include "materialx/markup.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace materialx
{
namespace
{

using std::size_t;

enum eCharacter : std::uint8_t
{
    eSpace = 1,
    eNameStart = 2,
    eName = 4,
    eValueStop = 8 ///< ends the quick way through an attribute's value
};

/// The classes of all bytes. Each byte of a character beyond ASCII may stand in a name.
constexpr std::array<std::uint8_t, 256> MakeClasses()
{
    std::array<std::uint8_t, 256> classes = {};
    for (const char byte : {' ', '\t', '\r', '\n'})
        classes[static_cast<unsigned char>(byte)] |= eSpace;
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
        if (isLetter || byte == '_' || byte == ':' || byte >= 0x80)
            classes[byte] |= eNameStart | eName;
        if ((byte >= '0' && byte <= '9') || byte == '-' || byte == '.')
            classes[byte] |= eName;
    }
    for (const char byte : {'"', '\'', '<', '&'})
        classes[static_cast<unsigned char>(byte)] |= eValueStop;
    return classes;
}

constexpr std::array<std::uint8_t, 256> gClasses = MakeClasses();

bool Is(char in_byte, eCharacter in_class)
{
    return (gClasses[static_cast<unsigned char>(in_byte)] & in_class) != 0;
}

/// The length of the character that begins at an offset; 0 when it is none that XML allows.
size_t CharacterLength(std::string_view in_text, size_t in_offset)
{
    const auto byteAt = [in_text](size_t in_at) {
        return in_at < in_text.size() ? static_cast<unsigned char>(in_text[in_at]) : 0U;
    };
    const unsigned first = byteAt(in_offset);
    if (first < 0x80)
        return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    std::uint32_t code = first & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i)
    {
        const unsigned next = byteAt(in_offset + i);
        if ((next & 0xC0U) != 0x80U)
            return 0;
        code = code << 6U | (next & 0x3FU);
    }
    const std::uint32_t smallest = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest || code > 0x10FFFF || isSurrogate || code == 0xFFFE || code == 0xFFFF ? 0 : length;
}

/// The offset of the first byte that may not stand in XML; the size of the text when all may.
size_t FindWrongCharacter(std::string_view in_text)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    size_t offset = 0;
    while (offset < in_text.size())
    {
        std::uint64_t word = 0;
        if (in_text.size() - offset >= sizeof word)
        {
            // Eight bytes at once, where all are ASCII and none is below the space.
            std::memcpy(&word, in_text.data() + offset, sizeof word);
            if ((((word - ones * 0x20) | word) & (ones * 0x80)) == 0)
            {
                offset += sizeof word;
                continue;
            }
        }
        const size_t length = CharacterLength(in_text, offset);
        if (length == 0)
            return offset;
        offset += length;
    }
    return offset;
}

/// Whether the character of a reference, "#38" or "#x26", is one that XML allows.
bool IsCharacterReference(std::string_view in_digits)
{
    const bool isHexadecimal = in_digits.size() > 1 && in_digits[1] == 'x';
    std::string_view digits = in_digits.substr(isHexadecimal ? 2 : 1);
    std::uint32_t code = 0;
    if (digits.empty())
        return false;
    for (const char digit : digits)
    {
        const char lower = static_cast<char>(digit | 0x20);
        const bool isLetter = isHexadecimal && lower >= 'a' && lower <= 'f';
        if (!isLetter && (digit < '0' || digit > '9'))
            return false;
        code =
            code * (isHexadecimal ? 16U : 10U) + static_cast<std::uint32_t>(isLetter ? lower - 'a' + 10 : digit - '0');
        if (code > 0x10FFFF)
            return false;
    }
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    return !isControl && !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
}

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

const Attribute* StartTag::Find(std::string_view in_text, std::string_view in_name) const
{
    for (const Attribute& attribute : m_attributes)
        if (attribute.m_name.In(in_text) == in_name)
            return &attribute;
    return nullptr;
}

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

StartTag ScanStartTag(std::string_view in_text, std::size_t in_begin)
{
    const auto skip = [in_text](size_t in_offset, eCharacter in_class) {
        while (in_offset < in_text.size() && Is(in_text[in_offset], in_class))
            ++in_offset;
        return in_offset;
    };
    StartTag tag;
    tag.m_name = {in_begin + 1, skip(in_begin + 1, eName)};
    size_t offset = tag.m_name.m_end;
    while (true)
    {
        const size_t name = skip(offset, eSpace);
        if (!Is(in_text[name], eNameStart))
        {
            tag.m_isEmpty = in_text[name] == '/';
            tag.m_end = name + (tag.m_isEmpty ? 2 : 1);
            return tag;
        }
        const size_t nameEnd = skip(name, eName);
        const size_t quote = skip(skip(nameEnd, eSpace) + 1, eSpace);
        const size_t valueEnd = in_text.find(in_text[quote], quote + 1);
        tag.m_attributes.push_back({{name, nameEnd}, {quote + 1, valueEnd}, offset});
        offset = valueEnd + 1;
    }
}

bool IsXmlText(std::string_view in_text)
{
    return FindWrongCharacter(in_text) == in_text.size();
}

std::string EscapeAttribute(std::string_view in_text, char in_quote)
{
    std::string escaped;
    for (const char byte : in_text)
        switch (byte)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '\t':
            escaped += "&#9;"; // as they are, white space of all kinds would be read as spaces
            break;
        case '\n':
            escaped += "&#10;";
            break;
        case '\r':
            escaped += "&#13;";
            break;
        default:
            if (byte == in_quote)
                escaped += byte == '"' ? "&quot;" : "&apos;";
            else
                escaped += byte;
        }
    return escaped;
}

std::size_t LineOf(std::string_view in_text, std::size_t in_offset)
{
    const std::string_view before = in_text.substr(0, in_offset);
    return 1 + static_cast<size_t>(std::count(before.begin(), before.end(), '\n'));
}

} // namespace materialx
