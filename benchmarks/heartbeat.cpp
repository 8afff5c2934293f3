// SPDX-License-Identifier: MIT
#include "heartbeat.h"

#include <algorithm>
#include <ctime>

namespace
{

double ProcessorTimeOfThread()
{
    struct timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

} // namespace

Heartbeat::Heartbeat() : m_workAtLastBeat(ProcessorTimeOfThread())
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Beat(); });
    m_pause.start();
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.start(1);
}

void Heartbeat::Beat()
{
    const double work = ProcessorTimeOfThread();
    m_longestPause = std::max(m_longestPause, 1e-6 * static_cast<double>(m_pause.nsecsElapsed()));
    m_longestWork = std::max(m_longestWork, work - m_workAtLastBeat);
    m_pause.start();
    m_workAtLastBeat = work;
}
