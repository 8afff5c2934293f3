// SPDX-License-Identifier: MIT
/// Many short texts in one block of memory, which one search covers.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nodebrowser
{

/// The texts are entries, counted from 0 in the order in which they were added. A search goes through the characters of
/// all entries, from one occurrence of the word's rarest character to the next. That is far faster than a search in
/// each entry.
class TextArena
{
public:
    TextArena() : m_counts() {}

    void Reserve(std::size_t in_entries, std::size_t in_bytes);

    /// Adds an entry. Characters beyond a total of three gigabytes are cut off.
    void Add(const std::string& in_text) { Add(in_text.data(), in_text.size()); }
    void Add(const char* in_text, std::size_t in_length);

    /// Replaces each character by in_function(character).
    template <class Function> void Transform(Function in_function)
    {
        std::transform(m_texts.begin(), m_texts.end(), m_texts.begin(), in_function);
    }

    /// Call it after the last Add() and before the first Find(). Costs a pass over the characters.
    void CountCharacters();

    std::size_t GetSize() const { return m_ends.size(); }
    /// The bytes of all entries, and one for the end of each.
    std::size_t GetBytes() const { return m_texts.size(); }

    /// The characters of an entry. Add() makes the pointer invalid.
    const char* Begin(std::size_t in_entry) const { return m_texts.data() + BeginOffset(in_entry); }
    std::size_t Length(std::size_t in_entry) const { return m_ends[in_entry] - 1 - BeginOffset(in_entry); }

    /// Calls in_visitor(entry, atStart) for each entry that contains a word, in the order of the entries. The second
    /// argument is whether the entry starts with the word.
    template <class Visitor> void Find(const std::string& in_word, Visitor in_visitor) const
    {
        const Rare rare = FindRare(in_word);
        std::size_t entry = 0;
        std::size_t begin = 0;
        for (std::size_t offset = FindFrom(0, in_word, rare); offset != std::string::npos;
             offset = FindFrom(begin, in_word, rare))
        {
            entry = FindEntry(offset, entry);
            begin = offset + 1;
            if (offset + in_word.size() >= m_ends[entry])
                continue; // this occurrence crosses the end of the entry
            in_visitor(entry, offset == BeginOffset(entry));
            begin = m_ends[entry];
        }
    }

private:
    std::size_t BeginOffset(std::size_t in_entry) const { return in_entry ? m_ends[in_entry - 1] : 0; }
    /// The offsets in a word of its two rarest characters; equal in a word of one character.
    struct Rare
    {
        std::size_t m_first;
        std::size_t m_second;
    };

    Rare FindRare(const std::string& in_word) const;
    std::size_t FindFrom(std::size_t in_begin, const std::string& in_word, const Rare& in_rare) const;
    std::size_t FindEntry(std::size_t in_offset, std::size_t in_first) const;

    std::string m_texts;               // a line feed ends each entry
    std::vector<std::uint32_t> m_ends; // by entry, the offset after its line feed
    std::size_t m_counts[256];         // how often each character occurs
};

} // namespace nodebrowser
