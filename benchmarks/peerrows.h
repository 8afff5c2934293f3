// SPDX-License-Identifier: MIT
/// The rows of both peers and their search: the browser's search rule for prepared text.
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

/// Reads the items of a library through the boundary, sorted by name. Factory marks and badges are not read, because a
/// peer shows none.
std::vector<PeerRow> ReadPeerRows(const vireo::datamodel::ItemLibraryAccessor& in_library);

/// One icon for each ePeerIcon.
std::array<QIcon, ePeerIconCount> LoadPeerIcons();

/// A text as the search compares it: lowered, 8-bit.
std::string LowerText(const QString& in_text);

/// The distinct words of a search text, lowered, in byte order.
std::vector<std::string> SplitPeerWords(const QString& in_text);

/// The score of a row that no word finds.
const int gPeerNoMatch = -1;

/// A lower score is more relevant. A word that starts the name scores its position among the words. Otherwise the last
/// word inside the name scores the count of words plus its position. Otherwise a word inside a tag scores 1000. Without
/// words the score is 0.
int ScorePeerRow(const std::vector<std::string>& in_words, const PeerRow& in_row);
