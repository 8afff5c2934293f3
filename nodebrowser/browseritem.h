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

class StateIcons;

/// What the records of a list have in common while it is built.
struct RecordSurroundings
{
    RecordSurroundings(nexa4::IRevisionControlUIHelper* in_helper, bool in_versioningActive, StateIcons& in_icons)
        : m_helper(in_helper), m_versioningActive(in_versioningActive), m_icons(in_icons)
    {
    }

    nexa4::IRevisionControlUIHelper* const m_helper; ///< null when there is none
    const bool m_versioningActive;                   ///< whether badges are shown
    StateIcons& m_icons;                             ///< where records that look alike find their icon

    /// The data sources of what came with the product, read by the first record that is compared with them.
    std::vector<nexa4::NEXAPtr<nexa4::IDataSource>> m_factorySources;
    bool m_factorySourcesRead = false;
};

/// An item with the pictures and flags that painting needs, so that a frame asks the data layer for nothing but names
/// and dirty marks. Records are replaced by fresh ones at every rebuild of the list; only the access state changes in
/// between. A record points at a picture of its list, which it must not outlive.
class BrowserItem
{
public:
    /// Reads what the record needs of the item. Costs the look-ups of its database object.
    /// \param in_accessState of a compound; other items start with eAccessStateUnknown
    BrowserItem(vireo::datamodel::ItemAccessor in_item, unsigned in_accessState, RecordSurroundings& in_surroundings);

    const vireo::datamodel::ItemAccessor& GetItem() const { return m_item; }
    vireo::datamodel::ItemID GetItemID() const { return m_item.GetItemID(); }
    eItemKind GetKind() const { return m_kind; }
    /// The icon as painted; null for an item of an unknown type.
    const QPixmap& GetStateIcon() const { return *m_stateIcon; }
    unsigned GetAccessState() const { return m_accessState; }
    /// Whether the item's identity text is that of a database object, known or not; false when nobody could be asked.
    bool HasObjectId() const { return m_hasObjectId; }
    /// The item's database object as it was found when the record was made; invalid when none was.
    const nexa4::NEXAHandle<nexa4::IDbObject>& GetDbObject() const { return m_dbObject; }
    /// A compound whose data source takes changes: its state is asked for.
    bool IsSourceControlled() const { return m_sourceControlled; }
    /// The item came with the product.
    bool IsFactoryItem() const { return m_factoryItem; }
    bool HasReadOnlySource() const { return m_readOnlySource; }

    /// Sets the source-control state and takes the icon for it; does nothing for the state it has.
    /// \return whether the state was another one, so that the caller can ask for a repaint
    bool SetAccessState(unsigned in_state, bool in_versioningActive, StateIcons& in_icons);

private:
    void ReadDataSource(RecordSurroundings& in_surroundings);
    void TakeIcon(bool in_versioningActive, StateIcons& in_icons);

    vireo::datamodel::ItemAccessor m_item;
    nexa4::NEXAHandle<nexa4::IDbObject> m_dbObject;
    const QPixmap* m_stateIcon; // one of the list's
    unsigned m_accessState = vireo::datamodel::eAccessStateUnknown;
    eItemKind m_kind = eKindOther;
    bool m_hasObjectId = false;
    bool m_sourceControlled = false;
    bool m_factoryItem = false;
    bool m_readOnlySource = false;
};
