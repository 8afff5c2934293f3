// SPDX-License-Identifier: MIT
/// The items that the benchmark fills its libraries with.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct NamedItem
{
    std::string m_name;
    std::string m_tags; ///< joined by ";"
};

/// Makes items from word lists, the same ones on every machine: names of two to four words, three tags each.
std::vector<NamedItem> MakeItems(std::size_t in_count);

/// Reads items from a text file: one a line, the name, a tab, the tags joined by ";". Empty when it cannot be read.
std::vector<NamedItem> ReadItems(const std::string& in_file);
