// SPDX-License-Identifier: MIT
/// The commands behind the menus.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/system.h"

#include <QObject>
#include <QPointer>

namespace nodebrowser
{

/// Where a command reads and writes. While its dialog is open the host may do anything, so a command keeps to the library
/// and the item that its dialog was opened for. It writes with the command manager that the browser has when the dialog
/// closes, and writes nothing when the browser is gone by then.
struct CommandTarget
{
    vireo::datamodel::ItemLibraryAccessor m_library;
    QPointer<QObject> m_browser;                  ///< null once the browser is gone
    hmx::fwk::ICommandManager* const& m_commands; ///< the browser's own pointer, so not to be read once it is gone
};

/// Creates a compound, or a signature, and makes it the application's compound target.
/// \param in_kindWord "compound" or "signature", as the dialog shows it
void CreateCompound(const CommandTarget& in_target, const char* in_kindWord, bool in_signature);

/// Creates a loop compound and makes it the application's compound target.
void CreateLoopCompound(const CommandTarget& in_target);

void RenameCompound(const CommandTarget& in_target, const vireo::datamodel::ItemID& in_compound);

void EditTags(const CommandTarget& in_target, const vireo::datamodel::ItemID& in_item);

/// Writes the library to disk. Silent either way, on purpose.
void SaveLibrary(const vireo::datamodel::ItemLibraryAccessor& in_library);

// The commands below do nothing for an item whose database object the host's revision control does not know, and nothing
// without revision control.

void CheckOut(const vireo::datamodel::ItemID& in_item);
void MakeWritable(const vireo::datamodel::ItemID& in_item);
void ShowFiles(const vireo::datamodel::ItemID& in_item);

} // namespace nodebrowser
