// SPDX-License-Identifier: MIT
#include "host/changewatcher.h"

#include <utility>

using vireo::datamodel::eItemLibraryNotificationKind;

namespace host
{

ChangeWatcher::ChangeWatcher(const ItemLibraryAccessor& in_library, std::function<void()> in_changed,
                             std::function<void()> in_committed)
    : m_library(in_library), m_changed(std::move(in_changed)), m_committed(std::move(in_committed))
{
    m_library.AddObserver(this, eItemLibraryNotificationKind, m_library.GetContext());
}

ChangeWatcher::~ChangeWatcher()
{
    if (m_library.IsValid())
        m_library.RemoveObserver(this, eItemLibraryNotificationKind, m_library.GetContext());
}

} // namespace host
