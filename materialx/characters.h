// SPDX-License-Identifier: MIT
/// Which bytes and characters XML allows, and where.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace materialx
{

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

inline bool Is(char in_byte, eCharacter in_class)
{
    return (gClasses[static_cast<unsigned char>(in_byte)] & in_class) != 0;
}

/// The offset of the first byte that may not stand in XML; the size of the text when all may. Wrong are bytes that are
/// no UTF-8, and most control characters.
std::size_t FindWrongCharacter(std::string_view in_text);

/// Whether all of a text may stand in XML.
inline bool IsXmlText(std::string_view in_text)
{
    return FindWrongCharacter(in_text) == in_text.size();
}

/// Whether the character of a reference, "#38" or "#x26", is one that XML allows.
bool IsCharacterReference(std::string_view in_digits);

} // namespace materialx
