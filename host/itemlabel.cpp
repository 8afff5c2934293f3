// SPDX-License-Identifier: MIT
#include "host/itemlabel.h"

#include "memorymodel/library.h"
#include "qtcompat/latin1.h"

using qtcompat::FromLatin1;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace host
{

namespace
{

const ItemLabel gCompound = {"compound", "compound", ":compound.png"};
const ItemLabel gLoopCompound = {"compound", "looping compound", ":compound.png"};
const ItemLabel gSignature = {"signature", "signature", ":signature.png"};
const ItemLabel gSolver = {"solver", "solver", ":solver.png"};
const ItemLabel gPolymorphicSolver = {"polymorphic-solver", "polymorphic solver", ":solver.png"};
const ItemLabel gGlobalConstant = {"global-constant", "global constant", ":constant.png"};
const ItemLabel gType = {"type", "type", ":type.png"};

} // namespace

const ItemLabel& GetItemLabel(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item)
{
    const char* const type = in_item.GetType();
    if (type == LibType::gType)
        return gType;
    if (type == VireoType::gGlobalConstant)
        return gGlobalConstant;
    if (type == VireoType::gPolymorphicSolver)
        return gPolymorphicSolver;
    if (type == VireoType::gSolver)
        return gSolver;
    if (in_library.IsSignature(in_item))
        return gSignature;
    return in_library.IsLoopCompound(in_item) ? gLoopCompound : gCompound;
}

QString GetItemName(const memorymodel::Library& in_library, const vireo::datamodel::ItemID& in_item)
{
    return FromLatin1(in_library.GetAccessor().GetItemName(in_item, true, nullptr));
}

} // namespace host
