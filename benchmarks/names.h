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

/// Makes items in the shape of real libraries, the same ones on every machine. They have packages of 1 to 200 nodes,
/// names in families, and two or three tags each, which most nodes share with others.
std::vector<NamedItem> MakeItems(std::size_t in_count);

/// Reads items from a text file. Each line is a name, a tab, and the tags joined by ";". Empty for a file that cannot
/// be read.
std::vector<NamedItem> ReadItems(const std::string& in_file);

/// The first items up to a count. When there are too few, they are repeated.
/// \param in_items at least one
std::vector<NamedItem> RepeatItems(const std::vector<NamedItem>& in_items, std::size_t in_count);
