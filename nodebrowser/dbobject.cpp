// SPDX-License-Identifier: MIT
#include "nodebrowser/dbobject.h"

#include "datamodel/helpers.h"

namespace nodebrowser
{

nexa4::IRevisionControlUIHelper* FindRevisionControlHelper()
{
    return hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

bool GetObjectId(const vireo::datamodel::ItemID& in_item, nexa4::DbObjectId& out_id)
{
    const char* const text = vireo::datamodel::ItemIDUnlock::GetItemIDUID(in_item);
    out_id = nexa4::DbObjectId(text);
    // A text that is no UID gives the null identity, and so does one UID. Only then the text is read once more.
    return out_id != nexa4::DbObjectId() || nexa4::DbObjectId::IsUID(text);
}

nexa4::NEXAHandle<nexa4::IDbObject> FindDbObject(nexa4::IRevisionControlUIHelper& in_helper,
                                                 const vireo::datamodel::ItemID& in_item)
{
    nexa4::DbObjectId id;
    return GetObjectId(in_item, id) ? in_helper.FindObject(id) : nexa4::NEXAHandle<nexa4::IDbObject>();
}

} // namespace nodebrowser
