// SPDX-License-Identifier: MIT
/// The display order of names.
#pragma once

#include "nodebrowser/textarena.h"

#include <cstdint>
#include <vector>

namespace nodebrowser
{

/// Sorts the entries of an arena by their bytes, without regard to the case of ASCII letters. Equal names stay in the order
/// in which they were added. Names are compared eight characters at a time, and are read once for each eight characters
/// that they share with others.
/// \return the entries in display order
std::vector<std::uint32_t> SortByName(const TextArena& in_names);

} // namespace nodebrowser
