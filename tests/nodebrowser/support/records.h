// SPDX-License-Identifier: MIT
/// Records of single items, as the item list makes them.
#pragma once

#include "nodebrowser/browseritem.h"

inline nodebrowser::BrowserItem MakeBrowserItem(const vireo::datamodel::ItemAccessor& in_item, unsigned in_accessState,
                                                nodebrowser::RecordContext& io_context)
{
    const nodebrowser::ObjectLookup object = nodebrowser::LookUpObject(in_item.GetItemID(), io_context);
    return nodebrowser::BrowserItem(in_item, object, in_accessState, io_context);
}
