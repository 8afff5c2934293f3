// SPDX-License-Identifier: MIT
/// The observers of one thing, told in the order in which they registered.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace memorymodel
{

/// Pointers on observers that may come and go while they are being told: one that is removed is not called again by the
/// round under way, one that is added is called from the next round on. Removing and adding are linear in the number of
/// observers.
template <class Observer> class ObserverList
{
public:
    bool IsEmpty() const { return m_observers.empty(); }

    /// The observers that are there now have the places below this one; a place may be empty.
    std::size_t GetPlaces() const { return m_observers.size(); }

    /// Null and an observer that is there already are ignored.
    void Add(Observer* in_observer)
    {
        if (in_observer && std::find(m_observers.begin(), m_observers.end(), in_observer) == m_observers.end())
            m_observers.push_back(in_observer);
    }

    void Remove(Observer* in_observer)
    {
        std::replace(m_observers.begin(), m_observers.end(), in_observer, static_cast<Observer*>(nullptr));
        Tidy();
    }

    void Clear()
    {
        std::fill(m_observers.begin(), m_observers.end(), static_cast<Observer*>(nullptr));
        Tidy();
    }

    /// Calls in_call(observer) for each observer.
    template <class Call> void Tell(const Call& in_call)
    {
        const Round round(*this);
        const std::size_t places = GetPlaces();
        for (std::size_t i = 0; i < places; ++i)
            TellAt(i, in_call);
    }

    /// Calls in_call(observer) for the observer at a place, if there is one. Only while a Round is alive.
    template <class Call> void TellAt(std::size_t in_place, const Call& in_call)
    {
        if (Observer* const observer = m_observers[in_place])
            in_call(*observer);
    }

    /// Keeps the places of the observers while they are being told, also when one of them throws.
    class Round
    {
    public:
        explicit Round(ObserverList& in_list) : m_list(in_list) { ++m_list.m_rounds; }
        ~Round()
        {
            --m_list.m_rounds;
            m_list.Tidy();
        }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

    private:
        ObserverList& m_list;
    };

private:
    void Tidy()
    {
        if (m_rounds == 0)
            m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), static_cast<Observer*>(nullptr)),
                              m_observers.end());
    }

    std::vector<Observer*> m_observers;
    int m_rounds = 0;
};

} // namespace memorymodel
