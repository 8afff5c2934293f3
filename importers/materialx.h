// SPDX-License-Identifier: MIT
/// Reads MaterialX documents and puts what they declare into a library in memory.
#pragma once

#include "importers/export.h"
#include "importers/materialxcontent.h"

#include <QString>

#include <optional>

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

/// Reads one file, whatever its name, or a folder: all files "*.mtlx" below it in the order of their paths. Files and
/// folders whose names start with a dot and links to folders are left out.
///
/// Unknown elements are skipped, "xi:include" among them, and so are elements without the attributes that name them.
/// Errors are: a document that is not well-formed, a root element other than "materialx", something that cannot be
/// read, and a folder without documents. Time and memory are linear in the size of the documents, but time is quadratic
/// in the number of attributes of one element.
/// \param out_content replaced as a whole; left as it is on an error
/// \return nothing on success
IMPORTERS_EXPORT std::optional<MaterialXError> ReadMaterialX(const QString& in_path, MaterialXContent& out_content);

/// Adds the content to a library that is still empty. The first source is "Local": it takes changes, and new items go
/// there. The sources of the content follow in their order and are read-only; one called "stdlib" is the factory
/// source. Each character that Latin-1 lacks becomes one "?".
///
/// The library notifies its observers of each item.
IMPORTERS_EXPORT void AddMaterialX(const MaterialXContent& in_content, memorymodel::Library& io_library);

} // namespace importers
