#include "nodebrowser/tagindex.h"

#include <algorithm>

namespace
{

/// As many tags as most items have, that of the type included, for which one allocation is made.
const std::size_t gUsualTags = 4;

std::string UpperCase(std::string in_text, const std::locale& in_locale)
{
    if (!in_text.empty())
        std::use_facet<std::ctype<char>>(in_locale).toupper(&in_text[0], &in_text[0] + in_text.size());
    return in_text;
}

} // namespace

void TagIndex::Clear()
{
    m_tagsOfItem.clear();
    m_itemsOfTag.clear();
    m_tagNumbers.clear();
    m_tagTexts.clear();
    m_foldedTexts.Clear();
}

void TagIndex::SetTags(std::uint32_t in_item, const std::string& in_joined)
{
    if (in_joined.empty())
        return;
    Remove(in_item);
    std::size_t begin = 0;
    for (std::size_t end = in_joined.find(';'); end != std::string::npos; end = in_joined.find(';', begin))
    {
        Insert(in_item, in_joined.substr(begin, end - begin));
        begin = end + 1;
    }
    Insert(in_item, in_joined.substr(begin));
}

void TagIndex::AddTag(std::uint32_t in_item, const std::string& in_tag)
{
    if (!in_tag.empty())
        Insert(in_item, in_tag);
}

void TagIndex::Insert(std::uint32_t in_item, const std::string& in_tag)
{
    if (in_item >= m_tagsOfItem.size())
        m_tagsOfItem.resize(in_item + std::size_t(1));
    Numbers& tags = m_tagsOfItem[in_item];
    if (tags.empty())
        tags.reserve(gUsualTags);
    const std::uint32_t tag = NumberOf(in_tag);
    if (std::find(tags.begin(), tags.end(), tag) != tags.end())
        return;
    tags.push_back(tag);
    if (in_tag.empty())
        return;
    Numbers& items = m_itemsOfTag[tag];
    if (items.empty() || items.back() < in_item)
        items.push_back(in_item);
    else
        items.insert(std::upper_bound(items.begin(), items.end(), in_item), in_item);
}

std::uint32_t TagIndex::NumberOf(const std::string& in_tag)
{
    const auto known = m_tagNumbers.find(in_tag);
    if (known != m_tagNumbers.end())
        return known->second;
    const std::uint32_t number = static_cast<std::uint32_t>(m_tagTexts.size());
    m_tagTexts.push_back(&m_tagNumbers.emplace(in_tag, number).first->first);
    m_itemsOfTag.emplace_back();
    return number;
}

void TagIndex::Remove(std::uint32_t in_item)
{
    if (!HasTags(in_item))
        return;
    for (const std::uint32_t tag : m_tagsOfItem[in_item])
    {
        Numbers& items = m_itemsOfTag[tag];
        const auto place = std::lower_bound(items.begin(), items.end(), in_item);
        if (place != items.end() && *place == in_item)
            items.erase(place);
    }
    m_tagsOfItem[in_item].clear();
}

void TagIndex::Renumber(const std::vector<std::uint32_t>& in_order)
{
    m_tagsOfItem.resize(in_order.size());
    std::vector<Numbers> tagsOfItem;
    tagsOfItem.reserve(in_order.size());
    for (Numbers& items : m_itemsOfTag)
        items.clear();
    for (const std::uint32_t item : in_order)
    {
        for (const std::uint32_t tag : m_tagsOfItem[item])
            if (!m_tagTexts[tag]->empty())
                m_itemsOfTag[tag].push_back(static_cast<std::uint32_t>(tagsOfItem.size()));
        tagsOfItem.push_back(std::move(m_tagsOfItem[item]));
    }
    m_tagsOfItem.swap(tagsOfItem);
}

TagIndex::Tags TagIndex::GetTags(std::uint32_t in_item) const
{
    Tags tags;
    if (HasTags(in_item))
        for (const std::uint32_t tag : m_tagsOfItem[in_item])
            tags.insert(*m_tagTexts[tag]);
    return tags;
}

TagIndex::Numbers TagIndex::GetItems(const std::string& in_tag) const
{
    const auto entry = m_tagNumbers.find(in_tag);
    return entry == m_tagNumbers.end() ? Numbers() : m_itemsOfTag[entry->second];
}

void TagIndex::FoldTexts() const
{
    const std::locale locale;
    if (m_foldedTexts.Size() == m_tagTexts.size() && locale == m_locale)
        return;
    m_locale = locale;
    m_foldedTexts.Clear();
    for (const std::string* const text : m_tagTexts)
        m_foldedTexts.Add(UpperCase(*text, locale));
}

std::vector<const TagIndex::Numbers*> TagIndex::FindItems(const std::string& in_word) const
{
    FoldTexts();
    std::vector<const Numbers*> found;
    m_foldedTexts.Find(UpperCase(in_word, m_locale),
                       [&](std::size_t in_tag, bool) { found.push_back(&m_itemsOfTag[in_tag]); });
    return found;
}
