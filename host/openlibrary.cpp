// SPDX-License-Identifier: MIT
#include "host/openlibrary.h"

#include "host/materialxitems.h"
#include "memorymodel/datalayer.h"
#include "qtcompat/latin1.h"

#include <QDir>
#include <QFileInfo>

namespace host
{

memorymodel::Library* OpenLibrary(memorymodel::DataLayer& in_layer, const QString& in_path, QString* out_error)
{
    materialx::Library documents;
    if (const auto error = materialx::ReadLibrary(in_path, documents))
    {
        *out_error = error->GetText();
        return nullptr;
    }
    const QString name = QFileInfo(QDir::cleanPath(QFileInfo(in_path).absoluteFilePath())).fileName();
    memorymodel::Library& library = in_layer.AddLibrary(qtcompat::ToLatin1(name));
    AddItems(documents, materialx::MakeItems(documents), library);
    return &library;
}

} // namespace host
