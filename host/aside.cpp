// SPDX-License-Identifier: MIT
#include "host/aside.h"

#include <QEventLoop>
#include <QThread>

#include <exception>
#include <memory>

namespace host
{

void RunAside(const std::function<void()>& in_function)
{
    std::exception_ptr thrown;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try
        {
            in_function();
        }
        catch (...)
        {
            thrown = std::current_exception();
        }
    }));
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    thread->start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    // The loop also ends when the application quits; what is under way still has to come to its end.
    thread->wait();
    if (thrown)
        std::rethrow_exception(thrown);
}

} // namespace host
