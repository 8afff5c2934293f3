// SPDX-License-Identifier: MIT
/// Finds the object of an item in the object database.
#pragma once

#include "datamodel/itemid.h"
#include "datamodel/nexahandle.h"
#include "datamodel/revisioncontrol.h"

namespace nodebrowser
{

/// The revision-control service of the host; null when it has none. Look it up again for each use: a host may exchange
/// it.
nexa4::IRevisionControlUIHelper* FindRevisionControlHelper();

/// The identity of an item's database object. Asks the data layer only, no service.
/// \return false when the item's identity text is no UID; out_id is not written then
bool GetObjectId(const vireo::datamodel::ItemID& in_item, nexa4::DbObjectId& out_id);

/// The database object of an item. The handle is invalid when the item's identity text is no UID or the service knows
/// no such object.
nexa4::NEXAHandle<nexa4::IDbObject> FindDbObject(nexa4::IRevisionControlUIHelper& in_helper,
                                                 const vireo::datamodel::ItemID& in_item);

} // namespace nodebrowser
