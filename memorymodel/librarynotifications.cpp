// SPDX-License-Identifier: MIT
#include "memorymodel/librarycontext.h"

using namespace vireo::datamodel;

namespace memorymodel
{

LibraryContext::Bracket::Bracket(LibraryContext& in_library)
    : m_library(in_library.shared_from_this()), m_round(in_library.m_observers)
{
    ++m_library->m_brackets;
}

LibraryContext::Bracket::~Bracket()
{
    if (--m_library->m_brackets > 0 || m_library->m_phase != ePhaseClosing)
        return;
    m_library->m_phase = ePhaseClosed;
    m_library->m_observers.Clear();
    m_library->m_tocObservers.Clear();
}

void LibraryContext::Bracket::Begin()
{
    const ePhase phase = m_library->m_phase;
    const std::size_t places = m_library->m_observers.GetPlaces();
    while (m_begun < places && m_library->m_phase == phase)
        m_library->m_observers.TellAt(m_begun++, [this](IItemLibraryNotification& in_observer) {
            ItemLibraryAccessor library = m_library->GetAccessor();
            in_observer.OnBeginChanges(library);
        });
}

void LibraryContext::Bracket::End()
{
    for (std::size_t place = 0; place < m_begun; ++place)
        m_library->m_observers.TellAt(place, [this](IItemLibraryNotification& in_observer) {
            ItemLibraryAccessor library = m_library->GetAccessor();
            in_observer.OnEndChanges(library);
        });
}

template <class Observers, class Accessor, class Call>
void LibraryContext::TellIn(ePhase in_phase, Observers& in_observers, const Accessor& in_accessor, const Call& in_call)
{
    in_observers.Tell([&](auto& in_observer) {
        if (m_phase != in_phase)
            return;
        Accessor accessor(in_accessor);
        in_call(in_observer, accessor);
    });
}

void LibraryContext::TellItemAdded(const std::shared_ptr<Item>& in_item)
{
    if (m_tocObservers.IsEmpty())
        return;
    TellIn(ePhaseOpen, m_tocObservers, ItemAccessor(UnspecifiedAccessor(in_item)),
           [](IItemTOCNotification& in_observer, ItemAccessor& in_accessor) { in_observer.ItemAdded(in_accessor); });
}

void LibraryContext::TellItemRemoved(const std::shared_ptr<Item>& in_item)
{
    if (m_tocObservers.IsEmpty())
        return;
    TellIn(ePhaseOpen, m_tocObservers, ItemAccessor(UnspecifiedAccessor(in_item)),
           [](IItemTOCNotification& in_observer, ItemAccessor& in_accessor) { in_observer.ItemRemoved(in_accessor); });
}

void LibraryContext::TellNameChanged(const ItemID& in_item)
{
    TellIn(ePhaseOpen, m_observers, GetAccessor(),
           [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               in_observer.ItemNameChanged(in_library, in_item);
           });
}

void LibraryContext::TellTagsChanged(const ItemID& in_item, const char* in_key)
{
    TellIn(ePhaseOpen, m_observers, GetAccessor(),
           [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               in_observer.ItemTagsChanged(in_library, in_item, in_key);
           });
}

void LibraryContext::TellAccessState(const ItemID& in_item, unsigned in_state)
{
    TellIn(ePhaseOpen, m_observers, GetAccessor(),
           [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               in_observer.ItemAccessStateChanged(in_library, in_item, static_cast<long>(in_state));
           });
}

void LibraryContext::TellInvalidated()
{
    TellInvalidatedIn(ePhaseOpen);
}

void LibraryContext::TellInvalidatedIn(ePhase in_phase)
{
    TellIn(in_phase, m_observers, GetAccessor(),
           [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               in_observer.LibraryInvalidated(in_library);
           });
}

bool LibraryContext::AskForCommit()
{
    bool vetoed = false;
    TellIn(ePhaseOpen, m_observers, GetAccessor(),
           [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               bool veto = false;
               if (!vetoed)
                   in_observer.OnPreCommit(in_library, &veto);
               vetoed = vetoed || veto;
           });
    return !vetoed;
}

void LibraryContext::TellCommitted()
{
    TellIn(ePhaseOpen, m_observers, GetAccessor(),
           [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& in_library) {
               in_observer.OnPostCommit(in_library);
           });
}

} // namespace memorymodel
