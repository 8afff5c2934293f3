// SPDX-License-Identifier: MIT
/// The context of a library and its observers: who they are, and how they are notified.
#pragma once

#include "datamodel/itemlibrary.h"
#include "memorymodel/observerlist.h"

#include <cstddef>
#include <memory>

namespace memorymodel
{

/// A context with observers. It lives in three phases: open; closing, while the observers learn that it ends; closed.
///
/// Every function that notifies keeps the context alive until it returns, whatever observers do.
class ObservedContext : public vireo::datamodel::IContext, public std::enable_shared_from_this<ObservedContext>
{
public:
    using ItemID = vireo::datamodel::ItemID;

    /// False from the beginning of the closing.
    bool IsOpen() const { return m_phase == ePhaseOpen; }
    vireo::datamodel::ItemLibraryAccessor GetAccessor();

    // IContext
    bool IsAlive() const override { return m_phase != ePhaseClosed; }

    /// Calls in_changes between OnBeginChanges() and OnEndChanges().
    ///
    /// An observer that was notified of the beginning is notified of the end, also when another one throws. An observer
    /// that registers in between is notified of neither.
    template <class Changes> void InBracket(const Changes& in_changes)
    {
        Bracket bracket(*this);
        try
        {
            bracket.Begin();
            in_changes();
        }
        catch (...)
        {
            bracket.End();
            throw;
        }
        bracket.End();
    }

    // Each of these notifies the observers while the context is open. To be called inside a bracket, except for the two
    // about a commit.
    void NotifyItemAdded(const std::shared_ptr<vireo::datamodel::IContext>& in_item);
    void NotifyItemRemoved(const std::shared_ptr<vireo::datamodel::IContext>& in_item);
    void NotifyNameChanged(const ItemID& in_item);
    void NotifyTagsChanged(const ItemID& in_item, const char* in_key);
    void NotifyAccessState(const ItemID& in_item, unsigned in_state);
    void NotifyInvalidated();
    /// \return whether all observers agree to a commit
    bool NotifyPreCommit();
    void NotifyPostCommit();

protected:
    using LibraryObservers = ObserverList<vireo::datamodel::IItemLibraryNotification>;
    using TOCObservers = ObserverList<vireo::datamodel::IItemTOCNotification>;

    ~ObservedContext() override = default;

    /// Begins the closing: from here on observers can only be removed.
    void BeginClosing() { m_phase = ePhaseClosing; }
    /// Notifies the observers of the end. The closing is complete when the outermost bracket ends.
    void NotifyClosing();

    LibraryObservers m_libraryObservers;
    TOCObservers m_tocObservers;

private:
    enum ePhase
    {
        ePhaseOpen,
        ePhaseClosing,
        ePhaseClosed,
    };

    /// Keeps the context and the observers' positions; the end of the outermost bracket completes the closing.
    class Bracket
    {
    public:
        explicit Bracket(ObservedContext& in_context);
        ~Bracket();
        Bracket(const Bracket&) = delete;
        Bracket& operator=(const Bracket&) = delete;

        /// Notifies the observers; stops when one of them closes the context.
        void Begin();
        void End();

    private:
        const std::shared_ptr<ObservedContext> m_context;
        const LibraryObservers::Round m_round;
        std::size_t m_begun = 0; ///< how many observers were notified of the beginning
    };

    template <class Call> void NotifyLibrary(ePhase in_phase, const Call& in_call);
    template <class Call>
    void NotifyTOC(const std::shared_ptr<vireo::datamodel::IContext>& in_item, const Call& in_call);

    ePhase m_phase = ePhaseOpen;
    int m_brackets = 0; ///< how many are open
};

} // namespace memorymodel
