// SPDX-License-Identifier: MIT
/// Notifies the window of changes to its library.
#pragma once

#include "host/silentobserver.h"

#include <functional>

namespace host
{

/// Observes a library for as long as it lives; the library may go first. The functions only read the library and must
/// not destroy the watcher.
class ChangeWatcher final : private SilentObserver
{
public:
    /// \param in_changed called once after each round of changes, undone and redone ones included
    /// \param in_committed called after each commit
    ChangeWatcher(const vireo::datamodel::ItemLibraryAccessor& in_library, std::function<void()> in_changed,
                  std::function<void()> in_committed);
    ~ChangeWatcher() override;
    ChangeWatcher(const ChangeWatcher&) = delete;
    ChangeWatcher& operator=(const ChangeWatcher&) = delete;

private:
    void OnEndChanges(ItemLibraryAccessor&) override { m_changed(); }
    void OnPostCommit(ItemLibraryAccessor&) override { m_committed(); }

    const ItemLibraryAccessor m_library;
    const std::function<void()> m_changed;
    const std::function<void()> m_committed;
};

} // namespace host
