// SPDX-License-Identifier: MIT
/// The browser's record of one listed item.
#pragma once

#include "datamodel/item.h"
#include "datamodel/nexahandle.h"
#include "datamodel/notifications.h"
#include "datamodel/objectdatabase.h"
#include "datamodel/revisioncontrol.h"
#include "nodebrowser/itemkind.h"

#include <QPixmap>

#include <vector>

namespace nodebrowser
{

class StateIcons;

/// What the records of one build share.
struct RecordContext
{
    RecordContext(nexa4::IRevisionControlUIHelper* in_helper, bool in_versioningActive, StateIcons& io_icons)
        : m_helper(in_helper), m_versioningActive(in_versioningActive), m_icons(io_icons)
    {
    }

    nexa4::IRevisionControlUIHelper* const m_helper; ///< null when there is none
    const bool m_versioningActive;                   ///< whether badges are shown
    StateIcons& m_icons;                             ///< the icons that records share

    /// The data sources of what came with the product. The first record with a database object reads them.
    std::vector<nexa4::NEXAPtr<nexa4::IDataSource>> m_factorySources;
    bool m_factorySourcesRead = false;
};

/// An item's database object, looked up once for its record and its state request.
struct ObjectLookup
{
    bool m_hasId = false; ///< whether the item's identity text is that of a database object, known or not
    nexa4::NEXAHandle<nexa4::IDbObject> m_object;
};

/// Looks up the database object of an item. Without a helper there is none.
ObjectLookup LookUpObject(const vireo::datamodel::ItemID& in_item, RecordContext& io_context);

/// An item with the icon and the flags that painting needs. So a frame reads nothing from the data layer but names and
/// dirty marks. Each build makes new records; between builds only the access state changes. The item list owns the icon
/// and outlives its records.
class BrowserItem
{
public:
    /// \param in_accessState the state of a compound; other items start with eAccessStateUnknown
    BrowserItem(vireo::datamodel::ItemAccessor in_item, const ObjectLookup& in_object, unsigned in_accessState,
                RecordContext& io_context);

    const vireo::datamodel::ItemAccessor& GetItem() const { return m_item; }
    eItemKind GetKind() const { return m_kind; }
    /// The icon as painted; null for an item of an unknown type.
    const QPixmap& GetStateIcon() const { return *m_stateIcon; }
    unsigned GetAccessState() const { return m_accessState; }
    /// Whether it is a compound whose data source can be written. The browser requests the state of such items.
    bool IsSourceControlled() const { return m_sourceControlled; }
    /// Whether the item came with the product.
    bool IsFactoryItem() const { return m_factoryItem; }
    bool HasReadOnlySource() const { return m_readOnlySource; }

    /// Sets the source-control state and the icon for it. Does nothing when the state stays the same.
    /// \return whether the state changed, so that the caller can request a repaint
    bool SetAccessState(unsigned in_state, bool in_versioningActive, StateIcons& io_icons);

private:
    void ReadDataSource(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const RecordContext& in_context);
    void TakeIcon(bool in_versioningActive, StateIcons& io_icons);

    vireo::datamodel::ItemAccessor m_item;
    const QPixmap* m_stateIcon; // owned by the item list
    unsigned m_accessState = vireo::datamodel::eAccessStateUnknown;
    eItemKind m_kind = eKindOther;
    bool m_sourceControlled = false;
    bool m_factoryItem = false;
    bool m_readOnlySource = false;
};

} // namespace nodebrowser
