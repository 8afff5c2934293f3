// SPDX-License-Identifier: MIT
/// The documents of a folder, or the one that was opened, and where they belong.
#pragma once

#include "materialx/document.h"
#include "materialx/edit.h"
#include "materialx/error.h"
#include "materialx/export.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Reading takes two steps: FindDocuments() lists the documents, and ReadDocument() reads one of them. Each document is
/// read for itself, on any thread. ReadLibrary() does all of it.
namespace materialx
{

/// Where items come from: a folder directly below the opened one, or the opened folder or file itself.
struct Source
{
    QString m_name;
    QString m_location; ///< the path as the system writes it
    QString m_folder;   ///< relative to the opened folder; empty for that one, and for a file
};

struct LibraryDocument
{
    QString m_file;           ///< the opened path, or one below it
    QString m_relativePath;   ///< from the opened folder; of an opened file its name
    std::string m_topFolder;  ///< the folder directly below the opened one; empty for a document beside those folders
    std::size_t m_source = 0; ///< an index into the sources
    Document m_document;
};

/// Indices into the lists stay good: both only grow. A document that is gone is one without bytes.
struct Library
{
    QString m_path; ///< as opened
    bool m_isFolder = false;
    std::vector<Source> m_sources;
    std::vector<LibraryDocument> m_documents;
};

/// Indices of the documents in the order of their paths. All rules go by this order, whenever a document was added.
MATERIALX_EXPORT std::vector<std::size_t> InPathOrder(const Library& in_library);

/// The document of a path that is relative to the opened folder; adds one without bytes, and its source, when there is
/// none. In a library that is a file that file is the only document, whatever the path.
MATERIALX_EXPORT std::size_t FindOrAddDocument(const QString& in_relativePath, Library& io_library);

/// Adds the documents of another list that are not there yet, without bytes. Linear time.
MATERIALX_EXPORT void AddMissing(const Library& in_found, Library& io_library);

/// Lists one file, whatever its name, or a folder: all files "*.mtlx" below it in the order of their paths. The
/// documents are still empty.
///
/// Left out are files and folders whose names start with a dot, links to folders, links that lead out of the opened
/// folder, and a link to a document that is listed already. Errors are a folder that cannot be read, one without
/// documents, and a document whose path is not in the encoding of the system.
/// \param out_library on an error what could be listed nevertheless
MATERIALX_EXPORT std::optional<Error> FindDocuments(const QString& in_path, Library& out_library);

/// Reads the file of a document. Errors are what Document::Read() calls a fault, a file that cannot be read, and one
/// that is larger than the memory.
MATERIALX_EXPORT std::optional<Error> ReadDocument(LibraryDocument& io_document);

/// Lists and reads. "xi:include" is not followed.
/// \param out_library replaced as a whole; left as it is on an error
/// \return nothing on success
MATERIALX_EXPORT std::optional<Error> ReadLibrary(const QString& in_path, Library& out_library);

/// Makes all edits of a change, or none of them and says why.
/// \param out_touched of each edit what Document::Apply() says
MATERIALX_EXPORT std::optional<Fault> Apply(const Change& in_change, Library& io_library,
                                            std::vector<std::optional<Range>>* out_touched = nullptr);

} // namespace materialx
