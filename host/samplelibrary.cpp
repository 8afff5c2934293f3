// SPDX-License-Identifier: MIT
#include "host/samplelibrary.h"

#include "host/sampletable.h"
#include "memorymodel/datalayer.h"

#include <vector>

using memorymodel::DataLayer;
using memorymodel::DataSource;
using memorymodel::Library;
using memorymodel::NewItem;

namespace host
{

namespace
{

NewItem MakeItem(SampleKind in_kind, const char* in_name)
{
    switch (in_kind)
    {
    case SampleKind::Compound:
        return NewItem::Compound(in_name);
    case SampleKind::LoopCompound:
        return NewItem::LoopCompound(in_name);
    case SampleKind::Signature:
        return NewItem::Signature(in_name);
    case SampleKind::Polymorphic:
        return NewItem::PolymorphicSolver(in_name);
    case SampleKind::Constant:
        return NewItem::GlobalConstant(in_name);
    case SampleKind::Type:
        return NewItem::Type(in_name);
    case SampleKind::Solver:
        break;
    }
    return NewItem::Solver(in_name);
}

/// Adds the sources in the order of SampleSource. New items go to the first one that takes them.
std::vector<DataSource*> AddSources(Library& io_library)
{
    return {&io_library.AddDataSource("Local"), &io_library.AddDataSource("Factory", memorymodel::eFactorySource),
            &io_library.AddDataSource("Studio"), &io_library.AddDataSource("Archive", memorymodel::eReadOnlySource)};
}

void AddItems(Library& io_library)
{
    const std::vector<DataSource*> sources = AddSources(io_library);
    for (const SampleItem& sample : GetSampleItems())
    {
        NewItem item = MakeItem(sample.m_kind, sample.m_name);
        item.Tags(sample.m_tags).In(*sources[static_cast<std::size_t>(sample.m_source)]);
        if (sample.m_parent)
            item.Parent(sample.m_parent);
        if (sample.m_general)
            item.Specializes(sample.m_general);
        io_library.Add(item);
    }
}

} // namespace

Library& AddSampleLibrary(DataLayer& io_layer)
{
    Library& library = io_layer.AddLibrary("Sample");
    AddItems(library);
    return library;
}

} // namespace host
