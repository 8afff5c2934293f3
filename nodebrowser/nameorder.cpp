// SPDX-License-Identifier: MIT
#include "nodebrowser/nameorder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <tuple>
#include <utility>

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
using Entries = std::vector<std::uint32_t>;

const std::size_t gKeyLength = 8;
/// Fewer keys are sorted faster by comparing.
const std::ptrdiff_t gManyKeys = 1000;
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
    if (left >= gKeyLength)
        std::memcpy(bytes, name, gKeyLength);
    else
        std::memcpy(bytes, name, left);
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
    const char* const left = in_names.Begin(in_left);
    const char* const right = in_names.Begin(in_right);
    const std::size_t common = std::min(in_names.Length(in_left), in_names.Length(in_right));
    for (std::size_t i = 0; i < common; ++i)
        if (left[i] != right[i] && FoldAsciiCase(left[i]) != FoldAsciiCase(right[i]))
            return FoldAsciiCase(left[i]) < FoldAsciiCase(right[i]);
    return std::make_pair(in_names.Length(in_left), in_left) < std::make_pair(in_names.Length(in_right), in_right);
}

/// The digits of a key, the least significant one first: the count, then the characters from the last to the first.
const std::size_t gDigits = 1 + gKeyLength;

unsigned char GetDigit(const SortKey& in_key, std::size_t in_digit)
{
    return static_cast<unsigned char>(in_digit == 0 ? in_key.m_count : in_key.m_characters >> 8 * (in_digit - 1));
}

/// Sorts keys whose entries ascend, as IsLess does. Many keys are put in order digit by digit, which compares nothing:
/// the outcome of a comparison is hard to predict, and the processor waits for it.
void SortKeys(Keys::iterator in_begin, Keys::iterator in_end)
{
    if (in_end - in_begin < gManyKeys)
    {
        std::sort(in_begin, in_end, IsLess);
        return;
    }
    std::array<std::array<std::uint32_t, 256>, gDigits> counts = {};
    for (auto key = in_begin; key != in_end; ++key)
        for (std::size_t digit = 0; digit < gDigits; ++digit)
            ++counts[digit][GetDigit(*key, digit)];
    Keys keys(in_begin, in_end);
    Keys sorted(keys.size());
    for (std::size_t digit = 0; digit < gDigits; ++digit)
    {
        std::uint32_t begin = 0;
        for (std::uint32_t& count : counts[digit])
        {
            const std::uint32_t end = begin + count;
            count = begin;
            begin = end;
        }
        for (const SortKey& key : keys)
            sorted[counts[digit][GetDigit(key, digit)]++] = key;
        keys.swap(sorted);
    }
    std::copy(keys.begin(), keys.end(), in_begin);
}

/// Sorts names whose characters before in_from are equal, and whose entries ascend.
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
    SortKeys(in_begin, in_end);
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

Entries SortEntries(const TextArena& in_names, const Entries& in_entries)
{
    Keys keys(in_entries.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
        keys[i].m_entry = in_entries[i];
    Sort(in_names, 0, keys.begin(), keys.end());
    Entries sorted;
    sorted.reserve(keys.size());
    for (const SortKey& key : keys)
        sorted.push_back(key.m_entry);
    return sorted;
}

/// The entries of in_start without those that are out of order. Of two neighbours in the wrong order both go, because
/// either can be the one that is out of place.
Entries DropOutOfOrder(const TextArena& in_names, const Entries& in_start)
{
    Entries ordered;
    ordered.reserve(in_names.GetSize());
    for (const std::uint32_t entry : in_start)
        if (ordered.empty() || IsLessAsAWhole(in_names, ordered.back(), entry))
            ordered.push_back(entry);
        else
            ordered.pop_back();
    return ordered;
}

/// The entries that are not in in_ordered.
Entries FindOthers(const TextArena& in_names, const Entries& in_ordered)
{
    std::vector<char> isOrdered(in_names.GetSize(), 0);
    for (const std::uint32_t entry : in_ordered)
        isOrdered[entry] = 1;
    Entries others;
    for (std::uint32_t entry = 0; entry < isOrdered.size(); ++entry)
        if (!isOrdered[entry])
            others.push_back(entry);
    return others;
}

} // namespace

std::vector<std::uint32_t> SortByName(const TextArena& in_names, const std::vector<std::uint32_t>& in_start)
{
    const Entries ordered = DropOutOfOrder(in_names, in_start);
    const Entries others = SortEntries(in_names, FindOthers(in_names, ordered));
    Entries all;
    all.reserve(in_names.GetSize());
    std::merge(ordered.begin(), ordered.end(), others.begin(), others.end(), std::back_inserter(all),
               [&in_names](std::uint32_t in_left, std::uint32_t in_right) {
                   return IsLessAsAWhole(in_names, in_left, in_right);
               });
    return all;
}

} // namespace nodebrowser
