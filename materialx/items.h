// SPDX-License-Identifier: MIT
/// The rules by which MaterialX declarations become items. Nothing is read here.
#pragma once

#include "materialx/export.h"
#include "materialx/library.h"

#include <cstddef>
#include <string>
#include <vector>

namespace materialx
{

/// What an item is in the library.
enum class eKind
{
    eType,              ///< a "typedef"
    eGlobalConstant,    ///< a "unit"
    ePolymorphicSolver, ///< two or more "nodedef" with one "node" value
    eSolver,            ///< a "nodedef" that something else than a node graph implements
    eCompound,          ///< a "nodedef" that a node graph implements, or a node graph that stands for itself
    eSignature,         ///< a "nodedef" that nothing implements
};

/// A declaration: indices into the documents of the library and into the declarations of the document. Good until an
/// edit changes how many declarations the document has.
struct DeclarationIndex
{
    std::size_t m_document;
    std::size_t m_declaration;
};

/// One item, in the characters of its document, UTF-8: NarrowToLatin1() gives the text of the data layer, and this is
/// what to show where that has a "?".
struct Item
{
    eKind m_kind = eKind::eType;
    bool m_isLoop = false;
    std::string m_name;      ///< what its elements carry
    std::string m_shownName; ///< the "uiname" of its declaration, else the name
    /// Those that the declaration has in "tags", else distinct and not empty: node groups in the order of the
    /// documents, then the top folders. For a type its semantic, for a unit its unit type.
    std::vector<std::string> m_tags;
    /// For a node inside a node graph the name of the graph; else empty. Such an item is not listed.
    std::string m_parent;
    /// For each of the definitions that share a "node" value that value; else empty. Such an item is not listed.
    std::string m_specializes;
    std::size_t m_source = 0;            ///< an index into the sources; of several declarations that of the first
    DeclarationIndex m_declaration = {}; ///< the first one; of an inner element the one around it
};

/// The declaration of an item.
inline const Declaration& DeclarationOf(const Library& in_library, const DeclarationIndex& in_index)
{
    return in_library.m_documents[in_index.m_document].m_document.GetDeclarations()[in_index.m_declaration];
}

/// Tags as one text, with ";" between them.
MATERIALX_EXPORT std::string JoinTags(const std::vector<std::string>& in_tags);

/// The items of a library: types, then units, nodes, free graphs, and nodes inside graphs. A definition, its graph and
/// its implementation may stand in different documents. Linear time.
MATERIALX_EXPORT std::vector<Item> MakeItems(const Library& in_library);

/// Reads again how the declaration of an item says that it is shown: its shown name and its tags. What else decides
/// about the item is as it was. Linear in the size of the library for a polymorphic solver without "tags", else fast.
MATERIALX_EXPORT void ReadHowShown(const Library& in_library, Item& io_item);

/// The tags that an item has, or would have, without "tags" in its declaration. Linear in the size of the library.
MATERIALX_EXPORT std::vector<std::string> TagsOfTheRules(const Library& in_library, const Item& in_item);

} // namespace materialx
