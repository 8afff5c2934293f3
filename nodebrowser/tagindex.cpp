#include "nodebrowser/tagindex.h"

#include <algorithm>

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
        m_spans.emplace_back();
        Split(static_cast<std::uint32_t>(m_spans.size() - 1), std::string(m_added.Begin(i), m_added.Length(i)));
    }
    m_added = TextBlock();
}

void TagIndex::SetTags(std::uint32_t in_item, const std::string& in_joined)
{
    SplitAdded();
    Remove(in_item);
    Split(in_item, in_joined);
}

/// Gives an item without tags those of a tag string, at the end of all tags.
void TagIndex::Split(std::uint32_t in_item, const std::string& in_joined)
{
    m_spans[in_item].m_begin = static_cast<std::uint32_t>(m_tags.size());
    if (in_joined.empty())
        return;
    std::size_t begin = 0;
    for (std::size_t end = in_joined.find(';'); end != std::string::npos; end = in_joined.find(';', begin))
    {
        Insert(in_item, in_joined.substr(begin, end - begin));
        begin = end + 1;
    }
    Insert(in_item, in_joined.substr(begin));
}

void TagIndex::Insert(std::uint32_t in_item, const std::string& in_tag)
{
    const std::uint32_t tag = NumberOf(in_tag);
    Span& span = m_spans[in_item];
    if (std::find(m_tags.begin() + static_cast<std::ptrdiff_t>(span.m_begin), m_tags.end(), tag) != m_tags.end())
        return;
    m_tags.push_back(tag);
    ++span.m_count;
    ++m_used;
    if (in_tag.empty())
        return;
    Numbers& items = m_itemsOfTag[tag];
    if (items.empty() || items.back() < in_item)
        items.push_back(in_item);
    else
        items.insert(std::upper_bound(items.begin(), items.end(), in_item), in_item);
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

void TagIndex::Remove(std::uint32_t in_item)
{
    Span& span = m_spans[in_item];
    for (std::size_t i = 0; i < span.m_count; ++i)
    {
        Numbers& items = m_itemsOfTag[m_tags[span.m_begin + i]];
        const auto place = std::lower_bound(items.begin(), items.end(), in_item);
        if (place != items.end() && *place == in_item)
            items.erase(place);
    }
    m_used -= span.m_count;
    span = Span();
    DropUnused();
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
