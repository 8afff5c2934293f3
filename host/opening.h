// SPDX-License-Identifier: MIT
/// Opens a library while the window stays usable.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace memorymodel
{
class DataLayer;
}

namespace workspace
{
class Reading;
class Workspace;
} // namespace workspace

namespace host
{

/// Reads a file or a folder on another thread, then adds the library to the data layer in slices of a few milliseconds.
/// Destroying it cancels: what was added is removed again, and what is still read on the other thread is forgotten.
class Opening : public QObject
{
    Q_OBJECT

public:
    Opening(memorymodel::DataLayer& in_layer, const QString& in_path);
    ~Opening() override;

    const QString& GetPath() const { return m_path; }

Q_SIGNALS:
    /// How many documents were read, of all of them. Emitted when that has changed.
    void Progressed(int in_read, int in_all);
    /// The library is complete: TakeWorkspace() has it.
    void Opened();
    /// \param in_error why it cannot be opened, as "FILE:LINE: reason"
    void Failed(const QString& in_error);

public:
    /// The opened library, once. From then on it is the caller's to remove.
    std::shared_ptr<workspace::Workspace> TakeWorkspace();

private Q_SLOTS:
    void Continue();

private:
    class Task;

    memorymodel::DataLayer& m_layer;
    const QString m_path;
    const std::shared_ptr<Task> m_task;
    std::shared_ptr<workspace::Workspace> m_workspace; ///< when everything was read
    QTimer m_timer;
    int m_read = 0;
};

} // namespace host
