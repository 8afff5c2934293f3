/// The tags of every listed item, and the items of every tag.
#pragma once

#include "datamodel/itemid.h"
#include "datamodel/itemlibrary.h"

#include <map>
#include <set>
#include <string>

/// Filled by the list builder, kept up to date by tag notifications, read by the search. Each operation costs a look-up
/// of the item and one of each tag concerned.
class TagIndex
{
public:
    using Tags = std::set<std::string>;
    using Items = std::set<vireo::datamodel::ItemID>;

    /// The library that tags are read from. What the index holds stays until Clear().
    void SetLibrary(const vireo::datamodel::ItemLibraryAccessor& in_library) { m_library = in_library; }

    void Clear();

    /// Reads an item's tags under a key, which replace all that the index had for the item. When there are none, the
    /// item's entry is left as it is.
    void CollectTags(const vireo::datamodel::ItemID& in_item, const char* in_key);

    /// Adds one tag to an item; an empty one adds nothing.
    void AddTag(const vireo::datamodel::ItemID& in_item, const std::string& in_tag);

    /// Forgets an item, and every tag that no other item has.
    void Remove(const vireo::datamodel::ItemID& in_item);

    /// The item's tags, null when the index has no entry for it.
    const Tags* FindTags(const vireo::datamodel::ItemID& in_item) const;

    /// The items of a tag, null when no item has it.
    const Items* FindItems(const std::string& in_tag) const;

private:
    vireo::datamodel::ItemLibraryAccessor m_library;
    std::map<vireo::datamodel::ItemID, Tags> m_tagsByItem;
    std::map<std::string, Items> m_itemsByTag;
};
