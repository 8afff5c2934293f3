// SPDX-License-Identifier: MIT
/// The way from an item to its object in the object database.
#pragma once

#include "datamodel/itemid.h"
#include "datamodel/nexahandle.h"
#include "datamodel/revisioncontrol.h"

/// The revision-control service of the host; null when it has none. Looked up anew for each use.
nexa4::IRevisionControlUIHelper* FindRevisionControlHelper();

/// The identity of an item's database object: false when the item's identity text is none at all. Asks only the data
/// layer, no service.
bool GetObjectId(const vireo::datamodel::ItemID& in_item, nexa4::DbObjectId& out_id);

/// The database object of an item: an invalid handle when the item's identity text is no UID or the service knows no
/// such object.
nexa4::NEXAHandle<nexa4::IDbObject> FindDbObject(nexa4::IRevisionControlUIHelper& in_helper,
                                                 const vireo::datamodel::ItemID& in_item);
