// SPDX-License-Identifier: MIT
/// The source-control side of the in-memory data layer: states per object, badges, tool tips, and the two services.
#pragma once

#include "datamodel/itemid.h"
#include "memorymodel/accessstate.h"
#include "memorymodel/export.h"
#include "memorymodel/versioning.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace memorymodel
{

class DataLayer;
class LayerContents;
class SourceControlServices;

/// Switches and states, to be set by the host or a test; the boundary reads them. Owned by the DataLayer.
///
/// Requested states are answered from the event loop, whether version control is active or not. Checking an item out
/// sets eCheckedOut unless its data source is read-only, making it writable sets eWritable; neither asks anybody. Tool
/// tips are plain text in three lines: name, state in words, data source with its location. Where there is no state,
/// they say that the item is in memory only, or not under version control. All this is different for a library that
/// has a Versioning (memorymodel/versioning.h): then that is asked.
class MEMORYMODEL_EXPORT SourceControl
{
public:
    SourceControl(const SourceControl&) = delete;
    SourceControl& operator=(const SourceControl&) = delete;

    /// Whether files are under version control at all (false at first). Notifies nobody.
    void SetVersionControlActive(bool in_active);

    /// The property "source control enabled" (false at first). Connected slots are notified when it changes.
    void SetEnabled(bool in_enabled);

    /// Whether the properties manager has properties to read (true at first). Connected slots are notified when it
    /// changes. Like SetEnabled() this does nothing once the data layer has notified the slots of its end with null.
    void SetHasProperties(bool in_has);

    /// Puts the state of an item's object on record and notifies the observers of its library, whether anybody asked or
    /// not. Silent when the state is the one on record or the item has no object. An object without a state counts as
    /// eCheckedIn while version control is active, and has none otherwise.
    ///
    /// Browsers leave room for badges beside compounds whose sources take changes. Beside any other item, a state moves
    /// the icon to the right.
    void SetState(const vireo::datamodel::ItemID& in_item, unsigned in_state);
    /// The state on record; 0 for an item without an object.
    unsigned GetState(const vireo::datamodel::ItemID& in_item) const;

    /// Answers a Versioning's requests, or tells its news: puts the states of items of one library on record. Its
    /// observers are notified in one go: of each outstanding request about one of the items, in the order of the
    /// requests, and then of each other item with a new state.
    void SetStates(const std::vector<ItemState>& in_states);

    /// Answers all outstanding requests now instead of from the event loop, but for those that a Versioning has to
    /// answer. Does nothing when there are none.
    void DeliverRequestedStates();

    /// Whether a library of the data layer has a Versioning. The last one to end switches the rest off.
    bool HasVersioning() const;

    /// How often states were requested.
    std::size_t GetRequestCount() const;
    /// The items of the last request, in its order.
    const std::vector<vireo::datamodel::ItemID>& GetLastRequest() const;

    /// Called when the user asks for the files of an item; without one nothing is shown.
    void SetShowFilesHandler(std::function<void(const vireo::datamodel::ItemID&)> in_handler);

private:
    friend class DataLayer;
    MEMORYMODEL_NO_EXPORT explicit SourceControl(LayerContents& in_contents);
    MEMORYMODEL_NO_EXPORT ~SourceControl();

    std::unique_ptr<SourceControlServices> m_private;
};

} // namespace memorymodel
