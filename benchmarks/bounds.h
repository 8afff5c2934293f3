// SPDX-License-Identifier: MIT
/// The lower bounds that the browser is compared with: what cannot be done without, as fast as it can be done.
#pragma once

#include "datamodel/itemlibrary.h"
#include "names.h"

#include <cstddef>
#include <string>
#include <vector>

/// All names lowered and laid end to end, with a byte between them that no word contains.
std::string JoinLowerNames(const std::vector<NamedItem>& in_items);

/// One scan of a text for each word, with the search of the C library where it has one.
/// \return how often the words occur, each search going on behind what it found
std::size_t CountOccurrences(const std::string& in_text, const std::vector<std::string>& in_words);

/// Makes each call of the boundary once per item that a list of the items is built from, and keeps nothing.
/// \return the bytes that were read, so that no call can be left out
std::size_t ReadBoundary(const vireo::datamodel::ItemLibraryAccessor& in_library);
