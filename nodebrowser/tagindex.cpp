// SPDX-License-Identifier: MIT
#include "nodebrowser/tagindex.h"

#include <algorithm>
#include <utility>

namespace nodebrowser
{
namespace
{

/// So few tag sets without an item are not worth dropping.
const std::size_t gFewSets = 1024;

std::string UpperCase(std::string in_text, const std::locale& in_locale)
{
    if (!in_text.empty())
        std::use_facet<std::ctype<char>>(in_locale).toupper(&in_text[0], &in_text[0] + in_text.size());
    return in_text;
}

/// Adds the name of a type to a tag string.
void Join(const std::string& in_joined, const char* in_type, std::string& out_text)
{
    out_text = in_joined;
    if (!in_joined.empty() && *in_type)
        out_text += ';';
    out_text += in_type;
}

/// Calls in_function(text) for each tag in a tag string; none for the empty string.
template <class Function> void ForEachTag(const std::string& in_joined, Function in_function)
{
    if (in_joined.empty())
        return;
    std::size_t begin = 0;
    for (std::size_t end = in_joined.find(';'); end != std::string::npos; end = in_joined.find(';', begin))
    {
        in_function(in_joined.substr(begin, end - begin));
        begin = end + 1;
    }
    in_function(in_joined.substr(begin));
}

} // namespace

void TagTexts::Reserve(std::size_t in_items, std::size_t in_bytes)
{
    m_textOfItem.reserve(in_items);
    m_texts.Reserve(0, in_bytes);
}

void TagTexts::Add(std::string in_joined, const char* in_type)
{
    // Neighbours in a library are often of one family and have the same tags.
    if (m_textOfItem.empty() || in_type != m_lastType || in_joined != m_lastTags)
    {
        m_lastTags = std::move(in_joined);
        m_lastType = in_type;
        Join(m_lastTags, in_type, m_text);
        m_texts.Add(m_text);
    }
    m_textOfItem.push_back(static_cast<std::uint32_t>(m_texts.GetSize() - 1));
}

TagIndex::TagIndex(TagTexts in_texts) : m_setOfItem(std::move(in_texts.m_textOfItem))
{
    const TextArena& texts = in_texts.m_texts;
    Ids setOfText;
    setOfText.reserve(texts.GetSize());
    for (std::size_t text = 0; text < texts.GetSize(); ++text)
        setOfText.push_back(FindOrAddSet(std::string(texts.Begin(text), texts.Length(text))));
    for (std::uint32_t& set : m_setOfItem)
        set = setOfText[set];
}

void TagIndex::SetTags(std::uint32_t in_item, const std::string& in_joined, const char* in_type)
{
    Join(in_joined, in_type, m_text);
    m_setOfItem[in_item] = FindOrAddSet(m_text);
    if (m_setTexts.size() > 2 * m_setOfItem.size() + gFewSets)
        DropUnusedSets();
}

/// Makes the sets and the tags anew from those that items have. Items whose tags change again and again leave many
/// behind.
void TagIndex::DropUnusedSets()
{
    const std::unordered_map<std::string, std::uint32_t> texts = std::move(m_setIds);
    const std::vector<const std::string*> textOfSet = std::move(m_setTexts);
    m_setIds.clear();
    m_setTexts.clear();
    m_tagIds.clear();
    m_tagTexts.clear();
    m_setsOfTag.clear();
    m_foldedTexts = TextArena();
    for (std::uint32_t& set : m_setOfItem)
        set = FindOrAddSet(*textOfSet[set]);
}

std::uint32_t TagIndex::FindOrAddSet(const std::string& in_text)
{
    const auto known = m_setIds.find(in_text);
    if (known != m_setIds.end())
        return known->second;
    const std::uint32_t id = static_cast<std::uint32_t>(m_setTexts.size());
    m_setTexts.push_back(&m_setIds.emplace(in_text, id).first->first);
    ForEachTag(in_text, [this, id](const std::string& in_tag) {
        if (in_tag.empty())
            return;
        Ids& sets = m_setsOfTag[FindOrAddTag(in_tag)];
        if (sets.empty() || sets.back() != id) // the string can name a tag twice
            sets.push_back(id);
    });
    return id;
}

std::uint32_t TagIndex::FindOrAddTag(const std::string& in_tag)
{
    const auto known = m_tagIds.find(in_tag);
    if (known != m_tagIds.end())
        return known->second;
    const std::uint32_t id = static_cast<std::uint32_t>(m_tagTexts.size());
    m_tagTexts.push_back(&m_tagIds.emplace(in_tag, id).first->first);
    m_setsOfTag.emplace_back();
    return id;
}

TagIndex::Tags TagIndex::GetTags(std::uint32_t in_item) const
{
    Tags tags;
    if (in_item < m_setOfItem.size())
        ForEachTag(*m_setTexts[m_setOfItem[in_item]], [&tags](const std::string& in_tag) { tags.insert(in_tag); });
    return tags;
}

TagIndex::Indexes TagIndex::GetItems(const std::string& in_tag) const
{
    Indexes items;
    const auto entry = m_tagIds.find(in_tag);
    if (entry == m_tagIds.end())
        return items;
    const Ids& sets = m_setsOfTag[entry->second];
    for (std::size_t item = 0; item < m_setOfItem.size(); ++item)
        if (std::binary_search(sets.begin(), sets.end(), m_setOfItem[item]))
            items.push_back(static_cast<std::uint32_t>(item));
    return items;
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

/// Marks the sets that have a tag with a word in it.
/// \return whether there is one
bool TagIndex::MarkSets(const std::string& in_word)
{
    FoldTexts();
    m_marked.assign(m_setTexts.size(), 0);
    bool found = false;
    m_foldedTexts.Find(UpperCase(in_word, m_locale), [&](std::size_t in_tag, bool) {
        for (const std::uint32_t set : m_setsOfTag[in_tag])
            m_marked[set] = 1;
        found = true;
    });
    return found;
}

} // namespace nodebrowser
