// SPDX-License-Identifier: MIT
#include "nodebrowser/nameorder.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace nodebrowser
{
namespace
{

/// Eight characters of a name, as one integer that compares as they do.
struct SortKey
{
    std::uint64_t m_characters;
    std::uint32_t m_count; ///< how many characters there are; nine when the name is longer
    std::uint32_t m_entry;
};

using Keys = std::vector<SortKey>;

const std::size_t gKeyLength = 8;
/// Names that share more characters than this are compared as a whole. It bounds the recursion.
const std::size_t gDeepest = 20 * gKeyLength;

unsigned char FoldAsciiCase(char in_character)
{
    const unsigned char byte = static_cast<unsigned char>(in_character);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

/// Lowers the ASCII letters among eight characters at once. Adding to the low seven bits of a byte carries into its
/// highest bit exactly when the character reaches a limit. Two such sums tell whether it is between "A" and "Z".
std::uint64_t FoldAsciiCase(std::uint64_t in_characters)
{
    const std::uint64_t each = 0x0101010101010101u;
    const std::uint64_t low = in_characters & (0x7F * each);
    const std::uint64_t fromA = low + (0x80 - 'A') * each;
    const std::uint64_t behindZ = low + (0x80 - 'Z' - 1) * each;
    const std::uint64_t capitals = fromA & ~behindZ & ~in_characters & (0x80 * each);
    return in_characters | capitals >> 2;
}

void ReadKey(const TextArena& in_names, std::size_t in_from, SortKey& out_key)
{
    const char* const name = in_names.Begin(out_key.m_entry) + in_from;
    const std::size_t left = in_names.Length(out_key.m_entry) - in_from;
    unsigned char bytes[gKeyLength] = {};
    std::memcpy(bytes, name, std::min(left, gKeyLength));
    std::uint64_t characters = 0;
    for (const unsigned char byte : bytes)
        characters = characters << 8 | byte;
    out_key.m_characters = FoldAsciiCase(characters);
    out_key.m_count = static_cast<std::uint32_t>(std::min(left, gKeyLength + 1));
}

bool IsLess(const SortKey& in_left, const SortKey& in_right)
{
    return std::tie(in_left.m_characters, in_left.m_count, in_left.m_entry) <
           std::tie(in_right.m_characters, in_right.m_count, in_right.m_entry);
}

bool IsLessAsAWhole(const TextArena& in_names, std::uint32_t in_left, std::uint32_t in_right)
{
    const auto less = [&in_names](std::uint32_t in_a, std::uint32_t in_b) {
        return std::lexicographical_compare(
            in_names.Begin(in_a), in_names.Begin(in_a) + in_names.Length(in_a), in_names.Begin(in_b),
            in_names.Begin(in_b) + in_names.Length(in_b),
            [](char in_first, char in_second) { return FoldAsciiCase(in_first) < FoldAsciiCase(in_second); });
    };
    return less(in_left, in_right) || (in_left < in_right && !less(in_right, in_left));
}

/// Sorts names whose characters before in_from are equal.
void Sort(const TextArena& in_names, std::size_t in_from, Keys::iterator in_begin, Keys::iterator in_end)
{
    if (in_from > gDeepest)
    {
        std::sort(in_begin, in_end, [&in_names](const SortKey& in_left, const SortKey& in_right) {
            return IsLessAsAWhole(in_names, in_left.m_entry, in_right.m_entry);
        });
        return;
    }
    for (auto key = in_begin; key != in_end; ++key)
        ReadKey(in_names, in_from, *key);
    std::sort(in_begin, in_end, IsLess);
    for (auto first = in_begin; first != in_end;)
    {
        const auto next = std::find_if(first, in_end, [first](const SortKey& in_key) {
            return in_key.m_characters != first->m_characters || in_key.m_count != first->m_count;
        });
        if (first->m_count > gKeyLength && next - first > 1)
            Sort(in_names, in_from + gKeyLength, first, next);
        first = next;
    }
}

} // namespace

std::vector<std::uint32_t> SortByName(const TextArena& in_names)
{
    Keys keys(in_names.GetSize());
    for (std::size_t entry = 0; entry < keys.size(); ++entry)
        keys[entry].m_entry = static_cast<std::uint32_t>(entry);
    Sort(in_names, 0, keys.begin(), keys.end());
    std::vector<std::uint32_t> order;
    order.reserve(keys.size());
    for (const SortKey& key : keys)
        order.push_back(key.m_entry);
    return order;
}

} // namespace nodebrowser
