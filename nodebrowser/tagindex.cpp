#include "nodebrowser/tagindex.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

using vireo::datamodel::ItemID;

void TagIndex::Clear()
{
    m_tagsByItem.clear();
    m_itemsByTag.clear();
}

void TagIndex::CollectTags(const ItemID& in_item, const char* in_key)
{
    const std::string joined = m_library.GetItemTags(in_item, in_key);
    if (joined.empty())
        return;
    Tags& tags = m_tagsByItem[in_item];
    boost::split(tags, joined, boost::is_any_of(";"));
    for (const std::string& tag : tags)
        if (!tag.empty())
            m_itemsByTag[tag].insert(in_item);
}

void TagIndex::AddTag(const ItemID& in_item, const std::string& in_tag)
{
    if (in_tag.empty())
        return;
    m_tagsByItem[in_item].insert(in_tag);
    m_itemsByTag[in_tag].insert(in_item);
}

void TagIndex::Remove(const ItemID& in_item)
{
    const auto entry = m_tagsByItem.find(in_item);
    if (entry == m_tagsByItem.end())
        return;
    for (const std::string& tag : entry->second)
    {
        const auto items = m_itemsByTag.find(tag);
        if (items == m_itemsByTag.end())
            continue;
        items->second.erase(in_item);
        if (items->second.empty())
            m_itemsByTag.erase(items);
    }
    m_tagsByItem.erase(entry);
}

const TagIndex::Tags* TagIndex::FindTags(const ItemID& in_item) const
{
    const auto entry = m_tagsByItem.find(in_item);
    return entry == m_tagsByItem.end() ? nullptr : &entry->second;
}

const TagIndex::Items* TagIndex::FindItems(const std::string& in_tag) const
{
    const auto entry = m_itemsByTag.find(in_tag);
    return entry == m_itemsByTag.end() ? nullptr : &entry->second;
}
