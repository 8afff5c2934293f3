// SPDX-License-Identifier: MIT
#include "materialx/characters.h"

#include <cstring>

namespace materialx
{

using std::size_t;

namespace
{

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

} // namespace

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
    return !isControl && (code < 0xD800 || code > 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
}

} // namespace materialx
