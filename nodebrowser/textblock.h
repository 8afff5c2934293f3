// SPDX-License-Identifier: MIT
/// Many short texts laid end to end, to be searched in one go.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The texts go by the numbers in which they were added. A search runs over all characters in one go, from one place of
/// the word's rarest character to the next, which is far faster than a search text by text.
class TextBlock
{
public:
    TextBlock() : m_counts() {}

    void Clear();
    void Add(const std::string& in_text);
    std::size_t Size() const { return m_ends.size(); }

    /// The characters of a text; they move when a text is added.
    const char* Begin(std::size_t in_number) const { return m_texts.data() + BeginOf(in_number); }
    std::size_t Length(std::size_t in_number) const { return m_ends[in_number] - 1 - BeginOf(in_number); }

    /// Calls in_found(number, whether the text starts with the word) for each text that a word is found in, in the order
    /// of the numbers.
    template <class Found> void Find(const std::string& in_word, Found in_found) const
    {
        const std::size_t rarest = FindRarest(in_word);
        std::size_t number = 0;
        std::size_t begin = 0;
        for (std::size_t place = FindFrom(0, in_word, rarest); place != std::string::npos;
             place = FindFrom(begin, in_word, rarest))
        {
            number = NumberAt(place, number);
            begin = place + 1;
            if (place + in_word.size() >= m_ends[number])
                continue; // it runs across the end of the text
            in_found(number, place == BeginOf(number));
            begin = m_ends[number];
        }
    }

private:
    std::size_t BeginOf(std::size_t in_number) const { return in_number ? m_ends[in_number - 1] : 0; }
    std::size_t FindRarest(const std::string& in_word) const;
    std::size_t FindFrom(std::size_t in_begin, const std::string& in_word, std::size_t in_rarest) const;
    std::size_t NumberAt(std::size_t in_place, std::size_t in_first) const;

    std::string m_texts;
    std::vector<std::size_t> m_ends; // behind the line feed of each text
    std::size_t m_counts[256];       // how often each character occurs
};
