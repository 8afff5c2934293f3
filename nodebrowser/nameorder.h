/// The order of the item list.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The numbers of names in their display order: by the bytes of the names without regard to the case of ASCII letters;
/// equal names stay in the order in which they came.
std::vector<std::uint32_t> SortByName(const std::vector<std::string>& in_names);
