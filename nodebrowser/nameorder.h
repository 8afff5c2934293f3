// SPDX-License-Identifier: MIT
/// The display order of names.
#pragma once

#include "nodebrowser/textarena.h"

#include <cstdint>
#include <vector>

namespace nodebrowser
{

/// Sorts the entries of an arena by their bytes, without regard to the case of ASCII letters. Equal names keep the
/// order in which they were added. A name is read eight characters at a time, and only as far as it equals another
/// name.
/// \param in_start distinct entries in about the right order, such as the order before a few names changed. Costs one
/// comparison each. Those that are out of order, and all other entries, are sorted.
/// \return the entries in display order
std::vector<std::uint32_t> SortByName(const TextArena& in_names, const std::vector<std::uint32_t>& in_start);

} // namespace nodebrowser
