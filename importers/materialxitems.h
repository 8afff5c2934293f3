// SPDX-License-Identifier: MIT
/// The rules by which MaterialX declarations become items. Nothing is read here.
#pragma once

#include "importers/materialxcontent.h"
#include "importers/materialxdocument.h"

#include <vector>

namespace importers
{

/// Where a document belongs.
struct MaterialXDocument
{
    QString m_file;
    QString m_topFolder;  ///< the folder directly below the opened one; empty for a document beside those folders
    std::size_t m_source; ///< an index into the sources of the content
};

/// A definition, its graph and its implementation may stand in different documents. Linear time.
/// \param in_documents the documents that the elements were read from; elements hold indices into them
std::vector<MaterialXItem> MakeItems(const MaterialXElements& in_elements,
                                     const std::vector<MaterialXDocument>& in_documents);

} // namespace importers
