// SPDX-License-Identifier: MIT
#include "host/opening.h"

#include "memorymodel/datalayer.h"
#include "workspace/workspace.h"

#include <QElapsedTimer>
#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <utility>

namespace host
{

namespace
{

const int gLookInterval = 5;    // milliseconds
const int gSlice = 8;           // milliseconds
const std::size_t gItems = 256; // added between two looks at the clock

} // namespace

/// Shared by the two threads: each may end first.
class Opening::Task
{
public:
    explicit Task(const QString& in_path) : m_reading(in_path) {}

    workspace::Reading m_reading;
    std::atomic<bool> m_isDone{false};
};

Opening::Opening(memorymodel::DataLayer& in_layer, const QString& in_path)
    : m_layer(in_layer), m_path(in_path), m_task(std::make_shared<Task>(in_path))
{
    class Run : public QRunnable
    {
    public:
        explicit Run(std::shared_ptr<Task> in_task) : m_task(std::move(in_task)) {}
        void run() override
        {
            m_task->m_reading.Run();
            m_task->m_isDone = true;
        }

    private:
        const std::shared_ptr<Task> m_task;
    };
    // The application waits for the pool when it ends.
    QThreadPool::globalInstance()->start(new Run(m_task));
    connect(&m_timer, &QTimer::timeout, this, &Opening::Continue);
    m_timer.start(gLookInterval);
}

Opening::~Opening()
{
    m_task->m_reading.m_progress.m_isCancelled = true;
    if (m_workspace)
        m_layer.RemoveLibrary(m_workspace->GetLibrary());
}

std::shared_ptr<workspace::Workspace> Opening::TakeWorkspace()
{
    return std::exchange(m_workspace, nullptr);
}

void Opening::Continue()
{
    workspace::Reading& reading = m_task->m_reading;
    const int read = reading.m_progress.m_read;
    if (read != m_read)
    {
        m_read = read;
        Q_EMIT Progressed(read, reading.m_progress.m_documents);
    }
    if (!m_task->m_isDone)
        return;
    if (!m_workspace)
    {
        if (!reading.GetError().isEmpty())
        {
            m_timer.stop();
            Q_EMIT Failed(reading.GetError());
            return;
        }
        m_workspace = workspace::Workspace::Open(m_layer, reading);
        m_timer.setInterval(0);
    }
    QElapsedTimer clock;
    clock.start();
    bool isMore = true;
    while (isMore && !clock.hasExpired(gSlice))
        isMore = m_workspace->Fill(gItems);
    if (isMore)
        return;
    m_timer.stop();
    Q_EMIT Opened();
}

} // namespace host
