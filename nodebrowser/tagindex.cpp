// SPDX-License-Identifier: MIT
#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <iterator>

namespace
{

/// Gaps among so few tags are not worth closing.
const std::size_t gSmall = 1024;

std::string UpperCase(std::string in_text, const std::locale& in_locale)
{
    if (!in_text.empty())
        std::use_facet<std::ctype<char>>(in_locale).toupper(&in_text[0], &in_text[0] + in_text.size());
    return in_text;
}

} // namespace

void TagIndex::Clear()
{
    m_added.Clear();
    m_spans.clear();
    m_tags.clear();
    m_used = 0;
    m_itemsOfTag.clear();
    m_tagNumbers.clear();
    m_tagTexts.clear();
    m_foldedTexts.Clear();
}

void TagIndex::Add(const std::string& in_joined)
{
    m_added.Add(in_joined);
}

void TagIndex::SplitAdded()
{
    if (m_added.Size() == 0)
        return;
    m_spans.reserve(m_spans.size() + m_added.Size());
    for (std::size_t i = 0; i < m_added.Size(); ++i)
    {
        const std::uint32_t item = static_cast<std::uint32_t>(m_spans.size());
        const Numbers tags = Split(std::string(m_added.Begin(i), m_added.Length(i)));
        m_spans.emplace_back();
        Store(item, tags);
        for (const std::uint32_t tag : tags)
            Link(item, tag);
    }
    m_added = TextBlock();
}

void TagIndex::SetTags(std::uint32_t in_item, const std::string& in_joined)
{
    SplitAdded();
    const Numbers tags = Split(in_joined);
    const auto begin = m_tags.begin() + static_cast<std::ptrdiff_t>(m_spans[in_item].m_begin);
    const Numbers before(begin, begin + static_cast<std::ptrdiff_t>(m_spans[in_item].m_count));
    // Most tags stay, the name of the type above all, which many items have.
    Numbers changed;
    std::set_difference(before.begin(), before.end(), tags.begin(), tags.end(), std::back_inserter(changed));
    for (const std::uint32_t tag : changed)
        Unlink(in_item, tag);
    changed.clear();
    std::set_difference(tags.begin(), tags.end(), before.begin(), before.end(), std::back_inserter(changed));
    for (const std::uint32_t tag : changed)
        Link(in_item, tag);
    Store(in_item, tags);
    DropUnused();
}

/// The numbers of the tags of a tag string, ascending and distinct.
TagIndex::Numbers TagIndex::Split(const std::string& in_joined)
{
    Numbers tags;
    if (in_joined.empty())
        return tags;
    std::size_t begin = 0;
    for (std::size_t end = in_joined.find(';'); end != std::string::npos; end = in_joined.find(';', begin))
    {
        tags.push_back(NumberOf(in_joined.substr(begin, end - begin)));
        begin = end + 1;
    }
    tags.push_back(NumberOf(in_joined.substr(begin)));
    std::sort(tags.begin(), tags.end());
    tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
    return tags;
}

/// Puts an item's tags at the end of all; their old place is unused from here on.
void TagIndex::Store(std::uint32_t in_item, const Numbers& in_tags)
{
    Span& span = m_spans[in_item];
    m_used = m_used - span.m_count + in_tags.size();
    span.m_begin = static_cast<std::uint32_t>(m_tags.size());
    span.m_count = static_cast<std::uint32_t>(in_tags.size());
    m_tags.insert(m_tags.end(), in_tags.begin(), in_tags.end());
}

void TagIndex::Link(std::uint32_t in_item, std::uint32_t in_tag)
{
    if (m_tagTexts[in_tag]->empty())
        return;
    Numbers& items = m_itemsOfTag[in_tag];
    if (items.empty() || items.back() < in_item)
        items.push_back(in_item);
    else
        items.insert(std::upper_bound(items.begin(), items.end(), in_item), in_item);
}

void TagIndex::Unlink(std::uint32_t in_item, std::uint32_t in_tag)
{
    Numbers& items = m_itemsOfTag[in_tag];
    const auto place = std::lower_bound(items.begin(), items.end(), in_item);
    if (place != items.end() && *place == in_item)
        items.erase(place);
}

/// Closes the gaps once there are more of them than tags.
void TagIndex::DropUnused()
{
    if (m_tags.size() < gSmall || m_tags.size() < 2 * m_used)
        return;
    Numbers tags;
    tags.reserve(m_used);
    for (Span& span : m_spans)
    {
        const auto begin = m_tags.begin() + static_cast<std::ptrdiff_t>(span.m_begin);
        span.m_begin = static_cast<std::uint32_t>(tags.size());
        tags.insert(tags.end(), begin, begin + static_cast<std::ptrdiff_t>(span.m_count));
    }
    m_tags.swap(tags);
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

TagIndex::Tags TagIndex::GetTags(std::uint32_t in_item)
{
    SplitAdded();
    Tags tags;
    if (in_item < m_spans.size())
        for (std::uint32_t i = 0; i < m_spans[in_item].m_count; ++i)
            tags.insert(*m_tagTexts[m_tags[m_spans[in_item].m_begin + i]]);
    return tags;
}

TagIndex::Numbers TagIndex::GetItems(const std::string& in_tag)
{
    SplitAdded();
    const auto entry = m_tagNumbers.find(in_tag);
    return entry == m_tagNumbers.end() ? Numbers() : m_itemsOfTag[entry->second];
}

void TagIndex::FoldTexts()
{
    const std::locale locale;
    if (m_foldedTexts.Size() == m_tagTexts.size() && locale == m_locale)
        return;
    m_locale = locale;
    m_foldedTexts.Clear();
    for (const std::string* const text : m_tagTexts)
        m_foldedTexts.Add(UpperCase(*text, locale));
}

std::vector<const TagIndex::Numbers*> TagIndex::FindItems(const std::string& in_word)
{
    SplitAdded();
    FoldTexts();
    std::vector<const Numbers*> found;
    m_foldedTexts.Find(UpperCase(in_word, m_locale),
                       [&](std::size_t in_tag, bool) { found.push_back(&m_itemsOfTag[in_tag]); });
    return found;
}
