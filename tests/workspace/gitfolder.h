// SPDX-License-Identifier: MIT
/// Folders in repositories that the git program makes.
#pragma once

#include "tests/materialx/documents.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <stdexcept>

/// A folder of documents in which git can be run. Nobody's settings play a part: make one before anything reads them.
class GitFolder
{
public:
    GitFolder()
    {
        // Of the library that reads repositories in this process, too.
        qputenv("HOME", Home().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", Home().toLocal8Bit());
    }

    const DocumentFolder& GetDocuments() const { return m_documents; }
    QString GetPath(const QString& in_relativePath = QString()) const { return m_documents.GetPath(in_relativePath); }
    QString Write(const char* in_relativePath, const QByteArray& in_content) const
    {
        return m_documents.Write(QString::fromLatin1(in_relativePath), in_content);
    }

    /// Runs git with arguments that have blanks between them, in a folder below this one.
    /// \param in_mayFail a merge with conflicts, say, ends with 1
    QByteArray Git(const char* in_arguments, const char* in_folder = "", bool in_mayFail = false) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString date = QStringLiteral("2024-05-%1T12:00:00+02:00").arg(m_day++ % 28 + 1, 2, 10, QLatin1Char('0'));
        for (const char* const name : {"GIT_DIR", "GIT_WORK_TREE", "GIT_INDEX_FILE", "GIT_CONFIG_GLOBAL"})
            environment.remove(QString::fromLatin1(name));
        environment.insert(QStringLiteral("GIT_CONFIG_NOSYSTEM"), QStringLiteral("1"));
        environment.insert(QStringLiteral("GIT_CONFIG_COUNT"), QStringLiteral("1"));
        environment.insert(QStringLiteral("GIT_CONFIG_KEY_0"), QStringLiteral("protocol.file.allow"));
        environment.insert(QStringLiteral("GIT_CONFIG_VALUE_0"), QStringLiteral("always"));
        for (const char* const who : {"AUTHOR", "COMMITTER"})
        {
            const QString prefix = QStringLiteral("GIT_%1_").arg(QLatin1String(who));
            environment.insert(prefix + QStringLiteral("NAME"), QStringLiteral("Ann Author"));
            environment.insert(prefix + QStringLiteral("EMAIL"), QStringLiteral("ann@example.org"));
            environment.insert(prefix + QStringLiteral("DATE"), date);
        }
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(GetPath(QString::fromLatin1(in_folder)));
        process.start(QStringLiteral("git"), QString::fromLatin1(in_arguments).split(QLatin1Char(' ')));
        const int patience = 60000; // milliseconds
        const bool hasEnded = process.waitForFinished(patience);
        if (!hasEnded || (process.exitCode() != 0 && !in_mayFail))
            throw std::runtime_error("git " + std::string(in_arguments) + ": " +
                                     process.readAllStandardError().toStdString());
        return process.readAllStandardOutput();
    }

    /// A repository with all that is in the folder in its first commit.
    void Commit(const char* in_subject = "First") const
    {
        if (!QFileInfo::exists(GetPath(QStringLiteral(".git"))))
            Git("init --quiet --initial-branch=main");
        Git("add --all");
        Git((QByteArray("commit --quiet --allow-empty --message=") + in_subject).constData());
    }

private:
    static QString Home()
    {
        static const QTemporaryDir home;
        return home.path();
    }

    DocumentFolder m_documents;
    mutable int m_day = 0; ///< each command has a day of its own
};
