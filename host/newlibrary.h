// SPDX-License-Identifier: MIT
/// Begins a library on disk.
#pragma once

#include <QString>

namespace host
{

/// Writes the first document of a new library, which has no items yet, into a folder without documents: the one that
/// new nodes go to.
/// \return why it cannot be begun there; empty on success
QString MakeLibrary(const QString& in_folder);

} // namespace host
