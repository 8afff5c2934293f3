// SPDX-License-Identifier: MIT
#include "measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QWidget>
#include <QtGlobal>

#include <ctime>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace
{

/// In milliseconds. No step on the largest library takes as long.
const qint64 gPatience = 600000;

/// Reads the processor time of this process, of all threads together, where the C library has it. No step waits for
/// anything, so on an idle machine this is about the time that passes. The time of other processes does not count.
class Stopwatch
{
public:
    double Milliseconds() const { return 1e3 * static_cast<double>(std::clock() - m_start) / CLOCKS_PER_SEC; }

private:
    const std::clock_t m_start = std::clock();
};

/// Records the end of the first frame that paints the list.
class FrameWatch : public QObject
{
public:
    explicit FrameWatch(const Panel& in_panel) : m_panel(in_panel)
    {
        m_panel.m_window->installEventFilter(this);
        if (m_panel.m_list != m_panel.m_window)
            m_panel.m_list->installEventFilter(this);
    }

    bool eventFilter(QObject* in_receiver, QEvent* in_event) override
    {
        if (in_receiver == m_panel.m_list && in_event->type() == QEvent::Paint)
            m_painted = true;
        if (in_receiver != m_panel.m_window || in_event->type() != QEvent::UpdateRequest)
            return false;
        // The event is handled here, so that the end of the frame is recorded before anything else happens.
        in_receiver->event(in_event);
        if (m_painted && !m_ended)
        {
            m_ended = true;
            m_milliseconds = m_stopwatch.Milliseconds();
        }
        return true;
    }

    bool m_ended = false;
    double m_milliseconds = 0;

private:
    const Panel m_panel;
    const Stopwatch m_stopwatch;
    bool m_painted = false;
};

} // namespace

double TimeToFrame(const Panel& in_panel, const std::function<void()>& in_step)
{
    QElapsedTimer patience;
    patience.start();
    FrameWatch watch(in_panel);
    in_step();
    while (!watch.m_ended)
    {
        QCoreApplication::processEvents();
        if (patience.hasExpired(gPatience))
            qFatal("A step has led to no frame.");
    }
    return watch.m_milliseconds;
}

double TimeRepaint(const Panel& in_panel)
{
    return TimeToFrame(in_panel, [&in_panel] { in_panel.m_window->update(); });
}

double Time(const std::function<void()>& in_step)
{
    const Stopwatch stopwatch;
    in_step();
    return stopwatch.Milliseconds();
}

void Settle()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 60000);
}

std::size_t HeapBytes()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}
