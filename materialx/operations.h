// SPDX-License-Identifier: MIT
/// What people do with items, as edits of documents: names and tags. newnode.h and moving.h have the rest.
#pragma once

#include "materialx/edit.h"
#include "materialx/export.h"
#include "materialx/items.h"
#include "materialx/library.h"
#include "materialx/textedits.h"

#include <cstddef>
#include <string>
#include <vector>

/// Each operation says what would change; Apply() makes the change, and Apply() of its inverse takes it back, byte by
/// byte. Texts are UTF-8. Cost is linear in the size of the library unless another is stated.
namespace materialx
{

/// What an operation would change. Nothing to change is no refusal.
struct Plan
{
    Change m_change;
    std::string m_refusal; ///< why the operation is impossible, as a sentence; empty when it is not
};

/// Shows another name: sets "uiname", or removes it when the name is the one without it. Linear in the element.
MATERIALX_EXPORT Plan Rename(const Library& in_library, const Item& in_item, const std::string& in_name);

/// Gives other tags, joined with ";": sets "tags", or removes it when the tags are those without it. The document that
/// has "tags" for the first time declares it in an "attributedef".
MATERIALX_EXPORT Plan SetTags(const Library& in_library, const Item& in_item, const std::string& in_tags);

/// A plan for nothing.
Plan Refuse(std::string in_reason);

/// Appends the line that declares "tags", unless the document has one already.
void DeclareTags(const Document& in_document, const Style& in_style, std::vector<std::string>& io_lines);

inline const Document& DocumentOf(const Library& in_library, std::size_t in_document)
{
    return in_library.m_documents[in_document].m_document;
}

/// Whether an element can have a shown name, tags and values of its own.
inline bool IsNodeOrGraph(const Declaration& in_declaration)
{
    return in_declaration.m_kind == eDeclaration::eNodeDef || in_declaration.m_kind == eDeclaration::eNodeGraph;
}

constexpr char gNotUtf8[] = "The document is not UTF-8.";
constexpr char gNotXml[] = "The text has characters that a document cannot hold.";

} // namespace materialx
