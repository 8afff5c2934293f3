// SPDX-License-Identifier: MIT
/// Opens what a person names on the command line or in a file dialog.
#pragma once

#include <QString>

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace host
{

/// Opens a MaterialX file, or a folder of such files, as a new library of the data layer, which is saved there.
/// Everything is read before the data layer is changed. Time grows with the size of the files.
/// \param out_error why it cannot be opened, as "FILE:LINE: reason"
/// \return null on an error
memorymodel::Library* OpenLibrary(memorymodel::DataLayer& in_layer, const QString& in_path, QString* out_error);

} // namespace host
