// SPDX-License-Identifier: MIT
/// What both peers know of a row, and how they search: the browser's search rule, written for prepared text.
#pragma once

#include "datamodel/itemlibrary.h"

#include <QString>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

class QIcon;

enum ePeerIcon : std::size_t
{
    ePeerIconSolver,
    ePeerIconSignature,
    ePeerIconCompound,
    ePeerIconConstant,
    ePeerIconType,
    ePeerIconCount,
};

struct PeerRow
{
    QString m_name;
    std::string m_lowerName;
    std::string m_lowerTags; ///< joined by ";", the name of the type among them
    ePeerIcon m_icon = ePeerIconSolver;
};

/// Reads a library through the boundary, sorted by name. Marks of the item's origin and state are not read: a peer has
/// none.
std::vector<PeerRow> ReadPeerRows(const vireo::datamodel::ItemLibraryAccessor& in_library);

/// One icon for each ePeerIcon.
std::array<QIcon, ePeerIconCount> LoadPeerIcons();

/// A text as it is compared: lowered, 8-bit.
std::string LowerText(const QString& in_text);

/// The distinct words of a search text, lowered, in byte order.
std::vector<std::string> SplitPeerWords(const QString& in_text);

/// The score of a row that no word finds.
const int gPeerNoMatch = -1;

/// The lower, the more relevant: the index of the word that starts the name; else, for the last word inside the name,
/// the number of words plus its index; else 1000 for a word inside a tag. 0 without words.
int ScorePeerRow(const std::vector<std::string>& in_words, const PeerRow& in_row);
