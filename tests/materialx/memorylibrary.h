// SPDX-License-Identifier: MIT
/// Libraries of documents that are on no disk.
#pragma once

#include "materialx/items.h"
#include "materialx/library.h"

#include <QByteArray>
#include <QString>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// A document with these bytes; throws when they are none.
inline materialx::Document MakeDocument(const std::string& in_bytes)
{
    materialx::Document document;
    if (const std::optional<materialx::Fault> fault = document.Read(in_bytes))
        throw std::runtime_error(fault->m_reason);
    return document;
}

/// A library of documents in a folder called "/lib", by their paths in there.
inline materialx::Library MakeLibrary(const std::vector<std::pair<const char*, std::string>>& in_documents)
{
    materialx::Library library;
    library.m_path = QStringLiteral("/lib");
    library.m_isFolder = true;
    for (const auto& [path, bytes] : in_documents)
    {
        const std::size_t index = materialx::FindOrAddDocument(QString::fromUtf8(path), library);
        library.m_documents[index].m_document = MakeDocument(bytes);
    }
    return library;
}

/// The bytes of all documents, in the order of the library.
inline std::vector<std::string> BytesOf(const materialx::Library& in_library)
{
    std::vector<std::string> bytes;
    bytes.reserve(in_library.m_documents.size());
    for (const materialx::LibraryDocument& document : in_library.m_documents)
        bytes.push_back(document.m_document.GetBytes());
    return bytes;
}

/// The first item that is listed and has a name; throws when there is none.
inline materialx::Item FindItem(const materialx::Library& in_library, const std::string& in_name)
{
    for (const materialx::Item& item : materialx::MakeItems(in_library))
        if (item.m_name == in_name && item.m_parent.empty())
            return item;
    throw std::runtime_error("There is no item " + in_name);
}
