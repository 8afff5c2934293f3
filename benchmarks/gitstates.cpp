// SPDX-License-Identifier: MIT
#include "gitstates.h"

#include "heartbeat.h"
#include "measure.h"
#include "memorymodel/datalayer.h"
#include "panel.h"
#include "table.h"
#include "workspace/versions.h"
#include "workspace/workspace.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

namespace
{

const std::size_t gDocumentsInAFolder = 200;

bool RunGit(const QString& in_folder, const QStringList& in_arguments)
{
    QProcess git;
    git.setWorkingDirectory(in_folder);
    git.start(QStringLiteral("git"), in_arguments);
    return git.waitForFinished(-1) && git.exitStatus() == QProcess::NormalExit && git.exitCode() == 0;
}

bool WriteDocuments(const QString& in_folder, std::size_t in_count)
{
    for (std::size_t i = 0; i < in_count; ++i)
    {
        const QString folder = QStringLiteral("%1/pack%2").arg(in_folder).arg(i / gDocumentsInAFolder);
        QFile file(QStringLiteral("%1/node%2.mtlx").arg(folder).arg(i));
        const QByteArray name = "node" + QByteArray::number(static_cast<qulonglong>(i));
        const QByteArray text = "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n  <nodedef name=\"ND_" + name +
                                "\" node=\"" + name + "\" nodegroup=\"math\">\n" +
                                "    <input name=\"in\" type=\"float\" value=\"0.0\"/>\n" +
                                "    <output name=\"out\" type=\"float\"/>\n  </nodedef>\n</materialx>\n";
        if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            return false;
    }
    return true;
}

/// A repository in which nothing has changed, as git has seen for itself.
bool MakeRepository(const QString& in_folder, std::size_t in_documents)
{
    const auto git = [&](const QStringList& in_arguments) { return RunGit(in_folder, in_arguments); };
    if (!WriteDocuments(in_folder, in_documents) || !git({QStringLiteral("init"), QStringLiteral("--quiet")}) ||
        !git({QStringLiteral("add"), QStringLiteral("--all")}) ||
        !git({QStringLiteral("-c"), QStringLiteral("user.name=Bench"), QStringLiteral("-c"),
              QStringLiteral("user.email=bench@example.org"), QStringLiteral("-c"),
              QStringLiteral("commit.gpgsign=false"), QStringLiteral("commit"), QStringLiteral("--quiet"),
              QStringLiteral("--message=All")}))
        return false;
    // Files of the same second as the index could have changed since: git would read them all each time.
    const unsigned long moment = 1100;
    QThread::msleep(moment);
    return git({QStringLiteral("status"), QStringLiteral("--porcelain")});
}

/// In milliseconds, of the children that have ended.
double ProcessorTimeOfChildren()
{
    struct rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const struct timeval& in_time) {
        return 1e3 * static_cast<double>(in_time.tv_sec) + 1e-3 * static_cast<double>(in_time.tv_usec);
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

double Passed(const QElapsedTimer& in_since)
{
    return 1e-6 * static_cast<double>(in_since.nsecsElapsed());
}

/// Lets the browser ask for all states, until all are told and painted.
void AskAndWait(memorymodel::DataLayer& io_layer, workspace::Versions& io_versions)
{
    QEventLoop loop;
    QObject::connect(&io_versions, &workspace::Versions::StatesRead, &loop, &QEventLoop::quit);
    io_layer.GetSourceControl().SetEnabled(false);
    io_layer.GetSourceControl().SetEnabled(true);
    loop.exec();
    Settle();
}

} // namespace

bool MeasureGitStates(std::size_t in_documents)
{
    const QTemporaryDir folder;
    QString error = QStringLiteral("git could not make a repository");
    memorymodel::DataLayer layer;
    const auto workspace = MakeRepository(folder.path(), in_documents)
                               ? workspace::Workspace::Open(layer, folder.path(), &error)
                               : nullptr;
    if (!workspace)
    {
        std::fprintf(stderr, "git-states: %s\n", qPrintable(error));
        return false;
    }
    workspace::Versions& versions = workspace->GetVersions();
    versions.Finish();
    const std::unique_ptr<CNodeBrowser> browser = ShowBrowser(workspace->GetLibrary().GetAccessor());
    AskAndWait(layer, versions);

    Samples work;
    Samples wait;
    for (int round = 0; round < gRepetitions; ++round)
    {
        QElapsedTimer passed;
        passed.start();
        work[eColumnBrowser].push_back(Time([&] {
            versions.Ask();
            versions.Finish();
        }));
        wait[eColumnBrowser].push_back(Passed(passed));

        const double before = ProcessorTimeOfChildren();
        passed.start();
        if (!RunGit(folder.path(), {QStringLiteral("status"), QStringLiteral("--porcelain")}))
            return false;
        wait[eColumnGit].push_back(Passed(passed));
        work[eColumnGit].push_back(ProcessorTimeOfChildren() - before);
    }
    PrintRow("git-states", in_documents, Medians(work));
    PrintRow("git-states-wait", in_documents, Medians(wait));

    Figures gap;
    Figures gapWork;
    for (int round = 0; round < gRepetitions; ++round)
    {
        Settle();
        Heartbeat beats;
        AskAndWait(layer, versions);
        beats.Beat();
        gap[eColumnBrowser] = std::max(gap[eColumnBrowser], std::optional<double>(beats.GetLongestPause()));
        gapWork[eColumnBrowser] = std::max(gapWork[eColumnBrowser], std::optional<double>(beats.GetLongestWork()));
    }
    PrintRow("git-gap", in_documents, gap);
    PrintRow("git-gap-work", in_documents, gapWork);
    return true;
}
