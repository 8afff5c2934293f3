// SPDX-License-Identifier: MIT
/// An observer of a library that writes down its notifications.
#pragma once

#include "datamodel/itemlibrary.h"

#include <functional>
#include <string>

namespace contract
{

/// One word per call, in order: "begin", "added Blend", "removed Blend", "name Blend", "tags Blend ApplicationTags",
/// "state Blend 2", "invalidated", "precommit", "postcommit", "end". Items are named as they are called at that moment.
class NotificationSpy : public vireo::datamodel::IItemTOCNotification, public vireo::datamodel::IItemLibraryNotification
{
public:
    /// Observes both the library and its table of contents for as long as it lives.
    explicit NotificationSpy(const vireo::datamodel::ItemLibraryAccessor& in_library)
        : m_library(in_library), m_toc(vireo::datamodel::GetTOC(in_library))
    {
        Start();
    }

    /// An implementation that throws has been reported before.
    ~NotificationSpy() override
    {
        try
        {
            Stop();
        }
        catch (...)
        {
            m_calls.clear();
        }
    }

    NotificationSpy(const NotificationSpy&) = delete;
    NotificationSpy& operator=(const NotificationSpy&) = delete;

    void Start()
    {
        m_library.AddObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        m_toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    }

    void Stop()
    {
        m_library.RemoveObserver(this, vireo::datamodel::eItemLibraryNotificationKind, m_library.GetContext());
        m_toc.RemoveObserver(this, vireo::datamodel::eItemTOCNotificationKind, m_toc.GetContext());
    }

    /// The notifications since the last time, joined by ", ".
    std::string Take()
    {
        const std::string calls = m_calls;
        m_calls.clear();
        return calls;
    }

    /// Called from inside each call, with the word written down for it. It must not throw: the implementation calls it.
    std::function<void(const std::string&)> m_reaction;
    bool m_veto = false;

    void ItemAdded(vireo::datamodel::ItemAccessor& in_item) override { Note("added " + NameOf(in_item.GetItemID())); }
    void ItemRemoved(vireo::datamodel::ItemAccessor& in_item) override
    {
        Note("removed " + NameOf(in_item.GetItemID()));
    }
    void OnBeginChanges(vireo::datamodel::ItemLibraryAccessor&) override { Note("begin"); }
    void OnEndChanges(vireo::datamodel::ItemLibraryAccessor&) override { Note("end"); }
    void LibraryInvalidated(vireo::datamodel::ItemLibraryAccessor&) override { Note("invalidated"); }
    void ItemNameChanged(vireo::datamodel::ItemLibraryAccessor&, const vireo::datamodel::ItemID& in_item) override
    {
        Note("name " + NameOf(in_item));
    }
    void ItemTagsChanged(vireo::datamodel::ItemLibraryAccessor&, const vireo::datamodel::ItemID& in_item,
                         const char* in_key) override
    {
        Note("tags " + NameOf(in_item) + " " + (in_key ? in_key : "null"));
    }
    void ItemAccessStateChanged(vireo::datamodel::ItemLibraryAccessor&, const vireo::datamodel::ItemID& in_item,
                                long in_state) override
    {
        Note("state " + NameOf(in_item) + " " + std::to_string(in_state));
    }
    void OnPreCommit(vireo::datamodel::ItemLibraryAccessor&, bool* out_veto) override
    {
        if (m_veto)
            *out_veto = true;
        Note("precommit");
    }
    void OnPostCommit(vireo::datamodel::ItemLibraryAccessor&) override { Note("postcommit"); }

private:
    std::string NameOf(const vireo::datamodel::ItemID& in_item) const
    {
        return m_library.GetItemName(in_item, true, nullptr);
    }

    void Note(const std::string& in_call)
    {
        m_calls += (m_calls.empty() ? "" : ", ") + in_call;
        // A copy, since the reaction may replace itself.
        const std::function<void(const std::string&)> reaction = m_reaction;
        if (reaction)
            reaction(in_call);
    }

    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemTOCAccessor m_toc;
    std::string m_calls;
};

} // namespace contract
