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

/// The folders right inside of one that documents may come to.
QStringList FoldersIn(const QString& in_folder)
{
    QStringList folders;
    QDirIterator inside(in_folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    while (inside.hasNext())
    {
        const QString folder = inside.next();
        if (!inside.fileName().startsWith(QLatin1Char('.')))
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
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &Watch::Schedule);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString& in_folder) {
        m_changedFolders.insert(in_folder);
        Schedule();
    });
}

void Watch::Start()
{
    m_changedFolders.insert(GetFolder());
    WatchAll();
    // What happened since the documents were read was not noticed.
    Schedule();
}

void Watch::LookSoon()
{
    m_changedFolders.insert(GetFolder());
    Schedule();
}

void Watch::Schedule()
{
    // Not begun anew each time: a program that writes on and on would never be noticed.
    if (!m_timer.isActive())
        m_timer.start();
}

void Watch::Look()
{
    if (m_workspace->IsBusy())
    {
        Schedule();
        return;
    }
    WatchAll();
    // Observers of the library may end this object.
    const QPointer<Watch> alive(this);
    m_workspace->Refresh();
    if (!alive)
        return;
    // Of what was read before it was watched, a change may have been missed.
    if (WatchAll())
        Schedule();
    Q_EMIT Looked();
}

QString Watch::GetFolder() const
{
    const QFileInfo opened(m_workspace->GetPath());
    return opened.isDir() ? m_workspace->GetPath() : opened.absolutePath();
}

/// A file that was replaced is another one, and is watched anew.
bool Watch::WatchAll()
{
    QStringList missing;
    const QStringList before = m_watcher.files();
    const QSet<QString> watched(before.begin(), before.end());
    const QStringList files = m_workspace->GetFiles();
    for (const QString& file : files)
        if (!watched.contains(file) && QFileInfo::exists(file))
            missing.append(file);
    const bool isNewFile = Add(missing);
    const bool isNewFolder = WatchFolders();
    return isNewFile || isNewFolder;
}

/// Folders tell what comes into them. So only those that changed are looked into, and those that are new.
bool Watch::WatchFolders()
{
    const QStringList before = m_watcher.directories();
    QSet<QString> watched(before.begin(), before.end());
    const bool hasInner = QFileInfo(m_workspace->GetPath()).isDir();
    QStringList next;
    const QSet<QString> changed = std::exchange(m_changedFolders, QSet<QString>());
    for (const QString& folder : changed)
        if (QFileInfo(folder).isDir())
            next.append(folder);
    bool isNew = false;
    while (!next.isEmpty())
    {
        QStringList missing;
        for (const QString& folder : std::as_const(next))
            if (!watched.contains(folder))
                missing.append(folder);
        // Before they are looked into: what comes later is told.
        isNew = Add(missing) || isNew;
        QStringList inner;
        for (const QString& folder : std::as_const(next))
            if (hasInner)
                for (const QString& found : FoldersIn(folder))
                    if (!watched.contains(found))
                        inner.append(found);
        watched += QSet<QString>(missing.begin(), missing.end());
        next = inner;
    }
    return isNew;
}

/// \return whether one of them is watched now
bool Watch::Add(const QStringList& in_paths)
{
    if (in_paths.isEmpty())
        return false;
    const QStringList failed = m_watcher.addPaths(in_paths);
    if (!failed.isEmpty() && std::exchange(m_isComplete, false))
        Q_EMIT CannotWatch(failed.first());
    return failed.size() < in_paths.size();
}

} // namespace workspace
