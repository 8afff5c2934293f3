// SPDX-License-Identifier: MIT
#include "workspace/gitworker.h"

#include <QCoreApplication>
#include <QEvent>

#include <exception>
#include <new>
#include <utility>

namespace workspace
{

GitWorker::GitWorker()
{
    m_thread.setMaxThreadCount(1);
}

GitWorker::~GitWorker()
{
    m_isEnding = true;
    m_thread.clear();
    m_thread.waitForDone();
}

void GitWorker::Do(Job in_job, Failed in_failed, bool in_isUrgent)
{
    m_thread.start(QRunnable::create([this, job = std::move(in_job), failed = std::move(in_failed)] {
                       QMetaObject::invokeMethod(this, Run(job, failed), Qt::QueuedConnection);
                   }),
                   in_isUrgent ? 1 : 0);
}

GitWorker::Answer GitWorker::Run(const Job& in_job, const Failed& in_failed) const
{
    QString reason;
    try
    {
        // To the end of the program: to make it ready reads many files, and threads that end later give back what they
        // hold of it.
        static const GitLibrary library;
        return in_job(m_isEnding);
    }
    catch (const std::bad_alloc&)
    {
        reason = QStringLiteral("There is not enough memory to ask git");
    }
    catch (const std::exception& thrown)
    {
        reason = QString::fromLocal8Bit(thrown.what());
    }
    return [in_failed, reason] { in_failed(reason); };
}

void GitWorker::Finish()
{
    m_thread.waitForDone();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

} // namespace workspace
