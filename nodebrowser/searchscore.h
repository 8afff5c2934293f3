// SPDX-License-Identifier: MIT
/// The search rule: which items the typed words find, and how relevant each is.
#pragma once

#include "nodebrowser/itemkind.h"

#include <QString>

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

/// Whether a mode shows items of a kind. Nothing passes a number that is no mode.
bool PassesFilterMode(int in_mode, eItemKind in_kind);

/// The distinct words of a search, in byte order: a word's index in it is part of the score.
using SearchWords = std::set<std::string>;

/// Splits a search text, lowered already, at white space. Adjacent white space counts once, but text that begins or ends
/// with it yields an empty word, which every name begins with. An empty text has no words.
SearchWords SplitSearchWords(const QString& in_lowerText);

/// A name as the search compares it: lowered, 8-bit.
std::string LowerName(std::string in_name);

/// The score of an item that was found by its tags alone.
const std::size_t gTagScore = 1000;
/// Stands for an item that was not found. An item whose name earns this very number, which takes thousands of words, is
/// not found either.
const std::size_t gNoMatch = 10000;

/// Scores an item; lower is more relevant. The words are alternatives, tried in their order:
///   - a word that starts the name ends the search with its index as the score;
///   - a word inside the name scores the number of words plus its index, replacing what an earlier word scored;
///   - a word found only inside a tag, in upper or lower case alike, scores 1000 unless something scored before.
/// \param in_words empty: everything passes with score 0
/// \param out_score written only when the item passes
/// \return whether any word was found
bool ScoreItem(const SearchWords& in_words, const std::string& in_lowerName, const std::set<std::string>& in_tags,
               std::size_t* out_score);

} // namespace nodebrowser
