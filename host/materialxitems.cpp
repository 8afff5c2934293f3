// SPDX-License-Identifier: MIT
#include "host/materialxitems.h"

#include "materialx/encoding.h"
#include "memorymodel/library.h"

#include <string>

namespace host
{
namespace
{

using materialx::eKind;

std::string Narrow(const QString& in_text)
{
    return materialx::NarrowToLatin1(in_text.toStdString());
}

memorymodel::NewItem Describe(const materialx::Item& in_item)
{
    const std::string name = materialx::NarrowToLatin1(in_item.m_shownName);
    switch (in_item.m_kind)
    {
    case eKind::eType:
        return memorymodel::NewItem::Type(name);
    case eKind::eGlobalConstant:
        return memorymodel::NewItem::GlobalConstant(name);
    case eKind::ePolymorphicSolver:
        return memorymodel::NewItem::PolymorphicSolver(name);
    case eKind::eSolver:
        return memorymodel::NewItem::Solver(name);
    case eKind::eCompound:
        return in_item.m_isLoop ? memorymodel::NewItem::LoopCompound(name) : memorymodel::NewItem::Compound(name);
    case eKind::eSignature:
        break;
    }
    return memorymodel::NewItem::Signature(name);
}

} // namespace

void AddItems(const materialx::Library& in_documents, const std::vector<materialx::Item>& in_items,
              memorymodel::Library& io_library)
{
    io_library.AddDataSource("Local");
    std::vector<memorymodel::DataSource*> sources;
    for (const materialx::Source& source : in_documents.m_sources)
    {
        const unsigned factory =
            source.m_name == QLatin1String("stdlib") ? memorymodel::eFactorySource : memorymodel::ePlainSource;
        sources.push_back(&io_library.AddDataSource(Narrow(source.m_name), memorymodel::eReadOnlySource | factory,
                                                    Narrow(source.m_location)));
    }
    for (const materialx::Item& item : in_items)
        io_library.Add(Describe(item)
                           .In(*sources[item.m_source])
                           .Tags(materialx::NarrowToLatin1(materialx::JoinTags(item.m_tags)))
                           .Parent(materialx::NarrowToLatin1(item.m_parent))
                           .Specializes(materialx::NarrowToLatin1(item.m_specializes)));
}

} // namespace host
