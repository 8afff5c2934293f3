// SPDX-License-Identifier: MIT
/// The way from an item to its database object.
#pragma once

#include "datamodel/itemid.h"
#include "datamodel/revisioncontrol.h"

namespace contract
{

/// The service "RevisionControlUIHelper".
nexa4::IRevisionControlUIHelper& RevisionControl();

/// The database object of an item.
nexa4::NEXAHandle<nexa4::IDbObject> ObjectOf(const vireo::datamodel::ItemID& in_item);

} // namespace contract
