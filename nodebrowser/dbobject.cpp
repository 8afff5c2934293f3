#include "nodebrowser/dbobject.h"

#include "datamodel/helpers.h"

nexa4::IRevisionControlUIHelper* FindRevisionControlHelper()
{
    return hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

bool HasUID(const vireo::datamodel::ItemID& in_item)
{
    return nexa4::DbObjectId::IsUID(vireo::datamodel::ItemIDUnlock::GetItemIDUID(in_item));
}

nexa4::NEXAHandle<nexa4::IDbObject> FindDbObject(nexa4::IRevisionControlUIHelper& in_helper,
                                                 const vireo::datamodel::ItemID& in_item)
{
    const char* const uid = vireo::datamodel::ItemIDUnlock::GetItemIDUID(in_item);
    if (!nexa4::DbObjectId::IsUID(uid))
        return nexa4::NEXAHandle<nexa4::IDbObject>();
    return in_helper.FindObject(nexa4::DbObjectId(uid));
}
