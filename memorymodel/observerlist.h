// SPDX-License-Identifier: MIT
/// The observers of one thing, notified in the order in which they registered.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace memorymodel
{

/// Observers may come and go while they are notified. One that is removed is not called again by the round under way;
/// one that is added is called from the next round on. Removing and adding are linear in the number of observers.
template <class Observer> class ObserverList
{
public:
    bool IsEmpty() const { return m_observers.empty(); }

    /// How many positions there are. During a round, those of observers that were removed are empty.
    std::size_t GetCount() const { return m_observers.size(); }

    /// Null and an observer that is there already are ignored.
    void Add(Observer* in_observer)
    {
        if (in_observer && std::find(m_observers.begin(), m_observers.end(), in_observer) == m_observers.end())
            m_observers.push_back(in_observer);
    }

    void Remove(Observer* in_observer)
    {
        std::replace(m_observers.begin(), m_observers.end(), in_observer, static_cast<Observer*>(nullptr));
        RemoveEmpty();
    }

    void Clear()
    {
        std::fill(m_observers.begin(), m_observers.end(), static_cast<Observer*>(nullptr));
        RemoveEmpty();
    }

    /// Calls in_call(observer) for each observer.
    template <class Call> void Notify(const Call& in_call)
    {
        const Round round(*this);
        const std::size_t count = GetCount();
        for (std::size_t position = 0; position < count; ++position)
            NotifyAt(position, in_call);
    }

    /// Calls in_call(observer) for the observer at a position, if there is one. Only while a Round is alive.
    template <class Call> void NotifyAt(std::size_t in_position, const Call& in_call)
    {
        if (Observer* const observer = m_observers[in_position])
            in_call(*observer);
    }

    /// Keeps the positions of the observers while it is alive, also when an observer throws.
    class Round
    {
    public:
        explicit Round(ObserverList& io_list) : m_list(io_list) { ++m_list.m_rounds; }
        ~Round()
        {
            --m_list.m_rounds;
            m_list.RemoveEmpty();
        }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

    private:
        ObserverList& m_list;
    };

private:
    void RemoveEmpty()
    {
        if (m_rounds == 0)
            m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), static_cast<Observer*>(nullptr)),
                              m_observers.end());
    }

    std::vector<Observer*> m_observers;
    int m_rounds = 0;
};

} // namespace memorymodel
