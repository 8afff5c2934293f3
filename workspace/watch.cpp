// SPDX-License-Identifier: MIT
#include "workspace/watch.h"

#include "workspace/workspace.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QPointer>
#include <QSet>

#include <utility>

namespace workspace
{
namespace
{

const int gDelay = 200; // milliseconds

/// The folders that documents are in, or may come to.
QStringList FoldersOf(const QString& in_path)
{
    if (!QFileInfo(in_path).isDir())
        return QStringList(QFileInfo(in_path).absolutePath());
    QStringList folders(in_path);
    QDirIterator below(in_path, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (below.hasNext())
    {
        const QString folder = below.next();
        if (!folder.mid(in_path.size()).contains(QLatin1String("/.")))
            folders.append(folder);
    }
    return folders;
}

} // namespace

Watch::Watch(std::shared_ptr<Workspace> in_workspace) : m_workspace(std::move(in_workspace))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(gDelay);
    connect(&m_timer, &QTimer::timeout, this, &Watch::Look);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &Watch::LookSoon);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &Watch::LookSoon);
}

void Watch::LookSoon()
{
    // Not begun anew each time: a program that writes on and on would never be noticed.
    if (!m_timer.isActive())
        m_timer.start();
}

void Watch::Look()
{
    if (m_workspace->IsBusy())
    {
        LookSoon();
        return;
    }
    // Observers of the library may end this object.
    const QPointer<Watch> alive(this);
    m_workspace->Refresh();
    if (!alive)
        return;
    WatchAll();
    Q_EMIT Looked();
}

/// A file that was replaced is another one, and is watched anew.
void Watch::WatchAll()
{
    const QStringList wanted = m_workspace->GetFiles() + FoldersOf(m_workspace->GetPath());
    const QStringList before = m_watcher.files() + m_watcher.directories();
    const QSet<QString> watched(before.begin(), before.end());
    QStringList missing;
    for (const QString& path : wanted)
        if (!watched.contains(path) && QFileInfo::exists(path))
            missing.append(path);
    if (missing.isEmpty())
        return;
    const QStringList failed = m_watcher.addPaths(missing);
    if (!failed.isEmpty() && std::exchange(m_isComplete, false))
        Q_EMIT CannotWatch(failed.first());
}

} // namespace workspace
