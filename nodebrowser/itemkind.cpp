// SPDX-License-Identifier: MIT
#include "nodebrowser/itemkind.h"

#include "datamodel/helpers.h"

using vireo::datamodel::Helpers;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace nodebrowser
{

eItemKind KindOf(vireo::datamodel::ItemAccessor& in_item)
{
    const char* const type = in_item.GetItemID().GetType();
    if (type == VireoType::gPolymorphicSolver || type == VireoType::gSolver)
        return eKindSolver;
    if (type == VireoType::gCompound)
        return Helpers::IsAbstractFunction(in_item) ? eKindSignature : eKindCompound;
    if (type == VireoType::gGlobalConstant)
        return eKindConstant;
    if (type == LibType::gType)
        return eKindType;
    return eKindOther;
}

const char* NameOf(eItemKind in_kind)
{
    switch (in_kind)
    {
    case eKindSolver:
        return "solver";
    case eKindCompound:
        return "compound";
    case eKindSignature:
        return "signature";
    case eKindConstant:
        return "global constant";
    case eKindType:
        return "type";
    case eKindOther:
        break;
    }
    return "item";
}

} // namespace nodebrowser
