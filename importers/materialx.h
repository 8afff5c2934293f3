// SPDX-License-Identifier: MIT
/// Reads MaterialX documents and puts what they declare into a library in memory.
#pragma once

#include "importers/export.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace memorymodel
{
class Library;
}

/// Two steps, so that nothing is half loaded: ReadMaterialX() reads everything into plain values, and only when all of
/// it could be read does AddMaterialX() touch a library.
///
///     importers::MaterialXContent content;
///     if (const std::optional<importers::MaterialXError> error = importers::ReadMaterialX(path, content))
///         return Complain(error->GetText());
///     importers::AddMaterialX(content, dataLayer.AddLibrary("Materials"));
namespace importers
{

/// What an item is in the library.
enum class eMaterialXKind
{
    eType,              ///< a "typedef"
    eGlobalConstant,    ///< a "unit"
    ePolymorphicSolver, ///< two or more "nodedef" with one "node" value
    eSolver,            ///< a "nodedef" that something else than a node graph implements
    eCompound,          ///< a "nodedef" that a node graph implements, or a node graph that stands for itself
    eSignature,         ///< a "nodedef" that nothing implements
};

/// One item, in the characters of its document; only AddMaterialX() narrows them to Latin-1.
struct MaterialXItem
{
    eMaterialXKind kind = eMaterialXKind::eType;
    QString name;
    /// Distinct and not empty: node groups in the order of the documents, then the top folders. For a type its
    /// semantic, for a unit its unit type.
    QStringList tags;
    /// For a node inside a node graph the name of the graph; else empty. Such an item is not listed.
    QString parent;
    /// For each of the definitions that share a "node" value that value; else empty. Such an item is not listed.
    QString specializes;
    /// An index into the sources. Of an item that several documents declare: the source of the first.
    std::size_t source = 0;
};

/// A place that items come from: a folder directly below the opened one, or the opened folder or file itself.
struct MaterialXSource
{
    QString name;
    QString location; ///< the path as the system writes it
};

struct MaterialXContent
{
    std::vector<MaterialXSource> sources; ///< in the order of the documents
    std::vector<MaterialXItem> items;     ///< by rank: types, units, nodes, free graphs, nodes inside graphs
};

/// Why something could not be read.
struct MaterialXError
{
    QString file; ///< the opened path, or one below it
    qint64 line;  ///< from 1; 1 also where a file or folder as a whole is the trouble
    QString reason;

    /// "FILE:LINE: reason".
    IMPORTERS_EXPORT QString GetText() const;
};

/// Reads one file, whatever its name, or a folder: all files "*.mtlx" below it in the order of their paths. Files and
/// folders whose names start with a dot and links to folders are left out.
///
/// Unknown elements and elements without the attributes that name them are skipped, "xi:include" among them. A document
/// that is not well-formed, a root element other than "materialx", something that cannot be read and a folder without
/// documents are errors. Time and memory grow with the size of the documents, but with the square of the number of
/// attributes that one element has.
/// \param out_content replaced as a whole; left as it is on an error
/// \return nothing on success
IMPORTERS_EXPORT std::optional<MaterialXError> ReadMaterialX(const QString& in_path, MaterialXContent& out_content);

/// Adds the content to a library, meant for one that is still empty. The first source is "Local", a writable one
/// without items, where new items go; the sources of the content follow in their order, read-only, and one called
/// "stdlib" is the factory source. What Latin-1 lacks becomes "?", one for each character.
///
/// The library tells its observers of each item.
IMPORTERS_EXPORT void AddMaterialX(const MaterialXContent& in_content, memorymodel::Library& in_library);

} // namespace importers
