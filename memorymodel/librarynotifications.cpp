#include "memorymodel/librarycontext.h"

using namespace vireo::datamodel;

namespace memorymodel
{
namespace
{

/// Tells each observer with an accessor of its own, so that what one does to it does not reach the next one.
template <class Observers, class Accessor, class Call>
void TellWith(Observers& in_observers, const Accessor& in_accessor, const Call& in_call)
{
    in_observers.Tell([&](auto& in_observer) {
        Accessor accessor(in_accessor);
        in_call(in_observer, accessor);
    });
}

} // namespace

void LibraryContext::TellBegin()
{
    if (m_observers.IsEmpty())
        return;
    TellWith(m_observers, GetAccessor(), [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.OnBeginChanges(in_library);
    });
}

void LibraryContext::TellEnd()
{
    if (m_observers.IsEmpty())
        return;
    TellWith(m_observers, GetAccessor(), [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.OnEndChanges(in_library);
    });
}

void LibraryContext::TellItemAdded(const std::shared_ptr<Item>& in_item)
{
    if (m_tocObservers.IsEmpty())
        return;
    TellWith(m_tocObservers, ItemAccessor(UnspecifiedAccessor(in_item)),
             [](IItemTOCNotification& in_observer, ItemAccessor& in_accessor) { in_observer.ItemAdded(in_accessor); });
}

void LibraryContext::TellItemRemoved(const std::shared_ptr<Item>& in_item)
{
    if (m_tocObservers.IsEmpty())
        return;
    TellWith(
        m_tocObservers, ItemAccessor(UnspecifiedAccessor(in_item)),
        [](IItemTOCNotification& in_observer, ItemAccessor& in_accessor) { in_observer.ItemRemoved(in_accessor); });
}

void LibraryContext::TellNameChanged(const ItemID& in_item)
{
    TellWith(m_observers, GetAccessor(), [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.ItemNameChanged(in_library, in_item);
    });
}

void LibraryContext::TellTagsChanged(const ItemID& in_item, const char* in_key)
{
    TellWith(m_observers, GetAccessor(), [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.ItemTagsChanged(in_library, in_item, in_key);
    });
}

void LibraryContext::TellAccessState(const ItemID& in_item, unsigned in_state)
{
    TellWith(m_observers, GetAccessor(), [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.ItemAccessStateChanged(in_library, in_item, static_cast<long>(in_state));
    });
}

void LibraryContext::TellInvalidated()
{
    TellWith(m_observers, GetAccessor(), [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.LibraryInvalidated(in_library);
    });
}

bool LibraryContext::AskForCommit()
{
    bool vetoed = false;
    TellWith(m_observers, GetAccessor(), [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        bool veto = false;
        if (!vetoed)
            in_observer.OnPreCommit(in_library, &veto);
        vetoed = vetoed || veto;
    });
    return !vetoed;
}

void LibraryContext::TellCommitted()
{
    TellWith(m_observers, GetAccessor(), [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
        in_observer.OnPostCommit(in_library);
    });
}

} // namespace memorymodel
