// SPDX-License-Identifier: MIT
/// Which items of two libraries, or of one at two times, are the same.
#pragma once

#include "materialx/export.h"
#include "materialx/items.h"

#include <QUuid>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace materialx
{

/// The name-based identity, of version 5, of each of some items: of its kind and name, and of a node inside a graph
/// that of the graph, too. It is the same after a restart and on another machine. Of several items with one kind and
/// name the first has that identity, and each other one that of its number behind the name.
MATERIALX_EXPORT std::vector<QUuid> MakeIdentities(const std::vector<Item>& in_items);

/// What the identities are made of: a text for each of some items, the same for the same item at another time, and
/// different from all others of the list.
MATERIALX_EXPORT std::vector<std::string> IdentityNames(const std::vector<Item>& in_items);

/// The identity that is made of such a text.
MATERIALX_EXPORT QUuid MakeIdentity(const std::string& in_identityName);

/// Whether two items say the same, wherever they stand.
MATERIALX_EXPORT bool AreAlike(const Item& in_a, const Item& in_b);

/// How some items became others, by their identities. Numbers are indices into the lists.
struct Differences
{
    std::vector<std::size_t> m_gone;                            ///< of the first list
    std::vector<std::size_t> m_new;                             ///< of the second list
    std::vector<std::pair<std::size_t, std::size_t>> m_changed; ///< of both: shown name, tags, source or what it is of

    bool IsEmpty() const { return m_gone.empty() && m_new.empty() && m_changed.empty(); }
};

/// Linear time. What is equal in both lists is not told; neither is where in its document an item stands.
MATERIALX_EXPORT Differences Compare(const std::vector<Item>& in_before, const std::vector<Item>& in_after);

/// Whether bytes that are to replace a document say what the document says: reads them afresh and compares each
/// declaration, from which all items follow.
/// \return nothing when they do, else a sentence that names the first difference and its line
MATERIALX_EXPORT std::optional<std::string> FindDifference(const Document& in_document, const std::string& in_bytes);

} // namespace materialx
