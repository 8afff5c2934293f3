// SPDX-License-Identifier: MIT
/// The items that the browser lists, and everything it derives from them.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/nexahandle.h"
#include "nodebrowser/browseritem.h"
#include "nodebrowser/identityindex.h"
#include "nodebrowser/searchindex.h"
#include "nodebrowser/stateicon.h"
#include "nodebrowser/tagindex.h"
#include "nodebrowser/textarena.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace nodebrowser
{

/// The records in library order, with their names, tags, identities and icons. They are built and changed together.
///
/// Invariant: each index has one record, one identity, one name and one tag string. A build only collects. The first
/// question that needs the search index, the identity index or the tag index makes it from what the build collected,
/// and drops that. A list that is replaced before it is asked sorts nothing.
///
/// An index counts the items in library order. A rank counts them in display order.
///
/// Build() is called once. Operations that take a library read the data layer, and so do SetState() and
/// SetPixelRatio(), for icons. A read may come back to whoever holds the list. The list must exist until the operation
/// returns.
class ItemList
{
public:
    using ObjectHandles = std::list<nexa4::NEXAHandle<nexa4::IDbObject>>;

    /// What a list leaves to the next one, which mostly has the same items. It saves time, and changes nothing else.
    struct Legacy
    {
        IdentityIndex::Identities m_identities; // by index
        std::vector<std::uint32_t> m_order;     // indexes, by rank; empty when the list was never asked
        std::size_t m_nameBytes = 0;
        std::size_t m_tagBytes = 0;
    };

    ItemList() = default;
    // Its records point at its icons.
    ItemList(const ItemList&) = delete;
    ItemList& operator=(const ItemList&) = delete;

    /// Reads the items of a table of contents into the empty list; none from an invalid one. Costs one pass over the
    /// items. Catches nothing that the data layer throws.
    /// \param in_legacy of the list before. The names of an item that both lists have need no sorting again.
    /// \param in_versioningActive whether badges are shown
    /// \param out_handles gets the database objects whose states the caller requests; null when it requests none
    void Build(const vireo::datamodel::ItemTOCAccessor& in_toc, const vireo::datamodel::ItemLibraryAccessor& in_library,
               const Legacy& in_legacy, bool in_versioningActive, ObjectHandles* out_handles);

    /// Takes what the next list needs out of this one, which is of no use afterwards.
    Legacy TakeLegacy();

    std::size_t GetSize() const { return m_records.size(); }

    /// The ranks of the items that a search and a tab find, the most relevant first.
    /// \param out_ranks replaced; keeps its memory
    void Find(const SearchWords& in_words, int in_mode, std::vector<std::uint64_t>& out_ranks);

    /// Finds the same by applying the rule to one item after the other. It reads the data layer, so it is right when
    /// items have changed since the build. Leaves out items that are gone.
    void FindItemByItem(const SearchWords& in_words, int in_mode,
                        const vireo::datamodel::ItemLibraryAccessor& in_library, std::vector<std::uint64_t>& out_ranks);

    /// The search rule: whether an item passes a search and a tab, and its score.
    /// \param out_score written only when the item passes
    bool Compare(const SearchWords& in_words, int in_mode, const vireo::datamodel::ItemLibraryAccessor& in_library,
                 vireo::datamodel::ItemAccessor& in_item, std::size_t* out_score);

    /// The record at a rank; null when there is none.
    const BrowserItem* FindRecord(std::uint64_t in_rank);

    /// Whether the item of any record is gone. Costs a pass over the records.
    bool HasGoneItem() const;

    /// Reads the tags of an item again. Does nothing for an item that is not listed.
    void RefreshTags(const vireo::datamodel::ItemLibraryAccessor& in_library, const vireo::datamodel::ItemID& in_item);

    /// Sets the source-control state of an item.
    /// \return whether its icon changed; false when the state stays the same and for an item that is not listed
    bool SetState(const vireo::datamodel::ItemID& in_item, unsigned in_state, bool in_versioningActive);

    /// Sets the device pixel ratio of the icons, which is 1 at first. Costs nothing when it stays the same.
    void SetPixelRatio(double in_ratio) { m_icons.SetPixelRatio(in_ratio); }

    /// Sets all states to eAccessStateUnknown.
    void ResetStates(bool in_versioningActive);

    /// The tags of an item as the search sees them: its own and the name of its type.
    std::set<std::string> GetTags(const vireo::datamodel::ItemID& in_item);

    /// The items that have a tag, as the search sees it; none for the empty tag.
    std::set<vireo::datamodel::ItemID> GetTaggedItems(const std::string& in_tag);

private:
    void Append(const char* in_type, const vireo::datamodel::ItemTOCAccessor& in_toc,
                const vireo::datamodel::ItemLibraryAccessor& in_library, bool in_versioningActive,
                ObjectHandles* out_handles);
    SearchIndex& GetSearchIndex();
    IdentityIndex& GetIdentityIndex();
    TagIndex& GetTagIndex();

    StateIcons m_icons;
    std::vector<BrowserItem> m_records; // by index

    TextArena m_names;                  // by index, until there is a search index
    std::vector<std::uint32_t> m_start; // indexes whose names are about in order, until there is a search index
    std::size_t m_nameBytes = 0;
    std::unique_ptr<SearchIndex> m_searchIndex; // null until it is needed

    IdentityIndex::Identities m_identities;         // by index, until there is an identity index
    std::unique_ptr<IdentityIndex> m_identityIndex; // null until it is needed

    TagTexts m_tagTexts; // by index, until there is a tag index
    std::size_t m_tagBytes = 0;
    std::unique_ptr<TagIndex> m_tagIndex; // null until it is needed
};

} // namespace nodebrowser
