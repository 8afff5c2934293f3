// SPDX-License-Identifier: MIT
/// The library that the reference host shows when no other is named.
#pragma once

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace host
{

/// Adds the sample library to a data layer. It is in memory only, and not under version control.
///
/// Its data sources: "Local" (takes new items), "Factory" (the factory source), "Studio" (writable) and
/// "Archive" (read-only).
memorymodel::Library& AddSampleLibrary(memorymodel::DataLayer& io_layer);

} // namespace host
