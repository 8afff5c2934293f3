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

/// Adds the sample library to a data layer, switches source control on, and gives some compounds a state.
///
/// Its data sources: "Local" (takes new items), "Factory" (the factory source), "Studio" (writable) and
/// "Archive" (read-only).
memorymodel::Library& AddSampleLibrary(memorymodel::DataLayer& io_layer);

} // namespace host
