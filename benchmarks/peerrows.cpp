// SPDX-License-Identifier: MIT
#include "peerrows.h"

#include "datamodel/helpers.h"

#include <QIcon>

#include <algorithm>

using namespace vireo::datamodel;

namespace
{

const int gTagScore = 1000;

ePeerIcon FindIcon(ItemAccessor& in_item, const char* in_type)
{
    if (in_type == VireoType::gCompound)
        return Helpers::IsAbstractFunction(in_item) ? ePeerIconSignature : ePeerIconCompound;
    if (in_type == VireoType::gGlobalConstant)
        return ePeerIconConstant;
    return in_type == LibType::gType ? ePeerIconType : ePeerIconSolver;
}

PeerRow ReadPeerRow(const ItemLibraryAccessor& in_library, ItemAccessor& in_item, const char* in_type)
{
    const ItemID id = in_item.GetItemID();
    PeerRow row;
    row.m_name = QString::fromLatin1(in_library.GetItemName(id, true, nullptr).c_str());
    row.m_lowerName = LowerText(row.m_name);
    const std::string tags = in_library.GetItemTags(id, gApplicationTagsKey);
    row.m_lowerTags = LowerText(QString::fromLatin1(tags.c_str()) + QLatin1Char(';') + QLatin1String(in_type));
    row.m_icon = FindIcon(in_item, in_type);
    return row;
}

bool IsInTags(const std::string& in_word, const std::string& in_tags)
{
    return in_word.find(';') == std::string::npos && in_tags.find(in_word) != std::string::npos;
}

} // namespace

std::vector<PeerRow> ReadPeerRows(const ItemLibraryAccessor& in_library)
{
    std::vector<PeerRow> rows;
    const ItemTOCAccessor toc = GetTOC(in_library);
    for (const char* const type : {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                   VireoType::gSolver, LibType::gType})
        for (ItemIterator iterator = toc.IterateItems(type); !iterator.IsAtEnd(); iterator.Next())
        {
            ItemAccessor item = iterator.GetItem();
            if (Helpers::IsValidGraphItemType(type, item) && !item.GetValue(gParentKey).IsValid() &&
                !item.GetValue(gSpecializesKey).IsValid())
                rows.push_back(ReadPeerRow(in_library, item, type));
        }
    std::stable_sort(rows.begin(), rows.end(), [](const PeerRow& in_left, const PeerRow& in_right) {
        return in_left.m_lowerName < in_right.m_lowerName;
    });
    return rows;
}

std::array<QIcon, ePeerIconCount> LoadPeerIcons()
{
    return {QIcon(QLatin1String(":/solver.png")), QIcon(QLatin1String(":/signature.png")),
            QIcon(QLatin1String(":/compound.png")), QIcon(QLatin1String(":/constant.png")),
            QIcon(QLatin1String(":/type.png"))};
}

std::string LowerText(const QString& in_text)
{
    return in_text.toLower().toLatin1().toStdString();
}

std::vector<std::string> SplitPeerWords(const QString& in_text)
{
    std::vector<std::string> words;
    const QStringList parts = in_text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& part : parts)
        words.push_back(LowerText(part));
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return words;
}

int ScorePeerRow(const std::vector<std::string>& in_words, const PeerRow& in_row)
{
    const int count = static_cast<int>(in_words.size());
    int score = count == 0 ? 0 : gPeerNoMatch;
    for (int index = 0; index < count; ++index)
    {
        const std::string& word = in_words[static_cast<std::size_t>(index)];
        const std::size_t offset = in_row.m_lowerName.find(word);
        if (offset == 0)
            return index;
        if (offset != std::string::npos)
            score = count + index;
        else if (score == gPeerNoMatch && IsInTags(word, in_row.m_lowerTags))
            score = gTagScore;
    }
    return score;
}
