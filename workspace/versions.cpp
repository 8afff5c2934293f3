// SPDX-License-Identifier: MIT
#include "workspace/versions.h"

#include "memorymodel/library.h"
#include "memorymodel/sourcecontrol.h"
#include "workspace/content.h"
#include "workspace/files.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace workspace
{
namespace
{

const int gPause = 100; // milliseconds
const std::size_t gCommits = 5;

} // namespace

Versions::Versions(std::shared_ptr<Content> in_content, memorymodel::SourceControl& in_control)
    : m_content(std::move(in_content)), m_control(&in_control)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(gPause);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_pause.isActive())
            m_pause.start();
    });
    connect(&m_pause, &QTimer::timeout, this, [this] {
        ++m_happenings;
        m_histories.clear();
        Ask();
    });
}

Versions::~Versions() = default;

void Versions::Close()
{
    if (!m_control)
        return;
    m_pause.stop();
    m_requested.clear();
    SetActive(false);
    m_control = nullptr;
}

void Versions::Ask()
{
    if (!m_control)
        return;
    m_isAskedAgain = m_isAsking;
    if (std::exchange(m_isAsking, true))
        return;
    const materialx::Library& library = m_content->GetMaterial();
    DocumentPaths paths;
    paths.m_folder = QFile::encodeName(m_content->GetDocuments().GetFolder());
    std::vector<std::size_t> documents;
    for (std::size_t i = 0; i < library.m_documents.size(); ++i)
        if (!library.m_documents[i].m_document.IsEmpty())
        {
            documents.push_back(i);
            paths.m_documents.push_back(
                QFile::encodeName(m_content->GetDocuments().GetPathInFolder(library.m_documents[i].m_relativePath)));
        }
    m_askedCount += documents.size();
    m_worker.Do(
        [this, paths = std::move(paths), documents = std::move(documents)](const std::atomic<bool>& in_isEnding) {
            return [this, documents, answer = ReadGitStates(paths, in_isEnding)] { Take(answer, documents); };
        },
        [this](const QString& in_reason) {
            GitStates none;
            none.m_problem = in_reason;
            Take(none, {});
        },
        true);
}

void Versions::Take(const GitStates& in_answer, const std::vector<std::size_t>& in_documents)
{
    m_isAsking = false;
    if (!m_control)
        return;
    m_problem = in_answer.m_problem;
    m_states.clear();
    if (in_answer.m_isActive && !in_documents.empty())
        m_states.resize(in_documents.back() + 1, eGitState::eNone);
    for (std::size_t i = 0; i < in_documents.size() && in_answer.m_isActive; ++i)
        m_states[in_documents[i]] = in_answer.m_states[i];
    Watch(in_answer.m_watched);
    const QPointer<Versions> self(this);
    SetActive(in_answer.m_isActive);
    if (self && m_control)
        Tell();
    if (self && m_isAskedAgain)
        Ask();
    if (self)
        Q_EMIT StatesRead();
}

void Versions::SetActive(bool in_isActive)
{
    if (in_isActive == m_isActive)
        return;
    m_isActive = in_isActive;
    memorymodel::SourceControl& control = *m_control;
    if (in_isActive)
    {
        m_content->GetLibrary().SetVersioning(this);
        control.SetVersionControlActive(true);
        control.SetEnabled(true);
        return;
    }
    m_states.clear();
    m_histories.clear();
    Tell();
    m_content->GetLibrary().SetVersioning(nullptr);
    if (control.HasVersioning())
        return; // of another library
    control.SetEnabled(false);
    control.SetVersionControlActive(false);
}

void Versions::Watch(const QStringList& in_folders)
{
    // Without a repository: somebody may make one.
    QStringList wanted = in_folders;
    if (wanted.isEmpty())
        wanted.append(QFileInfo(m_content->GetDocuments().GetFolder()).absoluteFilePath());
    const QStringList before = m_watcher.directories();
    for (const QString& folder : before)
        if (!wanted.contains(folder))
            m_watcher.removePath(folder);
    for (const QString& folder : wanted)
        if (!before.contains(folder) && QFileInfo(folder).isDir())
            m_watcher.addPath(folder);
}

void Versions::Tell()
{
    const std::uint64_t revision = m_content->GetCatalogue().GetRevision();
    if (!m_content->IsInStep())
        return; // who reads the documents asks afterwards
    const bool isSame = m_isActive == m_wasActive && revision == m_toldRevision && m_states == m_toldStates;
    if (!std::exchange(m_isRequested, false) && isSame)
        return;
    m_wasActive = m_isActive;
    m_toldRevision = revision;
    m_toldStates = m_states;
    std::vector<memorymodel::ItemState> states;
    states.reserve(m_requested.size());
    for (const ItemID& item : m_requested)
        states.push_back({item, m_isActive ? AccessStateOf(StateOf(item)) : unsigned(0)});
    m_control->SetStates(states);
}

