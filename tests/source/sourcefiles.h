// SPDX-License-Identifier: MIT
/// The project's sources as text, for tests of the source itself.
#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QString>
#include <QStringList>

/// The paths of a room's sources and headers, from the root of the project.
inline QStringList SourceFiles(const QString& in_room)
{
    const QDir root(QString::fromLatin1(SOURCE_FOLDER));
    QStringList files;
    QDirIterator entry(root.filePath(in_room), QDir::Files, QDirIterator::Subdirectories);
    while (entry.hasNext())
    {
        const QString path = root.relativeFilePath(entry.next());
        if (path.endsWith(QLatin1String(".h")) || path.endsWith(QLatin1String(".cpp")))
            files << path;
    }
    files.sort();
    return files;
}

/// What a file says, line by line. One that cannot be read includes something that no room may.
inline QStringList Lines(const QString& in_path)
{
    QFile file(QDir(QString::fromLatin1(SOURCE_FOLDER)).filePath(in_path));
    if (!file.open(QIODevice::ReadOnly))
        return QStringList(QString::fromLatin1("#include \"unreadable/") + in_path + QLatin1Char('"'));
    return QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'));
}
