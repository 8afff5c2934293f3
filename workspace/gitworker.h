// SPDX-License-Identifier: MIT
/// The thread that asks git.
#pragma once

#include "workspace/repository.h"

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <atomic>
#include <functional>

namespace workspace
{

/// Does jobs one after the other on a thread of its own. What a job returns is called on the thread of this object,
/// from the event loop.
class GitWorker : public QObject
{
public:
    using Answer = std::function<void()>;
    /// Uses nothing but what it holds. A job that may take long looks now and then whether its answer is still wanted.
    using Job = std::function<Answer(const std::atomic<bool>& in_isEnding)>;

    GitWorker();
    /// Waits for the job under way. Jobs that wait, and answers that were not given yet, are dropped.
    ~GitWorker() override;

    /// What is called instead of an answer when the job could not be done, with the reason.
    using Failed = std::function<void(const QString& in_reason)>;

    /// \param in_isUrgent before the jobs that wait and are not
    void Do(Job in_job, Failed in_failed, bool in_isUrgent);

    /// Waits for all jobs, and gives their answers now.
    void Finish();

private:
    Answer Run(const Job& in_job, const Failed& in_failed) const;

    std::atomic<bool> m_isEnding{false};
    QThreadPool m_thread;
};

} // namespace workspace
