// SPDX-License-Identifier: MIT
#include "workspace/gitworker.h"

#include <QCoreApplication>
#include <QEvent>

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

void GitWorker::Do(Job in_job, bool in_isUrgent)
{
    m_thread.start(QRunnable::create([this, job = std::move(in_job)] {
                       QMetaObject::invokeMethod(this, job(m_isEnding), Qt::QueuedConnection);
                   }),
                   in_isUrgent ? 1 : 0);
}

void GitWorker::Finish()
{
    m_thread.waitForDone();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

} // namespace workspace
