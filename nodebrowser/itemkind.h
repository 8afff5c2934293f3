// SPDX-License-Identifier: MIT
/// What an item is, as far as its icon and the tabs tell items apart.
#pragma once

#include "datamodel/item.h"

namespace nodebrowser
{

enum eItemKind : unsigned char
{
    eKindOther = 0, ///< of a type that the browser does not know, or no item at all
    eKindSolver,    ///< a solver or a polymorphic solver
    eKindCompound,  ///< a compound that is no signature
    eKindSignature,
    eKindConstant,
    eKindType,
};

/// How many kinds there are.
const int gItemKinds = eKindType + 1;

/// Asks the data layer about compounds only.
eItemKind KindOf(vireo::datamodel::ItemAccessor& in_item);

} // namespace nodebrowser
