// SPDX-License-Identifier: MIT
/// Waiting for a condition, and event loops.
#pragma once

#include <QEventLoop>
#include <QTest>
#include <QTimerEvent>

/// Waits until a condition holds, for two seconds at most unless told otherwise.
/// \return whether it holds
template <class Condition> bool WaitFor(Condition in_condition, int in_milliseconds = 2000)
{
    for (int waited = 0; waited < in_milliseconds && !in_condition(); waited += 10)
        QTest::qWait(10);
    return in_condition();
}

/// Calls a function from inside an event loop, as programs do nearly everything. Tests run outside of any, where the
/// toolkit deletes objects at other times.
template <class Function> void RunInEventLoop(Function in_function)
{
    class Task : public QObject
    {
    public:
        Task(Function& io_function, QEventLoop& io_loop) : m_function(io_function), m_loop(io_loop) { startTimer(0); }

    protected:
        void timerEvent(QTimerEvent* in_event) override
        {
            killTimer(in_event->timerId());
            m_function();
            m_loop.quit();
        }

    private:
        Function& m_function;
        QEventLoop& m_loop;
    };

    QEventLoop loop;
    Task task(in_function, loop);
    loop.exec();
}
