// SPDX-License-Identifier: MIT
/// The order of the item list.
#pragma once

#include "nodebrowser/textblock.h"

#include <cstdint>
#include <vector>

/// The numbers of names in their display order: by the bytes of the names without regard to the case of ASCII letters;
/// equal names stay in the order in which they came. Costs a sort of numbers: names are compared eight characters at a
/// time, and read once for each eight that they have in common with others.
std::vector<std::uint32_t> SortByName(const TextBlock& in_names);
