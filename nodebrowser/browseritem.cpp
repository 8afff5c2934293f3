// SPDX-License-Identifier: MIT
#include "nodebrowser/browseritem.h"

#include "nodebrowser/dbobject.h"
#include "nodebrowser/stateicon.h"

#include <array>
#include <utility>

using nexa4::DbObjectId;
using nexa4::IDbObject;
using nexa4::NEXAHandle;
using nodebrowser::GetObjectId;

namespace
{

using FactoryObjects = std::array<NEXAHandle<IDbObject>, 2>;

/// The two objects whose data sources hold what came with the product. They are looked up once, by the first record
/// that has a database object to compare with, and their handles are kept until the process ends.
const FactoryObjects& GetFactoryObjects(nexa4::IRevisionControlUIHelper& in_helper)
{
    static const FactoryObjects objects = {{
        in_helper.FindObject(DbObjectId("D2BA853A-8668-704A-A121-1F7DE917B664")),
        in_helper.FindObject(DbObjectId("34F315D3-58CF-4019-9BE3-381FCED0E983")),
    }};
    return objects;
}

void ReadFactorySources(RecordSurroundings& io_surroundings)
{
    if (io_surroundings.m_factorySourcesRead)
        return;
    io_surroundings.m_factorySourcesRead = true;
    for (const NEXAHandle<IDbObject>& object : GetFactoryObjects(*io_surroundings.m_helper))
        if (object.IsValid())
            io_surroundings.m_factorySources.push_back(object.GetDataSource());
}

} // namespace

BrowserItem::BrowserItem(vireo::datamodel::ItemAccessor in_item, unsigned in_accessState,
                         RecordSurroundings& in_surroundings)
    : m_item(std::move(in_item))
{
    if (in_surroundings.m_helper)
        ReadDataSource(in_surroundings);
    m_kind = KindOf(m_item);
    if (m_kind == eKindCompound || m_kind == eKindSignature)
    {
        m_accessState = in_accessState;
        m_sourceControlled = !m_readOnlySource;
    }
    TakeIcon(in_surroundings.m_versioningActive, in_surroundings.m_icons);
}

void BrowserItem::ReadDataSource(RecordSurroundings& in_surroundings)
{
    DbObjectId id;
    m_hasObjectId = GetObjectId(GetItemID(), id);
    if (!m_hasObjectId)
        return;
    ReadFactorySources(in_surroundings);
    m_dbObject = in_surroundings.m_helper->FindObject(id);
    const nexa4::NEXAPtr<IDbObject> object = m_dbObject.operator->();
    if (!object.IsValid())
        return;

    const nexa4::NEXAPtr<nexa4::IDataSource> source = object->GetDataSource();
    m_readOnlySource = source->GetState() == nexa4::eDataSourceReadOnly;
    for (const nexa4::NEXAPtr<nexa4::IDataSource>& factorySource : in_surroundings.m_factorySources)
        m_factoryItem = m_factoryItem || factorySource == source;
    if (m_factoryItem && m_readOnlySource)
        return;

    const NEXAHandle<nexa4::ITypeAsset> asset =
        NEXAHandle<nexa4::ITypeAsset>::AssignCast(m_dbObject.GetInstance(), m_dbObject.GetCacheIndex());
    if (asset.IsValid() && asset.IsLoaded())
    {
        // What is built in is both closed to changes and the product's own: the same question is asked for each flag.
        m_readOnlySource = asset->IsBuiltIn() || m_readOnlySource;
        m_factoryItem = asset->IsBuiltIn() || m_factoryItem;
    }
}

bool BrowserItem::SetAccessState(unsigned in_state, bool in_versioningActive, StateIcons& in_icons)
{
    if (in_state == m_accessState)
        return false;
    m_accessState = in_state;
    TakeIcon(in_versioningActive, in_icons);
    return true;
}

void BrowserItem::TakeIcon(bool in_versioningActive, StateIcons& in_icons)
{
    IconMarks marks;
    marks.m_accessState = m_accessState;
    marks.m_factoryItem = m_factoryItem;
    marks.m_readOnlySource = m_readOnlySource;
    marks.m_versioningActive = in_versioningActive;
    m_stateIcon = &in_icons.Find(m_kind, marks);
}
