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

    /// Whether the compound can be changed at all. The browser asks when it opens the context menu of the compound: the
    /// answer enables "Rename" and "Edit Tags". A read: it changes nothing and asks nobody.
    /// \param in_withSource whether it also counts that the data source of the compound takes no changes; the browser
    ///     passes true
    virtual bool CanModifyCompound(bool in_withSource) const = 0;

    /// Gives the compound a new name, as one command, and sends one ItemNameChanged() before it returns. Called after
    /// the rename dialog was accepted with another name. The dialog has checked that name with
    /// IsNameInNodeLibraryHierarchy(), but other callers may not have. So it refuses silently: an empty name, the name
    /// that the compound has, a name in use, and a compound that cannot be changed.
    virtual void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) = 0;
};

/// Write access to a compound: points at the compound's model.
class DATAMODEL_EXPORT CompoundModifierAccessor : public InterfaceAccessor<ICompoundModifier>
{
public:
    using InterfaceAccessor<ICompoundModifier>::InterfaceAccessor;

    /// Prepares the two operations below. Call it after ResetContext() and RefreshInterfacePointer().
    void Initialize();

    /// Whether the compound can be changed. False before Initialize().
    /// \param in_withSource also ask whether the compound's data source can be changed
    bool CanModifyCompound(bool in_withSource) const;

    /// Gives the compound a new name; observers get one ItemNameChanged(). Does nothing before Initialize(), for the
    /// name that the compound has, for an empty name, for a name that is in use, and for a compound that cannot be
    /// changed.
    void RenameCompound(const char* in_newName, hmx::fwk::ICommandManager* in_commands) const;

    /// Makes a compound in the library, points this accessor at it and calls Initialize(). Observers get one
    /// ItemAdded(). The library refuses an empty name, a name in use, an unknown base class, and every compound while
    /// no data source takes new items. The accessor is then invalid, as with an invalid library.
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
