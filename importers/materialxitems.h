// SPDX-License-Identifier: MIT
/// The rules by which MaterialX declarations become items. Nothing is read here.
#pragma once

#include "importers/materialxdocument.h"

namespace importers
{

/// Where a document belongs.
struct MaterialXDocument
{
    QString file;
    QString topFolder;  ///< the folder directly below the opened one; empty for a document beside those folders
    std::size_t source; ///< an index into the sources of the content
};

/// Definitions, graphs and implementations find each other whatever documents they stand in. Linear time.
/// \param in_documents what the document numbers of the elements point at
std::vector<MaterialXItem> MakeItems(const MaterialXElements& in_elements,
                                     const std::vector<MaterialXDocument>& in_documents);

} // namespace importers
