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

QString NameOf(eItemKind in_kind)
{
    switch (in_kind)
    {
    case eKindSolver:
        return QString::fromLatin1("solver");
    case eKindCompound:
        return QString::fromLatin1("compound");
    case eKindSignature:
        return QString::fromLatin1("signature");
    case eKindConstant:
        return QString::fromLatin1("global constant");
    case eKindType:
        return QString::fromLatin1("type");
    case eKindOther:
        break;
    }
    return QString::fromLatin1("item");
}

} // namespace nodebrowser
