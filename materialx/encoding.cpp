// SPDX-License-Identifier: MIT
#include "materialx/encoding.h"

#include <algorithm>

namespace materialx
{
namespace
{

void AppendUtf8(unsigned in_code, std::string& io_text)
{
    const auto append = [&io_text](unsigned in_byte) { io_text.push_back(static_cast<char>(in_byte)); };
    const auto follow = [&append, in_code](unsigned in_shift) { append(0x80U | (in_code >> in_shift & 0x3FU)); };
    if (in_code < 0x80)
        return append(in_code);
    if (in_code < 0x800)
    {
        append(0xC0U | in_code >> 6U);
        return follow(0);
    }
    if (in_code < 0x10000)
    {
        append(0xE0U | in_code >> 12U);
        follow(6);
        return follow(0);
    }
    append(0xF0U | in_code >> 18U);
    follow(12);
    follow(6);
    follow(0);
}

/// A surrogate without its other half stays what it is, in three bytes that no check lets pass.
std::string FromUtf16(std::string_view in_bytes, bool in_isBigEndian)
{
    std::string text;
    const auto unitAt = [&](std::size_t in_offset) {
        const auto low = static_cast<unsigned char>(in_bytes[in_offset + (in_isBigEndian ? 1 : 0)]);
        const auto high = static_cast<unsigned char>(in_bytes[in_offset + (in_isBigEndian ? 0 : 1)]);
        return high * 0x100U + low;
    };
    for (std::size_t offset = 0; offset + 1 < in_bytes.size(); offset += 2)
    {
        unsigned code = unitAt(offset);
        if (code >= 0xD800 && code < 0xDC00 && offset + 3 < in_bytes.size())
            if (const unsigned second = unitAt(offset + 2); second >= 0xDC00 && second < 0xE000)
            {
                code = 0x10000 + ((code - 0xD800) << 10U) + (second - 0xDC00);
                offset += 2;
            }
        AppendUtf8(code, text);
    }
    if (in_bytes.size() % 2 != 0)
        text.push_back('\0'); // half a character: a fault wherever it stands
    return text;
}

bool IsUtf16(std::string_view in_bytes)
{
    const std::string_view start = in_bytes.substr(0, 2);
    return start == "\xFF\xFE" || start == "\xFE\xFF";
}

/// The value of "version" or "encoding" in the XML declaration, in small letters; empty without one.
std::string Declared(std::string_view in_bytes, std::string_view in_what)
{
    const std::size_t begin = in_bytes.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
    if (in_bytes.substr(begin, 5) != "<?xml")
        return std::string();
    const std::string_view declaration = in_bytes.substr(begin, in_bytes.find("?>", begin) - begin);
    const std::size_t name = declaration.find(in_what);
    const std::size_t quote = name == std::string_view::npos ? name : declaration.find_first_of("\"'", name);
    if (quote == std::string_view::npos)
        return std::string();
    std::string value(declaration.substr(quote + 1, declaration.find(declaration[quote], quote + 1) - quote - 1));
    std::transform(value.begin(), value.end(), value.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
    return value;
}

bool IsLatin1(const std::string& in_encoding)
{
    return in_encoding == "iso-8859-1" || in_encoding == "latin1";
}

bool IsAscii(const std::string& in_encoding)
{
    return in_encoding == "us-ascii" || in_encoding == "ascii";
}

bool IsUtf8(const std::string& in_encoding)
{
    return in_encoding.empty() || in_encoding == "utf-8" || in_encoding == "utf8";
}

} // namespace

std::optional<Fault> DecodeDocument(std::string_view in_bytes, std::optional<std::string>& out_text)
{
    out_text.reset();
    const std::string encoding = Declared(in_bytes, "encoding");
    if (IsUtf16(in_bytes))
        out_text = FromUtf16(in_bytes.substr(2), in_bytes[0] == '\xFE');
    else if (IsLatin1(encoding))
        out_text = WidenFromLatin1(in_bytes);
    else if (IsAscii(encoding))
        out_text = std::string(in_bytes); // an edit could bring characters that it lacks
    else if (!IsUtf8(encoding))
        return Fault{0, "The encoding \"" + encoding + "\" is not known"};
    const std::string version = Declared(out_text ? *out_text : in_bytes, "version");
    if (!version.empty() && version.substr(0, 2) != "1.")
        return Fault{0, "XML of version " + version + " is not known"};
    return std::nullopt;
}

std::string NarrowToLatin1(std::string_view in_utf8)
{
    std::string text;
    text.reserve(in_utf8.size());
    for (std::size_t i = 0; i < in_utf8.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(in_utf8[i]);
        const bool isTwo = (byte == 0xC2 || byte == 0xC3) && i + 1 < in_utf8.size();
        if (byte < 0x80)
            text.push_back(in_utf8[i]);
        else if (isTwo) // the characters from 0x80 to 0xFF
            text.push_back(static_cast<char>((byte & 3U) << 6U | (static_cast<unsigned char>(in_utf8[++i]) & 0x3FU)));
        else if (byte >= 0xC0)
            text.push_back('?'); // the bytes that follow are those below 0xC0
    }
    return text;
}

std::string WidenFromLatin1(std::string_view in_latin1)
{
    std::string text;
    text.reserve(in_latin1.size());
    for (const char byte : in_latin1)
        AppendUtf8(static_cast<unsigned char>(byte), text);
    return text;
}

} // namespace materialx