materialx::ItemDocuments::List Versions::DocumentsOf(const ItemID& in_item)
{
    const Catalogue& catalogue = m_content->GetCatalogue();
    const materialx::Item* const item = m_content->IsInStep() ? catalogue.Find(in_item) : nullptr;
    return item ? m_content->GetDocumentsOfItems()[catalogue.IndexOf(*item)]
                : materialx::ItemDocuments::List{nullptr, nullptr};
}

eGitState Versions::StateOfDocument(std::size_t in_document) const
{
    return in_document < m_states.size() ? m_states[in_document] : eGitState::eNone;
}

eGitState Versions::StateOf(const ItemID& in_item)
{
    eGitState state = eGitState::eNone;
    for (const std::size_t document : DocumentsOf(in_item))
        state = std::max(state, StateOfDocument(document));
    return state;
}

std::vector<DocumentVersion> Versions::GetDocuments(const ItemID& in_item)
{
    std::vector<DocumentVersion> versions;
    if (!m_content->IsOpen())
        return versions;
    for (const std::size_t i : DocumentsOf(in_item))
    {
        const materialx::LibraryDocument& document = m_content->GetMaterial().m_documents[i];
        versions.push_back(
            {document.m_relativePath, document.m_file, StateOfDocument(i), m_content->GetDocuments().GetProblem(i)});
    }
    std::sort(versions.begin(), versions.end(),
              [](const DocumentVersion& in_a, const DocumentVersion& in_b) { return in_a.m_path < in_b.m_path; });
    return versions;
}

const std::vector<GitCommit>* Versions::FindHistory(const QString& in_path)
{
    if (const auto found = m_histories.find(in_path); found != m_histories.end())
        return &found->second;
    if (!m_control || !m_isActive || !m_askedHistories.insert(in_path).second)
        return nullptr;
    const Documents& documents = m_content->GetDocuments();
    const QByteArray file =
        QFile::encodeName(documents.GetFolder() + QLatin1Char('/') + documents.GetPathInFolder(in_path));
    const auto take = [this, in_path, happenings = m_happenings](const std::vector<GitCommit>& in_commits) {
        m_askedHistories.erase(in_path);
        if (happenings == m_happenings)
            m_histories[in_path] = in_commits;
        Q_EMIT HistoryRead(in_path);
    };
    m_worker.Do(
        [take, file](const std::atomic<bool>& in_isEnding) {
            return [take, commits = ReadHistory(file, gCommits, in_isEnding)] { take(commits); };
        },
        [take](const QString&) { take({}); }, false);
    return nullptr;
}

void Versions::Finish()
{
    do
        m_worker.Finish();
    while (m_isAsking);
}

void Versions::RequestStates(const std::vector<ItemID>& in_items)
{
    m_requested.insert(in_items.begin(), in_items.end());
    m_isRequested = true;
    Ask();
}

QString Versions::GetToolTip(const ItemID& in_item)
{
    const materialx::Item* const item = m_content->GetCatalogue().Find(in_item);
    if (!item)
        return QString();
    QStringList lines = {QString::fromStdString(item->m_shownName), QLatin1String(WordsFor(StateOf(in_item)))};
    const std::vector<DocumentVersion> documents = GetDocuments(in_item);
    for (const DocumentVersion& document : documents)
    {
        lines.append(documents.size() == 1
                         ? document.m_path
                         : tr("%1: %2").arg(document.m_path, QLatin1String(WordsFor(document.m_state))));
        if (!document.m_problem.isEmpty())
            lines.append(document.m_problem);
        const std::vector<GitCommit>* const commits = FindHistory(document.m_path);
        if (commits && !commits->empty())
            lines.append(tr("%1, %2: %3")
                             .arg(QLocale().toString(commits->front().m_date.date(), QLocale::ShortFormat),
                                  commits->front().m_author, commits->front().m_subject));
    }
    return lines.join(QLatin1Char('\n'));
}

bool Versions::CheckOut(const ItemID& in_item, bool in_interactive)
{
    if (GetDocuments(in_item).empty())
        return false;
    ChangeFiles(in_item, CheckOutFiles, in_interactive);
    return true;
}

void Versions::MakeWritable(const ItemID& in_item, bool in_interactive)
{
    ChangeFiles(in_item, MakeFilesWritable, in_interactive);
}

void Versions::ChangeFiles(const ItemID& in_item, QString (*in_change)(const std::vector<QByteArray>&),
                           bool in_interactive)
{
    const Documents& documents = m_content->GetDocuments();
    std::vector<QByteArray> files;
    for (const DocumentVersion& document : GetDocuments(in_item))
        if (const QByteArray file = RealPath(QFile::encodeName(document.m_file));
            !file.isEmpty() && !documents.LeadsOutside(file))
            files.push_back(file);
    const auto finish = [this, in_interactive](const QString& in_problem) {
        if (!m_control)
            return;
        const QPointer<Versions> self(this);
        Q_EMIT PermissionsChanged();
        if (self && in_interactive && !in_problem.isEmpty())
            Q_EMIT Refused(in_problem);
    };
    m_worker.Do([finish, files, in_change](
                    const std::atomic<bool>&) { return [finish, problem = in_change(files)] { finish(problem); }; },
                finish, true);
}

} // namespace workspace
