// SPDX-License-Identifier: MIT
/// The context menu of an item.
#pragma once

#include "datamodel/itemlibrary.h"

class QAction;
class QMenu;
class QObject;
class QString;

namespace nodebrowser
{

/// Appends an entry that the menu owns and that calls a slot of the receiver.
/// \param in_slot in the string form, SLOT(...)
QAction* AddEntry(QMenu& io_menu, const QString& in_text, QObject& in_receiver, const char* in_slot);

/// Appends the entries for an item. They depend on its type, on its write access, and on whether the host's revision
/// control knows its database object.
/// \param in_receiver a CNodeBrowser, whose slots the entries call
void FillContextMenu(QMenu& io_menu, QObject& in_receiver, const vireo::datamodel::ItemLibraryAccessor& in_library,
                     const vireo::datamodel::ItemID& in_item);

} // namespace nodebrowser
