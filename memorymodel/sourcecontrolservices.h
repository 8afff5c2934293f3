// SPDX-License-Identifier: MIT
/// What stands behind the source-control side of the boundary.
#pragma once

#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "memorymodel/layercontents.h"
#include "memorymodel/propertiesmanager.h"
#include "memorymodel/statebadge.h"
#include "memorymodel/versioning.h"

#include <QEvent>
#include <QObject>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <vector>

namespace memorymodel
{

/// States, badges and tool tips, and the service "RevisionControlUIHelper". Requests wait in a queue, in order, and are
/// answered from a posted event.
class SourceControlServices : public QObject, public ISourceControlDisplay, public nexa4::IRevisionControlUIHelper
{
public:
    using Handle = nexa4::NEXAHandle<nexa4::IDbObject>;
    using ItemID = vireo::datamodel::ItemID;

    explicit SourceControlServices(LayerContents& in_contents);

    void SetState(Item& io_item, unsigned in_state);
    unsigned GetState(const Item& in_item) const;
    void SetStates(const std::vector<ItemState>& in_states);
    /// Answers the requests that wait now. Those that come meanwhile wait for the next time.
    void Deliver();

    // ISourceControlDisplay
    void RequestObjectStates(const ScsTask& in_task, const std::list<Handle>& in_objects) override;
    void TaskEnded(const ScsTask& in_task) override;
    bool IsFileVersionControlActive() override;
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace) override;
    QString GetToolTip(const Handle& in_object, const QString& in_icon) override;

    // IRevisionControlUIHelper
    void CheckOut(const Handle& in_object, bool* out_result, bool in_interactive) override;
    void MakeWritable(const Handle& in_object, bool in_interactive) override;
    Handle FindObject(const nexa4::DbObjectId& in_id) override;
    void ShowFiles(const Handle& in_object, const char* in_options) override;

    LayerContents& m_contents;
    std::unique_ptr<PropertiesManager> m_properties;
    bool m_active = false;
    std::size_t m_requestCount = 0;
    std::vector<ItemID> m_lastRequest;
    std::function<void(const ItemID&)> m_showFiles;

protected:
    void customEvent(QEvent* in_event) override;

private:
    /// An item whose state was asked for.
    struct Waiting
    {
        const ScsTask* m_task;
        ItemID m_item;
        std::uint64_t m_round; ///< the round of answers that the request waits for
    };

    /// Answers the requests at the front of the queue, up to the first that is not about an item of the library.
    void DeliverIn(LibraryContext& io_library, std::uint64_t in_round);
    /// Asks those that know the states of their libraries.
    void AskVersionings(const std::vector<ItemID>& in_items);
    /// Null when the item's states are those on record.
    Versioning* FindVersioning(const ItemID& in_item) const;
    std::shared_ptr<Item> FindItem(const Handle& in_object) const;

    std::deque<Waiting> m_waiting;
    std::deque<Waiting> m_asked; ///< until SetStates()
    std::uint64_t m_round = 0;
    bool m_scheduled = false;
    StateBadges m_badges;
};

} // namespace memorymodel
