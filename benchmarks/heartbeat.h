// SPDX-License-Identifier: MIT
/// The pauses in which the thread of the user interface did not answer.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

/// Beats each millisecond, if the event loop of its thread lets it, and keeps the longest pause.
class Heartbeat
{
public:
    Heartbeat();

    /// Ends the pause that goes on.
    void Beat();

    /// Milliseconds that passed, other programs included.
    double GetLongestPause() const { return m_longestPause; }
    /// Milliseconds of processor time that the thread spent in one pause.
    double GetLongestWork() const { return m_longestWork; }

private:
    QTimer m_timer;
    QElapsedTimer m_pause;
    double m_workAtLastBeat;
    double m_longestPause = 0;
    double m_longestWork = 0;
};
