// SPDX-License-Identifier: MIT
/// The lower bounds that the browser is compared with: the work that no implementation can avoid.
#pragma once

#include "datamodel/itemlibrary.h"
#include "names.h"

#include <cstddef>
#include <string>
#include <vector>

/// All lowered names end to end. A byte that no word contains separates them.
std::string JoinLowerNames(const std::vector<NamedItem>& in_items);

/// One scan of a text for each word, with the substring search of the C library where it has one.
/// \return how many occurrences there are that do not overlap
std::size_t CountOccurrences(const std::string& in_text, const std::vector<std::string>& in_words);

/// Makes each call of the boundary that a build of the list needs, once an item, and keeps nothing.
/// \return how many bytes were read; using the result keeps the compiler from leaving a call out
std::size_t ReadBoundary(const vireo::datamodel::ItemLibraryAccessor& in_library);
