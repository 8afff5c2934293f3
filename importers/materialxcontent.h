// SPDX-License-Identifier: MIT
/// What MaterialX documents declare, as plain values.
#pragma once

#include "importers/export.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

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
    eMaterialXKind m_kind = eMaterialXKind::eType;
    QString m_name;
    /// Distinct and not empty: node groups in the order of the documents, then the top folders. For a type its
    /// semantic, for a unit its unit type.
    QStringList m_tags;
    /// For a node inside a node graph the name of the graph; else empty. Such an item is not listed.
    QString m_parent;
    /// For each of the definitions that share a "node" value that value; else empty. Such an item is not listed.
    QString m_specializes;
    /// An index into the sources. Of an item that several documents declare: the source of the first.
    std::size_t m_source = 0;
};

/// Where items come from: a folder directly below the opened one, or the opened folder or file itself.
struct MaterialXSource
{
    QString m_name;
    QString m_location; ///< the path as the system writes it
};

struct MaterialXContent
{
    std::vector<MaterialXSource> m_sources; ///< in the order of the documents
    std::vector<MaterialXItem> m_items;     ///< types, then units, nodes, free graphs, and nodes inside graphs
};

/// Why something could not be read.
struct MaterialXError
{
    QString m_file; ///< the opened path, or one below it
    qint64 m_line;  ///< from 1; 1 too when the file or folder as a whole is at fault
    QString m_reason;

    /// "FILE:LINE: reason".
    IMPORTERS_EXPORT QString GetText() const;
};

} // namespace importers
