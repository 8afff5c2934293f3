// SPDX-License-Identifier: MIT
/// Typed views of an item's model: compound, loop compound, function, type.
#pragma once

#include "datamodel/accessor.h"
#include "datamodel/itemid.h"

namespace vireo
{
namespace datamodel
{

/// A compound's model: the graph behind the node. Signatures are compounds too.
class DATAMODEL_EXPORT ICompound
{
public:
    virtual ~ICompound() = default;
    /// The item that the model belongs to. The rename dialog and new compounds learn their item from it.
    virtual ItemID GetItemID() const = 0;
};

/// Valid when the model is that of a compound, a loop compound or a signature.
class DATAMODEL_EXPORT CompoundAccessor : public InterfaceAccessor<ICompound>
{
public:
    using InterfaceAccessor<ICompound>::InterfaceAccessor;

    /// The compound's item; the invalid identity when the accessor is invalid.
    ItemID GetItemID() const;
};

/// Offered by the model of a compound whose graph runs in a loop, besides ICompound.
class DATAMODEL_EXPORT ILoopCompound
{
public:
    virtual ~ILoopCompound() = default;
};

/// Valid when the model is that of a loop compound.
class DATAMODEL_EXPORT LoopCompoundAccessor : public InterfaceAccessor<ILoopCompound>
{
public:
    using InterfaceAccessor<ILoopCompound>::InterfaceAccessor;
};

/// Offered by the models of compounds, signatures and solvers: what a graph can contain as a function.
class DATAMODEL_EXPORT IFunction
{
public:
    virtual ~IFunction() = default;
};

/// Valid when the model is that of a function.
class DATAMODEL_EXPORT FunctionAccessor : public InterfaceAccessor<IFunction>
{
public:
    using InterfaceAccessor<IFunction>::InterfaceAccessor;
};

/// Offered by the model of a type.
class DATAMODEL_EXPORT ITypeDescriptor
{
public:
    virtual ~ITypeDescriptor() = default;
};

/// Valid when the model is that of a type.
class DATAMODEL_EXPORT TypeDescriptorAccessor : public InterfaceAccessor<ITypeDescriptor>
{
public:
    using InterfaceAccessor<ITypeDescriptor>::InterfaceAccessor;
};

} // namespace datamodel
} // namespace vireo
