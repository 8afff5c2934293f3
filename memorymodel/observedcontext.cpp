// SPDX-License-Identifier: MIT
#include "memorymodel/observedcontext.h"

using namespace vireo::datamodel;

namespace memorymodel
{

ItemLibraryAccessor ObservedContext::GetAccessor()
{
    return ItemLibraryAccessor(UnspecifiedAccessor(shared_from_this()));
}

ObservedContext::Bracket::Bracket(ObservedContext& in_context)
    : m_context(in_context.shared_from_this()), m_round(in_context.m_libraryObservers)
{
    ++m_context->m_brackets;
}

ObservedContext::Bracket::~Bracket()
{
    if (--m_context->m_brackets > 0 || m_context->m_phase != ePhaseClosing)
        return;
    m_context->m_phase = ePhaseClosed;
    m_context->m_libraryObservers.Clear();
    m_context->m_tocObservers.Clear();
}

void ObservedContext::Bracket::Begin()
{
    const ePhase phase = m_context->m_phase;
    const std::size_t count = m_context->m_libraryObservers.GetCount();
    while (m_begun < count && m_context->m_phase == phase)
        m_context->m_libraryObservers.NotifyAt(m_begun++, [this](IItemLibraryNotification& in_observer) {
            ItemLibraryAccessor library = m_context->GetAccessor();
            in_observer.OnBeginChanges(library);
        });
}

void ObservedContext::Bracket::End()
{
    for (std::size_t position = 0; position < m_begun; ++position)
        m_context->m_libraryObservers.NotifyAt(position, [this](IItemLibraryNotification& in_observer) {
            ItemLibraryAccessor library = m_context->GetAccessor();
            in_observer.OnEndChanges(library);
        });
}

/// Calls in_call(observer, accessor) for each observer of the library, until one of them ends the phase. Each gets an
/// accessor of its own, so that no observer sees what another one did to its accessor.
template <class Call> void ObservedContext::NotifyLibrary(ePhase in_phase, const Call& in_call)
{
    const std::shared_ptr<ObservedContext> alive = shared_from_this();
    m_libraryObservers.Notify([&](IItemLibraryNotification& in_observer) {
        if (m_phase != in_phase)
            return;
        ItemLibraryAccessor library = GetAccessor();
        in_call(in_observer, library);
    });
}

/// The same for the observers of the table of contents and an accessor of an item.
template <class Call> void ObservedContext::NotifyTOC(const std::shared_ptr<IContext>& in_item, const Call& in_call)
{
    if (m_tocObservers.IsEmpty())
        return;
    const std::shared_ptr<ObservedContext> alive = shared_from_this();
    const ItemAccessor item{UnspecifiedAccessor(in_item)};
    m_tocObservers.Notify([&](IItemTOCNotification& in_observer) {
        if (m_phase != ePhaseOpen)
            return;
        ItemAccessor copy(item);
        in_call(in_observer, copy);
    });
}

void ObservedContext::NotifyItemAdded(const std::shared_ptr<IContext>& in_item)
{
    NotifyTOC(in_item,
              [](IItemTOCNotification& in_observer, ItemAccessor& io_item) { in_observer.ItemAdded(io_item); });
}

void ObservedContext::NotifyItemRemoved(const std::shared_ptr<IContext>& in_item)
{
    NotifyTOC(in_item,
              [](IItemTOCNotification& in_observer, ItemAccessor& io_item) { in_observer.ItemRemoved(io_item); });
}

void ObservedContext::NotifyNameChanged(const ItemID& in_item)
{
    NotifyLibrary(ePhaseOpen, [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        in_observer.ItemNameChanged(io_library, in_item);
    });
}

void ObservedContext::NotifyTagsChanged(const ItemID& in_item, const char* in_key)
{
    NotifyLibrary(ePhaseOpen, [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        in_observer.ItemTagsChanged(io_library, in_item, in_key);
    });
}

void ObservedContext::NotifyAccessState(const ItemID& in_item, unsigned in_state)
{
    NotifyLibrary(ePhaseOpen, [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        in_observer.ItemAccessStateChanged(io_library, in_item, static_cast<long>(in_state));
    });
}

void ObservedContext::NotifyInvalidated()
{
    NotifyLibrary(ePhaseOpen, [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        in_observer.LibraryInvalidated(io_library);
    });
}

void ObservedContext::NotifyClosing()
{
    InBracket([this] {
        NotifyLibrary(ePhaseClosing, [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
            in_observer.LibraryInvalidated(io_library);
        });
    });
}

bool ObservedContext::NotifyPreCommit()
{
    bool vetoed = false;
    NotifyLibrary(ePhaseOpen, [&](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        bool veto = false;
        if (!vetoed)
            in_observer.OnPreCommit(io_library, &veto);
        vetoed = vetoed || veto;
    });
    return !vetoed;
}

void ObservedContext::NotifyPostCommit()
{
    NotifyLibrary(ePhaseOpen, [](IItemLibraryNotification& in_observer, ItemLibraryAccessor& io_library) {
        in_observer.OnPostCommit(io_library);
    });
}

} // namespace memorymodel
