// SPDX-License-Identifier: MIT
/// The kinds of item that the browser tells apart by icon and by tab.
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

/// Reads the data layer for compounds only: whether they are signatures.
eItemKind KindOf(vireo::datamodel::ItemAccessor& in_item);

/// A kind in a word or two, for those who cannot see the icon.
const char* NameOf(eItemKind in_kind);

} // namespace nodebrowser
