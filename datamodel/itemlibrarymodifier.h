// SPDX-License-Identifier: MIT
/// Writing to an item library: tags, commits, new items.
#pragma once

#include "datamodel/accessor.h"
#include "datamodel/dbobjectid.h"
#include "datamodel/itemid.h"

#include <list>
#include <string>

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

/// What a library offers to writers.
///
/// Every write takes a command manager. With one, the write becomes exactly one command of it, which can be undone and
/// redone. With null it is done for good, and so it is with a manager that the data layer does not know. A write that
/// is refused or changes nothing makes no command and notifies nobody. Every other write notifies the observers of the
/// library and of the table of contents before it returns, between OnBeginChanges() and OnEndChanges(). So do its undo
/// and redo.
class DATAMODEL_EXPORT IItemLibraryModifier
{
public:
    virtual ~IItemLibraryModifier() = default;

    /// Saves what has changed, or everything. Sends OnPreCommit() first and stops, without a write, if an observer
    /// vetoes. Sends OnPostCommit() at the end, also after failures. Items that were saved are no longer dirty, which
    /// is not notified. No command: a commit cannot be undone. Called by "Save graph library", right after
    /// ILowLevelItemLibrary::PreCommit() whatever that returned.
    /// \param out_written set to whether anything was written
    /// \param out_messages gets one sentence for each item that could not be saved; may be null
    /// \param in_everything also what has no changes; the browser passes false
    /// \param in_source the resource of the one data source to save; the browser passes the null identity, for all. One
    ///     that the library does not have is a failure: a message, nothing written, and no notification
    /// \return false after a veto or a failure
    virtual bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                              const nexa4::TezUID& in_source) = 0;

    /// Replaces an item's tags and sends one ItemTagsChanged(). Stores the text as it is: the dialog has normalised it.
    /// \param in_tags joined by ";"; empty takes all tags away
    /// \return false when the item is unknown or read-only; true otherwise, also when it had these tags already
    virtual bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                             hmx::fwk::ICommandManager* in_commands) = 0;

    /// Makes a compound or a signature and sends one ItemAdded(). Refuses an empty name, a name in use, an unknown base
    /// class, and everything while no data source takes new items. The texts come from a dialog as they were typed,
    /// with the name's special characters replaced.
    /// \param in_baseClass a signature, as the text that IItemModel::GetItemIDUID() gives for it; empty or null for
    ///     none
    /// \param in_category free text; empty or null for none
    /// \return the context of the new model, which offers ICompound and ICompoundModifier; null when refused
    virtual ContextPtr CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass,
                                      const char* in_category, hmx::fwk::ICommandManager* in_commands) = 0;

    /// Like CreateCompound(), for a compound whose graph runs in a loop.
    /// \return the context of the new model, which offers ILoopCompound and ILoopCompoundModifier besides; null when
    ///     refused
    virtual ContextPtr CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                          hmx::fwk::ICommandManager* in_commands) = 0;
};

/// Write access to a library: points at the library's context.
class DATAMODEL_EXPORT ItemLibraryModifierAccessor : public InterfaceAccessor<IItemLibraryModifier>
{
public:
    using InterfaceAccessor<IItemLibraryModifier>::InterfaceAccessor;

    /// Saves the library. Calls OnPreCommit() of the observers first; one veto stops the commit. Calls OnPostCommit()
    /// afterwards. Committed items are no longer dirty.
    /// \param out_written whether anything was written
    /// \param out_messages gets one sentence for each failure; may be null
    /// \param in_everything also write what has no changes
    /// \param in_source identity of the resource that stands for the data source to save; the null identity saves all
    /// \return true on success, also when there was nothing to save; false after a veto or a failure, and when invalid
    bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                      const nexa4::TezUID& in_source) const;

    /// Replaces the item's tags under a key; observers get one ItemTagsChanged(). The text is stored as it is.
    /// \param in_key any text; the tags under other keys stay as they are
    /// \param in_tags the tags joined by ";"; empty or null for none
    /// \return false when the library does not have the item, the item is read-only, or the key is null; else true: the
    /// item has these tags
    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                     hmx::fwk::ICommandManager* in_commands) const;
};

/// What a library offers below the level of items.
class DATAMODEL_EXPORT ILowLevelItemLibrary
{
public:
    virtual ~ILowLevelItemLibrary() = default;

    /// The place for what a library has to do before it is saved, like opening a transaction. Notifies nobody. The
    /// browser calls CommitToDisk() after it in any case.
    /// \return whether the library can be committed
    virtual bool PreCommit() = 0;
};

/// The library's low-level side: points at the library's context.
class DATAMODEL_EXPORT LowLevelItemLibraryAccessor : public InterfaceAccessor<ILowLevelItemLibrary>
{
public:
    using InterfaceAccessor<ILowLevelItemLibrary>::InterfaceAccessor;

    /// Prepares the library for a commit. Called once right before CommitToDisk(). Notifies nobody.
    /// \return whether it can be committed; false when invalid
    bool PreCommit() const;
};

} // namespace datamodel
} // namespace vireo
