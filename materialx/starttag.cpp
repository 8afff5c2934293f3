// SPDX-License-Identifier: MIT
#include "materialx/starttag.h"

#include "materialx/characters.h"

namespace materialx
{

using std::size_t;

const Attribute* StartTag::Find(std::string_view in_text, std::string_view in_name) const
{
    for (const Attribute& attribute : m_attributes)
        if (attribute.m_name.In(in_text) == in_name)
            return &attribute;
    return nullptr;
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

std::string WriteAttribute(std::string_view in_name, std::string_view in_value)
{
    return " " + std::string(in_name) + "=\"" + EscapeAttribute(in_value, '"') + "\"";
}

} // namespace materialx
