// SPDX-License-Identifier: MIT
/// What observers of a library have in common.
#pragma once

#include "datamodel/itemlibrary.h"

namespace host
{

/// Does nothing about any notification. An observer overrides those that it is made for.
class SilentObserver : public vireo::datamodel::IItemLibraryNotification
{
protected:
    using ItemLibraryAccessor = vireo::datamodel::ItemLibraryAccessor;
    using ItemID = vireo::datamodel::ItemID;

    void OnBeginChanges(ItemLibraryAccessor&) override {}
    void OnEndChanges(ItemLibraryAccessor&) override {}
    void LibraryInvalidated(ItemLibraryAccessor&) override {}
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID&) override {}
    void ItemTagsChanged(ItemLibraryAccessor&, const ItemID&, const char*) override {}
    void ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID&, long) override {}
    void OnPreCommit(ItemLibraryAccessor&, bool*) override {}
    void OnPostCommit(ItemLibraryAccessor&) override {}
};

} // namespace host
