// SPDX-License-Identifier: MIT
/// The content of the sample library as a table.
#pragma once

#include <vector>

namespace host
{

enum class SampleKind
{
    Compound,
    LoopCompound,
    Signature,
    Solver,
    Polymorphic,
    Constant,
    Type,
};

/// The data sources of the sample, in the order in which the library has them.
enum class SampleSource
{
    Local,   ///< takes what the user makes
    Factory, ///< came with the product
    Studio,  ///< shared and writable
    Archive, ///< shared and closed
};

struct SampleItem
{
    SampleKind m_kind;
    const char* m_name; ///< Latin-1
    const char* m_tags;
    SampleSource m_source = SampleSource::Factory;
    const char* m_parent = nullptr;  ///< the compound that it is inside of
    const char* m_general = nullptr; ///< the polymorphic solver that it is a variant of
};

/// All items of the sample: a node library for procedural graphics.
const std::vector<SampleItem>& GetSampleItems();

} // namespace host
