// SPDX-License-Identifier: MIT
/// Documents on disk for the tests of the MaterialX room, and a readable form of what was read.
#pragma once

#include "materialx/items.h"
#include "materialx/library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <stdexcept>

/// A folder that goes away with the object.
class DocumentFolder
{
public:
    DocumentFolder() { Require(m_folder.isValid()); }

    QString GetPath(const QString& in_relativePath = QString()) const { return m_folder.filePath(in_relativePath); }

    /// Writes a file below the folder, makes the folders on the way, and returns its path.
    QString Write(const QString& in_relativePath, const QByteArray& in_content) const
    {
        const QString path = GetPath(in_relativePath);
        Require(QDir().mkpath(QFileInfo(path).path()));
        QFile::remove(path); // some file systems wait for the disk when a file is cut and written anew
        QFile file(path);
        Require(file.open(QIODevice::WriteOnly) && file.write(in_content) == in_content.size());
        return path;
    }

private:
    static void Require(bool in_condition)
    {
        if (!in_condition)
            throw std::runtime_error("The test cannot write its documents");
    }

    QTemporaryDir m_folder;
};

/// Makes a file longer than the memory, without a byte on the disk.
/// \return false when the file system takes no such file, or the system gives memory that it does not have
inline bool MakeLargerThanTheMemory(const QString& in_path)
{
    QFile overcommit(QStringLiteral("/proc/sys/vm/overcommit_memory"));
    if (overcommit.open(QIODevice::ReadOnly) && overcommit.readAll().trimmed() == "1")
        return false;
    QFile file(in_path);
    const qint64 terabyte = qint64(1) << 40;
    return file.resize(100 * terabyte) || file.resize(15 * terabyte);
}

inline QString KindName(materialx::eKind in_kind)
{
    static const char* const names[] = {"type", "constant", "polymorphic", "solver", "compound", "signature"};
    return QString::fromLatin1(names[static_cast<int>(in_kind)]);
}

/// "kind name [tags] @source", and " in PARENT" or " of GENERAL" for an item that is not listed, " as SHOWN" for one
/// that is shown with another name.
inline QStringList Describe(const materialx::Library& in_library)
{
    QStringList lines;
    for (const materialx::Item& item : materialx::MakeItems(in_library))
    {
        QStringList tags;
        for (const std::string& tag : item.m_tags)
            tags.append(QString::fromStdString(tag));
        QString line = QStringLiteral("%1 %2 [%3] @%4")
                           .arg(KindName(item.m_kind), QString::fromStdString(item.m_name), tags.join(QLatin1Char(';')),
                                in_library.m_sources.at(item.m_source).m_name);
        if (!item.m_parent.empty())
            line += QStringLiteral(" in ") + QString::fromStdString(item.m_parent);
        if (!item.m_specializes.empty())
            line += QStringLiteral(" of ") + QString::fromStdString(item.m_specializes);
        if (item.m_shownName != item.m_name)
            line += QStringLiteral(" as ") + QString::fromStdString(item.m_shownName);
        lines.append(line);
    }
    return lines;
}
