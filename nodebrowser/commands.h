// SPDX-License-Identifier: MIT
/// The commands behind the menus.
#pragma once

#include "datamodel/itemlibrary.h"
#include "datamodel/system.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QVariant>

namespace nodebrowser
{

/// What a command works on. While its dialog is open, the host may attach another library. A command keeps to the
/// library and the item that its dialog was opened for. It writes with the command manager that the browser has when
/// the dialog closes. It writes nothing when the browser has been destroyed by then.
struct CommandTarget
{
    vireo::datamodel::ItemLibraryAccessor m_library;
    QPointer<QObject> m_browser;                  ///< null once the browser is destroyed
    hmx::fwk::ICommandManager* const& m_commands; ///< a field of the browser: read it only while m_browser is set
};

/// Creates a compound, or a signature, and makes it the application's compound target.
/// \param in_kindWord "compound" or "signature"; the dialog shows it, and starts with it as the name
void CreateCompound(const CommandTarget& in_target, const char* in_kindWord, bool in_signature);

/// Creates a loop compound and makes it the application's compound target.
void CreateLoopCompound(const CommandTarget& in_target);

void RenameCompound(const CommandTarget& in_target, const vireo::datamodel::ItemID& in_compound);

void EditTags(const CommandTarget& in_target, const vireo::datamodel::ItemID& in_item);

/// Makes a compound the application's compound target.
void OpenCompound(const vireo::datamodel::ItemLibraryAccessor& in_library, const vireo::datamodel::ItemID& in_compound);

/// Writes the library to disk. It reports neither success nor failure, on purpose. It takes a copy of the accessor, as
/// the host may attach another library while the data layer saves.
void SaveLibrary(vireo::datamodel::ItemLibraryAccessor in_library);

// The commands below do nothing when the host has no revision control, or when that does not know the database object
// of the item.

void CheckOut(const vireo::datamodel::ItemID& in_item);
void MakeWritable(const vireo::datamodel::ItemID& in_item);
void ShowFiles(const vireo::datamodel::ItemID& in_item);

/// Shows what source control says about an item, as a tool tip.
/// \param in_position on the screen
void ShowStateToolTip(const vireo::datamodel::ItemID& in_item, const QPoint& in_position);

/// Moves a compound to another data source.
/// \param in_identities what the menu's entry carries: two texts, the identities of the compound and of the resource
/// that stands for the source
void MoveCompound(const QVariant& in_identities);

} // namespace nodebrowser
