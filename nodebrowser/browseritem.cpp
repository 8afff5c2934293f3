// SPDX-License-Identifier: MIT
#include "nodebrowser/browseritem.h"

#include "nodebrowser/dbobject.h"
#include "nodebrowser/stateicon.h"

#include <array>
#include <utility>

using nexa4::DbObjectId;
using nexa4::IDbObject;
using nexa4::NEXAHandle;
using nexa4::NEXAPtr;

namespace nodebrowser
{
namespace
{

using FactoryObjects = std::array<NEXAHandle<IDbObject>, 2>;

/// The two objects whose data sources hold the items that came with the product. The first record with a database
/// object looks them up. Their handles are kept until the process ends.
const FactoryObjects& GetFactoryObjects(nexa4::IRevisionControlUIHelper& in_helper)
{
    // Not the initialiser of a static, which must not run twice: the look-up may come back here through another
    // browser.
    static FactoryObjects objects;
    static bool found = false;
    if (!found)
    {
        objects = {{
            in_helper.FindObject(DbObjectId("D2BA853A-8668-704A-A121-1F7DE917B664")),
            in_helper.FindObject(DbObjectId("34F315D3-58CF-4019-9BE3-381FCED0E983")),
        }};
        found = true;
    }
    return objects;
}

void ReadFactorySources(RecordContext& io_context)
{
    if (io_context.m_factorySourcesRead)
        return;
    io_context.m_factorySourcesRead = true;
    for (const NEXAHandle<IDbObject>& object : GetFactoryObjects(*io_context.m_helper))
        if (object.IsValid())
            io_context.m_factorySources.push_back(object.GetDataSource());
}

} // namespace

ObjectLookup LookUpObject(const vireo::datamodel::ItemID& in_item, RecordContext& io_context)
{
    ObjectLookup lookup;
    DbObjectId id;
    if (!io_context.m_helper || !GetObjectId(in_item, id))
        return lookup;
    lookup.m_hasId = true;
    ReadFactorySources(io_context);
    lookup.m_object = io_context.m_helper->FindObject(id);
    return lookup;
}

BrowserItem::BrowserItem(vireo::datamodel::ItemAccessor in_item, const ObjectLookup& in_object, unsigned in_accessState,
                         RecordContext& io_context)
    : m_item(std::move(in_item))
{
    if (in_object.m_hasId)
        ReadDataSource(in_object.m_object, io_context);
    m_kind = KindOf(m_item);
    if (m_kind == eKindCompound || m_kind == eKindSignature)
    {
        m_accessState = in_accessState;
        m_sourceControlled = !m_readOnlySource;
    }
    TakeIcon(io_context.m_versioningActive, io_context.m_icons);
}

void BrowserItem::ReadDataSource(const NEXAHandle<IDbObject>& in_object, const RecordContext& in_context)
{
    const NEXAPtr<IDbObject> object = in_object.operator->();
    if (!object.IsValid())
        return;

    const NEXAPtr<nexa4::IDataSource> source = object->GetDataSource();
    m_readOnlySource = source->GetState() == nexa4::eDataSourceReadOnly;
    for (const NEXAPtr<nexa4::IDataSource>& factorySource : in_context.m_factorySources)
        m_factoryItem = m_factoryItem || factorySource == source;
    if (m_factoryItem && m_readOnlySource)
        return;

    const NEXAPtr<nexa4::ITypeAsset> asset =
        NEXAHandle<nexa4::ITypeAsset>::AssignCast(in_object.GetInstance(), in_object.GetCacheIndex()).operator->();
    if (asset.IsValid() && asset->IsLoaded())
    {
        // A built-in asset cannot be changed and came with the product, so the same query sets both flags.
        m_readOnlySource = asset->IsBuiltIn() || m_readOnlySource;
        m_factoryItem = asset->IsBuiltIn() || m_factoryItem;
    }
}

bool BrowserItem::SetAccessState(unsigned in_state, bool in_versioningActive, StateIcons& io_icons)
{
    if (in_state == m_accessState)
        return false;
    m_accessState = in_state;
    TakeIcon(in_versioningActive, io_icons);
    return true;
}

void BrowserItem::TakeIcon(bool in_versioningActive, StateIcons& io_icons)
{
    IconMarks marks;
    marks.m_accessState = m_accessState;
    marks.m_factoryItem = m_factoryItem;
    marks.m_readOnlySource = m_readOnlySource;
    marks.m_versioningActive = in_versioningActive;
    m_stateIcon = &io_icons.Find(m_kind, marks);
}

} // namespace nodebrowser
