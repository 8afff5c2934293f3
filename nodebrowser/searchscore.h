// SPDX-License-Identifier: MIT
/// The search rule: which items the typed words find, and how relevant each is.
#pragma once

#include "nodebrowser/itemkind.h"

#include <cstddef>
#include <set>
#include <string>

namespace nodebrowser
{

/// Which kinds of item are shown. The tabs select the first three, in this order.
enum eFilterMode
{
    eFilterNodes = 0,      ///< solvers, polymorphic solvers, and compounds that are no signatures
    eFilterTypes = 1,      ///< types
    eFilterAll = 2,        ///< everything
    eFilterSignatures = 3, ///< compounds that are signatures
    eFilterConstants = 4,  ///< global constants
};

/// Whether a mode shows items of a kind. Nothing passes an unknown mode.
bool PassesFilterMode(int in_mode, eItemKind in_kind);

/// The distinct words of a search, in byte order. A word's position among them is part of the score.
using SearchWords = std::set<std::string>;

/// Splits a lowered search text, in Latin-1, at white space. Adjacent white space separates once. White space at the
/// beginning or the end yields an empty word, and every name begins with the empty word. An empty text has no words.
SearchWords SplitSearchWords(const std::string& in_lowerText);

/// A Latin-1 character as the search compares it: lowered as the toolkit lowers it.
char LowerCharacter(char in_character);

/// A name as the search compares it.
std::string LowerName(std::string in_name);

/// The score of an item that was found by its tags alone.
const std::size_t gTagScore = 1000;
/// The score of an item that was not found. With thousands of words a name can earn the same score; its item counts as
/// not found, too.
const std::size_t gNoMatch = 10000;

/// Scores an item; a lower score is more relevant. One of the words is enough. They are tried in their order:
///   - A word that starts the name scores its position among the words. The words after it are not tried.
///   - A word inside the name scores the count of words plus its position. It replaces the score of an earlier word.
///   - A word found only inside a tag, whatever its case, scores 1000 unless an earlier word scored.
/// \param in_words empty: everything passes with score 0
/// \param out_score written only when the item passes
/// \return whether any word was found
bool ScoreItem(const SearchWords& in_words, const std::string& in_lowerName, const std::set<std::string>& in_tags,
               std::size_t* out_score);

} // namespace nodebrowser
