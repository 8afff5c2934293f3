// SPDX-License-Identifier: MIT
/// Making and changing compounds.
#pragma once

#include "datamodel/accessor.h"
#include "datamodel/itemid.h"

namespace hmx
{
namespace fwk
{
class ICommandManager;
}
} // namespace hmx

namespace vireo
{
namespace datamodel
{

class ItemLibraryAccessor;

/// What a compound's model offers to writers. For command managers see IItemLibraryModifier.
class DATAMODEL_EXPORT ICompoundModifier
{
public:
    virtual ~ICompoundModifier() = default;
    virtual bool CanModifyCompound(bool in_withSource) const = 0;
    virtual void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) = 0;
};

/// Write access to a compound: points at the compound's model.
class DATAMODEL_EXPORT CompoundModifierAccessor : public InterfaceAccessor<ICompoundModifier>
{
public:
    using InterfaceAccessor<ICompoundModifier>::InterfaceAccessor;

    /// Takes up the compound pointed at; to be called after the two steps of pointing, before the operations below that
    /// ask for it.
    void Initialize();

    /// Whether the compound takes changes. Needs Initialize(), false without it.
    /// \param in_withSource also ask whether the data source it lives in takes changes
    bool CanModifyCompound(bool in_withSource) const;

    /// Gives the compound a new name; observers get one ItemNameChanged(). Needs Initialize(). Does nothing without it,
    /// for the name it has, for an empty name, for a name that is in use, and for a compound that takes no changes.
    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) const;

    /// Makes a compound in the library and points this accessor at it, initialised; observers get one ItemAdded(). The
    /// accessor is invalid afterwards when the library refuses: an empty name or one in use, an unknown base class, no
    /// data source that takes new items, an invalid library.
    /// \param in_signature true for a signature, an interface without a graph
    /// \param in_baseClass identity text of the signature that the compound implements; empty or null for none
    /// \param in_category free text; empty or null for none
    /// \return the new compound's identity, or the invalid one
    ItemID CreateAndSetFromNewCompound(const ItemLibraryAccessor& in_library, const char* in_name, bool in_signature,
                                       const char* in_baseClass, const char* in_category,
                                       hmx::fwk::ICommandManager* in_commands);

private:
    ContextPtr m_initialized;
};

/// Offered by the model of a loop compound, besides ICompoundModifier.
class DATAMODEL_EXPORT ILoopCompoundModifier
{
public:
    virtual ~ILoopCompoundModifier() = default;
};

/// Write access to a loop compound: points at its model.
class DATAMODEL_EXPORT LoopCompoundModifierAccessor : public InterfaceAccessor<ILoopCompoundModifier>
{
public:
    using InterfaceAccessor<ILoopCompoundModifier>::InterfaceAccessor;

    /// Like CompoundModifierAccessor::CreateAndSetFromNewCompound(), for a compound whose graph runs in a loop.
    ItemID CreateAndSetFromNewLoopCompound(const ItemLibraryAccessor& in_library, const char* in_name,
                                           const char* in_baseClass, const char* in_category,
                                           hmx::fwk::ICommandManager* in_commands);
};

} // namespace datamodel
} // namespace vireo
