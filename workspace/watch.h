// SPDX-License-Identifier: MIT
/// Notices what other programs do to the files of a workspace.
#pragma once

#include "workspace/export.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace workspace
{

class Workspace;

/// Watches the documents of a workspace, their folders and the opened one. When something happens there, it lets the
/// workspace look at its files, once for all that happens in a fifth of a second. What the workspace itself has written
/// is not news to it.
///
/// Runs in the event loop of the thread that the workspace is used on.
class WORKSPACE_EXPORT Watch : public QObject
{
    Q_OBJECT

public:
    explicit Watch(std::shared_ptr<Workspace> in_workspace);

    /// Begins to watch, and lets the workspace look once.
    void Start();

    /// Lets the workspace look soon. For moments when something may have happened that was not noticed, since the
    /// system does not tell of every file.
    void LookSoon();

Q_SIGNALS:
    /// The workspace has looked at its files.
    void Looked();
    /// Some files or folders cannot be watched. Emitted once.
    void CannotWatch(const QString& in_first);

private Q_SLOTS:
    void Look();

private:
    void Schedule();
    /// The opened folder, or the one that the opened file is in.
    QString GetFolder() const;
    /// \return whether something is watched that was not before
    bool WatchAll();
    bool WatchFolders();
    bool Add(const QStringList& in_paths);

    const std::shared_ptr<Workspace> m_workspace;
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    QSet<QString> m_changedFolders; ///< in which others may have come since WatchFolders()
    bool m_isComplete = true;
};

} // namespace workspace
