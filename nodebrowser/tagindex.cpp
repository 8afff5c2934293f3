// SPDX-License-Identifier: MIT
#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <iterator>

namespace nodebrowser
{
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

void TagIndex::Add(const std::string& in_joined)
{
    const std::uint32_t item = static_cast<std::uint32_t>(m_spans.size());
    const TagIds tags = Split(in_joined);
    m_spans.emplace_back();
    Store(item, tags);
    for (const std::uint32_t tag : tags)
        Link(item, tag);
}

void TagIndex::SetTags(std::uint32_t in_item, const std::string& in_joined)
{
    const TagIds tags = Split(in_joined);
    const auto begin = m_tags.begin() + static_cast<std::ptrdiff_t>(m_spans[in_item].m_begin);
    const TagIds before(begin, begin + static_cast<std::ptrdiff_t>(m_spans[in_item].m_count));
    // Most tags stay, the name of the type above all, which many items have.
    TagIds changed;
    std::set_difference(before.begin(), before.end(), tags.begin(), tags.end(), std::back_inserter(changed));
    for (const std::uint32_t tag : changed)
        Unlink(in_item, tag);
    changed.clear();
    std::set_difference(tags.begin(), tags.end(), before.begin(), before.end(), std::back_inserter(changed));
    for (const std::uint32_t tag : changed)
        Link(in_item, tag);
    Store(in_item, tags);
    CloseGaps();
}

/// The ids of the tags in a tag string, ascending and distinct.
TagIndex::TagIds TagIndex::Split(const std::string& in_joined)
{
    TagIds tags;
    if (in_joined.empty())
        return tags;
    std::size_t begin = 0;
    for (std::size_t end = in_joined.find(';'); end != std::string::npos; end = in_joined.find(';', begin))
    {
        tags.push_back(FindOrAddTag(in_joined.substr(begin, end - begin)));
        begin = end + 1;
    }
    tags.push_back(FindOrAddTag(in_joined.substr(begin)));
    std::sort(tags.begin(), tags.end());
    tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
    return tags;
}

/// Puts an item's tags behind all others, which leaves a gap where they were.
void TagIndex::Store(std::uint32_t in_item, const TagIds& in_tags)
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
    Indexes& items = m_itemsOfTag[in_tag];
    if (items.empty() || items.back() < in_item)
        items.push_back(in_item);
    else
        items.insert(std::upper_bound(items.begin(), items.end(), in_item), in_item);
}

void TagIndex::Unlink(std::uint32_t in_item, std::uint32_t in_tag)
{
    Indexes& items = m_itemsOfTag[in_tag];
    const auto found = std::lower_bound(items.begin(), items.end(), in_item);
    if (found != items.end() && *found == in_item)
        items.erase(found);
}

/// Closes the gaps once they take more room than the tags.
void TagIndex::CloseGaps()
{
    if (m_tags.size() < gSmall || m_tags.size() < 2 * m_used)
        return;
    TagIds tags;
    tags.reserve(m_used);
    for (Span& span : m_spans)
    {
        const auto begin = m_tags.begin() + static_cast<std::ptrdiff_t>(span.m_begin);
        span.m_begin = static_cast<std::uint32_t>(tags.size());
        tags.insert(tags.end(), begin, begin + static_cast<std::ptrdiff_t>(span.m_count));
    }
    m_tags.swap(tags);
}

std::uint32_t TagIndex::FindOrAddTag(const std::string& in_tag)
{
    const auto known = m_tagIds.find(in_tag);
    if (known != m_tagIds.end())
        return known->second;
    const std::uint32_t id = static_cast<std::uint32_t>(m_tagTexts.size());
    m_tagTexts.push_back(&m_tagIds.emplace(in_tag, id).first->first);
    m_itemsOfTag.emplace_back();
    return id;
}

TagIndex::Tags TagIndex::GetTags(std::uint32_t in_item) const
{
    Tags tags;
    if (in_item < m_spans.size())
        for (std::uint32_t i = 0; i < m_spans[in_item].m_count; ++i)
            tags.insert(*m_tagTexts[m_tags[m_spans[in_item].m_begin + i]]);
    return tags;
}

TagIndex::Indexes TagIndex::GetItems(const std::string& in_tag) const
{
    const auto entry = m_tagIds.find(in_tag);
    return entry == m_tagIds.end() ? Indexes() : m_itemsOfTag[entry->second];
}

void TagIndex::FoldTexts()
{
    const std::locale locale;
    if (m_foldedTexts.GetSize() == m_tagTexts.size() && locale == m_locale)
        return;
    m_locale = locale;
    m_foldedTexts = TextArena();
    for (const std::string* const text : m_tagTexts)
        m_foldedTexts.Add(UpperCase(*text, locale));
    m_foldedTexts.CountCharacters();
}

std::vector<const TagIndex::Indexes*> TagIndex::FindItems(const std::string& in_word)
{
    FoldTexts();
    std::vector<const Indexes*> found;
    m_foldedTexts.Find(UpperCase(in_word, m_locale),
                       [&](std::size_t in_tag, bool) { found.push_back(&m_itemsOfTag[in_tag]); });
    return found;
}

} // namespace nodebrowser
