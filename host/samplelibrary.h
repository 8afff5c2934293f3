// SPDX-License-Identifier: MIT
/// The library that the reference host shows when it is given none.
#pragma once

namespace memorymodel
{
class DataLayer;
class Library;
} // namespace memorymodel

namespace host
{

/// Adds the sample library to a data layer and switches source control on, with a state of its own for some compounds.
///
/// Its data sources: "Local" (takes new items), "Factory" (the factory source), "Studio" (writable) and
/// "Archive" (read-only).
memorymodel::Library& AddSampleLibrary(memorymodel::DataLayer& io_layer);

} // namespace host
