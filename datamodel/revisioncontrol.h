// SPDX-License-Identifier: MIT
/// The services of revision control.
#pragma once

#include "datamodel/export.h"
#include "datamodel/nexahandle.h"
#include "datamodel/objectdatabase.h"
#include "datamodel/system.h"

#include <memory>
#include <utility>

namespace nexa4
{

/// The service "RevisionControlUIHelper": works on database objects, with the dialogs that revision control needs.
class DATAMODEL_EXPORT IRevisionControlUIHelper : public hmx::IBase
{
public:
    /// Checks an object out. Its new state arrives as ItemAccessStateChanged(). Invalid objects, and objects in
    /// read-only sources, are refused. Nobody is notified of that, nor of a state that stays.
    /// \param out_result whether it worked, or has begun where that takes time; may be null
    /// \param in_interactive whether it may ask the user
    virtual void CheckOut(const NEXAHandle<IDbObject>& in_object, bool* out_result, bool in_interactive) = 0;

    /// Makes an object writable without checking it out. Otherwise like CheckOut().
    virtual void MakeWritable(const NEXAHandle<IDbObject>& in_object, bool in_interactive) = 0;

    /// The object with an identity; an invalid handle when there is none. A rebuild asks once for each compound, and
    /// requests the state of the compound with the same handle.
    virtual NEXAHandle<IDbObject> FindObject(const DbObjectId& in_id) = 0;

    /// Shows the files that an object is stored in.
    /// \param in_options null for the application's defaults
    virtual void ShowFiles(const NEXAHandle<IDbObject>& in_object, const char* in_options) = 0;
};

} // namespace nexa4

class IRevisionControlPropertiesMgr;

/// Notified when the properties of revision control change. Called on the thread of the user interface, and with null
/// when the manager is going away.
class DATAMODEL_EXPORT IRevisionControlPropertiesMgr_Slot
{
public:
    virtual ~IRevisionControlPropertiesMgr_Slot() = default;
    /// The properties changed: the slot reads what it needs of them.
    /// \param in_manager null when the manager is going away; the slot counts source control as switched off then
    virtual void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* in_manager) = 0;
};

/// A connection of one slot to the properties manager; destroying it ends the connection. Connection and manager may be
/// destroyed in either order.
class DATAMODEL_EXPORT RevisionControlConnection
{
public:
    /// Not connected to anything yet.
    RevisionControlConnection() = default;
    RevisionControlConnection(RevisionControlConnection&&) = default;
    RevisionControlConnection& operator=(RevisionControlConnection&&) = default;

    /// For the manager: keeps in_link alive while connected. Deleting in_link must end the connection.
    void Hold(std::shared_ptr<void> in_link) { m_link = std::move(in_link); }

private:
    std::shared_ptr<void> m_link;
};

/// The service "RevisionControlPropertiesMgr": how the application is set up for revision control.
class DATAMODEL_EXPORT IRevisionControlPropertiesMgr : public hmx::IBase
{
public:
    /// Writes whether source control is switched on. To be called only when HasProperties().
    virtual void GetSourceControlEnabled(bool* out_enabled) = 0;

    /// Connects a slot until the connection is destroyed. The slot is notified of each later change, not of the present
    /// state.
    virtual void Connect(IRevisionControlPropertiesMgr_Slot* in_slot, RevisionControlConnection& out_connection) = 0;

    /// Whether there are properties to read.
    virtual bool HasProperties() = 0;
};
