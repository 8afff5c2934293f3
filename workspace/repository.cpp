// SPDX-License-Identifier: MIT
#include "workspace/repository.h"

#include "workspace/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimeZone>

#include <git2.h>
#include <git2/sys/diff.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <queue>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>

namespace workspace
{
namespace
{

/// What the library of git hands out, and takes back.
template <class Object, void (*Free)(Object*)> struct Freeing
{
    void operator()(Object* in_object) const { Free(in_object); }
};
template <class Object, void (*Free)(Object*)> using Owned = std::unique_ptr<Object, Freeing<Object, Free>>;

using Repository = Owned<git_repository, git_repository_free>;
using StatusList = Owned<git_status_list, git_status_list_free>;
using Index = Owned<git_index, git_index_free>;
using Commit = Owned<git_commit, git_commit_free>;
using Tree = Owned<git_tree, git_tree_free>;
using TreeEntry = Owned<git_tree_entry, git_tree_entry_free>;
using Reference = Owned<git_reference, git_reference_free>;

QString LastError()
{
    const git_error* const error = git_error_last();
    return error ? QString::fromUtf8(error->message) : QStringLiteral("git gave no reason");
}

QString NativePath(const QByteArray& in_path)
{
    return QFile::decodeName(in_path);
}

/// Whether there is a repository, whoever owns it.
bool HasRepository(const QByteArray& in_folder)
{
    git_buf path = {};
    const bool isThere = git_repository_discover(&path, in_folder.constData(), 0, nullptr) == 0;
    git_buf_dispose(&path);
    return isThere;
}

/// Opens the repository that a folder is in.
/// \param out_problem why it cannot be used; empty when there is none
Repository OpenRepository(const QByteArray& in_folder, QString& out_problem)
{
    git_repository* opened = nullptr;
    const int result = git_repository_open_ext(&opened, in_folder.constData(), 0, nullptr);
    Repository repository(opened);
    // Version 1.5 says "not found" where it means the owner, when no folder is trusted.
    if (result == GIT_EOWNER || (result == GIT_ENOTFOUND && HasRepository(in_folder)))
        out_problem = QStringLiteral("%1 is in a repository of another user. \"git config --global --add "
                                     "safe.directory FOLDER\" says that you trust it")
                          .arg(NativePath(in_folder));
    else if (result != 0 && result != GIT_ENOTFOUND)
        out_problem = LastError();
    else if (repository && git_repository_is_bare(repository.get()))
    {
        out_problem = QStringLiteral("%1 is in a bare repository, which has no files").arg(NativePath(in_folder));
        repository.reset();
    }
    return repository;
}

/// The files of one repository, by their paths from its folder, which ends with "/".
struct Group
{
    Repository m_repository;
    QByteArray m_workFolder;
    std::vector<std::size_t> m_documents;
    std::vector<std::string> m_paths;
};

/// Finds the repository of each folder below one, and asks the disk once a folder.
class Repositories
{
public:
    explicit Repositories(const QByteArray& in_folder) { m_groupOfFolder[in_folder] = Open(in_folder); }

    const QString& GetProblem() const { return m_problem; }
    std::vector<Group>& GetGroups() { return m_groups; }

    /// The group that a folder's files belong to; -1 for none.
    int Find(const QByteArray& in_folder)
    {
        const auto found = m_groupOfFolder.find(in_folder);
        if (found != m_groupOfFolder.end())
            return found->second;
        // Also a file: submodules and work trees have one that names the place.
        const bool isOwn = access((in_folder + "/.git").constData(), F_OK) == 0;
        const int group = isOwn ? Open(in_folder) : Find(FolderOf(in_folder));
        m_groupOfFolder[in_folder] = group;
        return group;
    }

private:
    int Open(const QByteArray& in_folder)
    {
        Group group;
        group.m_repository = OpenRepository(in_folder, m_problem);
        if (!group.m_repository)
            return -1;
        group.m_workFolder = git_repository_workdir(group.m_repository.get());
        m_groups.push_back(std::move(group));
        return static_cast<int>(m_groups.size()) - 1;
    }

    QString m_problem;
    std::vector<Group> m_groups;
    std::map<QByteArray, int> m_groupOfFolder;
};

enum class ePermission
{
    eNoFile,
    eReadOnly,
    eWritable,
};

/// One call of the system a file: there may be many. The administrator may write everything, so for him the permissions
/// are read.
ePermission PermissionOf(const QByteArray& in_path, bool in_isAdministrator)
{
    if (in_isAdministrator)
    {
        struct stat status = {};
        if (stat(in_path.constData(), &status) != 0)
            return ePermission::eNoFile;
        return (status.st_mode & 0222U) != 0 ? ePermission::eWritable : ePermission::eReadOnly;
    }
    if (access(in_path.constData(), W_OK) == 0)
        return ePermission::eWritable;
    return errno == ENOENT || errno == ENOTDIR ? ePermission::eNoFile : ePermission::eReadOnly;
}

/// The flags of those files of a group that are not as in the last commit.
/// \param io_lookedAt see GitStates
/// \return false when git cannot tell
bool ReadFlags(Group& io_group, std::unordered_map<std::string, unsigned>& out_flags, std::size_t& io_lookedAt)
{
    git_status_options options = GIT_STATUS_OPTIONS_INIT;
    options.flags = GIT_STATUS_OPT_INCLUDE_UNTRACKED | GIT_STATUS_OPT_RECURSE_UNTRACKED_DIRS |
                    GIT_STATUS_OPT_INCLUDE_IGNORED | GIT_STATUS_OPT_RECURSE_IGNORED_DIRS |
                    GIT_STATUS_OPT_DISABLE_PATHSPEC_MATCH | GIT_STATUS_OPT_EXCLUDE_SUBMODULES;
    std::vector<char*> paths;
    for (std::string& path : io_group.m_paths)
        paths.push_back(&path[0]);
    options.pathspec.strings = paths.data();
    options.pathspec.count = paths.size();
    git_status_list* made = nullptr;
    if (git_status_list_new(&made, io_group.m_repository.get(), &options) != 0)
        return false;
    const StatusList list(made);
    git_diff_perfdata performance = GIT_DIFF_PERFDATA_INIT;
    if (git_status_list_get_perfdata(&performance, made) == 0)
        io_lookedAt += performance.stat_calls;
    for (std::size_t i = 0; i < git_status_list_entrycount(made); ++i)
    {
        const git_status_entry* const entry = git_status_byindex(made, i);
        const git_diff_delta* const delta = entry->index_to_workdir ? entry->index_to_workdir : entry->head_to_index;
        if (delta)
            out_flags[delta->old_file.path ? delta->old_file.path : delta->new_file.path] |= entry->status;
    }
    return true;
}

/// What changes when a commit, a checkout or a stash is made: the index, the head and the branches. All are replaced
/// by renaming, so their folders are watched, and not the files themselves.
void AppendWatched(git_repository* in_repository, QStringList& io_folders)
{
    const QString own = NativePath(git_repository_path(in_repository));
    const QString common = NativePath(git_repository_commondir(in_repository));
    QStringList folders = {own, common, common + QStringLiteral("refs"), common + QStringLiteral("refs/heads")};
    git_reference* head = nullptr;
    if (git_reference_lookup(&head, in_repository, "HEAD") == 0)
    {
        const Reference owned(head);
        if (const char* const branch = git_reference_symbolic_target(head))
            folders.append(QFileInfo(common + QString::fromUtf8(branch)).path());
    }
    for (const QString& folder : folders)
    {
        const QString clean = QDir::cleanPath(folder);
        if (QFileInfo(clean).isDir() && !io_folders.contains(clean))
            io_folders.append(clean);
    }
}

/// The object that a tree has at a path; nothing but zeros for none.
git_oid ObjectAt(git_tree* in_tree, const char* in_path)
{
    git_oid object = {};
    git_tree_entry* found = nullptr;
    if (in_tree && git_tree_entry_bypath(&found, in_tree, in_path) == 0)
    {
        const TreeEntry owned(found);
        object = *git_tree_entry_id(found);
    }
    return object;
}

git_oid ObjectIn(const git_commit* in_commit, const char* in_path)
{
    git_tree* tree = nullptr;
    if (git_commit_tree(&tree, in_commit) != 0)
        return git_oid();
    const Tree owned(tree);
    return ObjectAt(tree, in_path);
}

bool IsSame(const git_oid& in_a, const git_oid& in_b)
{
    return git_oid_cmp(&in_a, &in_b) == 0;
}

struct IsLess
{
    bool operator()(const git_oid& in_a, const git_oid& in_b) const { return git_oid_cmp(&in_a, &in_b) < 0; }
};

GitCommit Describe(const git_commit* in_commit)
{
    const git_signature* const author = git_commit_author(in_commit);
    const int minute = 60;
    GitCommit commit;
    commit.m_author = QString::fromUtf8(author->name);
    commit.m_date = QDateTime::fromSecsSinceEpoch(author->when.time, QTimeZone(author->when.offset * minute));
    commit.m_subject = QString::fromUtf8(git_commit_summary(const_cast<git_commit*>(in_commit)));
    return commit;
}

/// Goes from the head to older commits, the newest first, and into those parents only that a document came from.
class HistoryWalk
{
public:
    HistoryWalk(git_repository* in_repository, std::string in_path)
        : m_repository(in_repository), m_path(std::move(in_path))
    {
    }

    /// Adds a commit to those that are looked at, once.
    void Add(const git_oid& in_id)
    {
        git_commit* commit = nullptr;
        if (m_seen.insert(in_id).second && git_commit_lookup(&commit, m_repository, &in_id) == 0)
            m_next.push({git_commit_time(commit), std::shared_ptr<git_commit>(commit, git_commit_free)});
    }

    bool IsAtEnd() const { return m_next.empty(); }

    /// Looks at the next commit.
    /// \return it, if it changed the document; else null
    std::shared_ptr<git_commit> Step()
    {
        const std::shared_ptr<git_commit> commit = m_next.top().second;
        m_next.pop();
        const git_oid here = ObjectIn(commit.get(), m_path.c_str());
        const unsigned parents = git_commit_parentcount(commit.get());
        for (unsigned i = 0; i < parents; ++i)
        {
            git_commit* found = nullptr;
            if (git_commit_parent(&found, commit.get(), i) != 0)
                continue; // a shallow clone ends here
            const Commit parent(found);
            if (IsSame(ObjectIn(parent.get(), m_path.c_str()), here))
            {
                Add(*git_commit_id(parent.get()));
                return nullptr;
            }
        }
        for (unsigned i = 0; i < parents; ++i)
            Add(*git_commit_parent_id(commit.get(), i));
        return parents != 0 || !IsSame(here, git_oid()) ? commit : nullptr;
    }

private:
    using Entry = std::pair<git_time_t, std::shared_ptr<git_commit>>;
    struct IsOlder
    {
        bool operator()(const Entry& in_a, const Entry& in_b) const { return in_a.first < in_b.first; }
    };

    git_repository* const m_repository;
    const std::string m_path;
    std::priority_queue<Entry, std::vector<Entry>, IsOlder> m_next;
    std::set<git_oid, IsLess> m_seen;
};

/// A file of a repository by its path from the repository's folder.
struct FileInRepository
{
    Repository m_repository;
    std::string m_path; ///< empty when it is in none
    QString m_problem;
};

FileInRepository FindFile(const QByteArray& in_file)
{
    FileInRepository found;
    const QByteArray folder = RealPath(FolderOf(in_file));
    if (folder.isEmpty())
        return found;
    found.m_repository = OpenRepository(folder, found.m_problem);
    if (!found.m_repository)
        return found;
    const QByteArray file = folder + in_file.mid(in_file.lastIndexOf('/'));
    const QByteArray workFolder = git_repository_workdir(found.m_repository.get());
    if (file.startsWith(workFolder))
        found.m_path = file.mid(workFolder.size()).toStdString();
    return found;
}

/// Why a file is not as its repository's index has it; empty when it is.
QString CompareWithIndex(const QByteArray& in_file)
{
    const QString name = NativePath(in_file);
    const FileInRepository file = FindFile(in_file);
    if (!file.m_problem.isEmpty())
        return file.m_problem;
    git_index* opened = nullptr;
    if (file.m_path.empty() || git_repository_index(&opened, file.m_repository.get()) != 0)
        return QStringLiteral("%1 is not under version control").arg(name);
    const Index index(opened);
    const git_index_entry* const entry = git_index_get_bypath(opened, file.m_path.c_str(), 0);
    const git_index_entry* side = nullptr;
    if (!entry && git_index_conflict_get(&side, &side, &side, opened, file.m_path.c_str()) == 0)
        return QStringLiteral("%1 has a merge conflict").arg(name);
    if (!entry)
        return QStringLiteral("%1 is not under version control").arg(name);
    // As git would store it: with the line ends that its rules ask for.
    git_oid content = {};
    if (git_repository_hashfile(&content, file.m_repository.get(), file.m_path.c_str(), GIT_OBJECT_BLOB,
                                file.m_path.c_str()) != 0)
        return QStringLiteral("%1 cannot be read: %2").arg(name, LastError());
    if (!IsSame(content, entry->id))
        return QStringLiteral("%1 is not as git has it").arg(name);
    return QString();
}

/// Lets the owner of a file write it, or not.
/// \return why they could not be changed; empty on success
QString SetWritable(const QByteArray& in_file, bool in_isWritable)
{
    struct stat status = {};
    const mode_t all = 07777;
    if (stat(in_file.constData(), &status) == 0)
    {
        const mode_t others = status.st_mode & all & ~mode_t(S_IWUSR);
        if (chmod(in_file.constData(), others | (in_isWritable ? S_IWUSR : 0U)) == 0)
            return QString();
    }
    return QStringLiteral("%1 cannot be made writable: %2").arg(NativePath(in_file), SystemError());
}

std::vector<QByteArray> ReadOnlyOf(const std::vector<QByteArray>& in_files)
{
    std::vector<QByteArray> readOnly;
    for (const QByteArray& file : in_files)
        if (!MayWrite(file))
            readOnly.push_back(file);
    return readOnly;
}

} // namespace

GitLibrary::GitLibrary()
{
    git_libgit2_init();
}

GitLibrary::~GitLibrary()
{
    git_libgit2_shutdown();
}

GitStates ReadGitStates(const DocumentPaths& in_paths, const std::atomic<bool>& in_isEnding)
{
    GitStates answer;
    answer.m_states.resize(in_paths.m_documents.size(), eGitState::eNone);
    const QByteArray folder = RealPath(in_paths.m_folder);
    if (folder.isEmpty())
    {
        answer.m_problem = QStringLiteral("%1 is gone").arg(NativePath(in_paths.m_folder));
        return answer;
    }
    Repositories repositories(folder);
    for (std::size_t i = 0; i < in_paths.m_documents.size() && !in_isEnding; ++i)
    {
        const QByteArray file = folder + '/' + in_paths.m_documents[i];
        const int found = repositories.Find(FolderOf(file));
        if (found < 0)
            continue;
        Group& group = repositories.GetGroups()[static_cast<std::size_t>(found)];
        if (!file.startsWith(group.m_workFolder))
            continue;
        group.m_documents.push_back(i);
        group.m_paths.push_back(file.mid(group.m_workFolder.size()).toStdString());
    }
    answer.m_problem = repositories.GetProblem();
    const bool isAdministrator = geteuid() == 0;
    for (Group& group : repositories.GetGroups())
    {
        if (in_isEnding)
            break;
        std::unordered_map<std::string, unsigned> flags;
        AppendWatched(group.m_repository.get(), answer.m_watched);
        if (group.m_paths.empty() || !ReadFlags(group, flags, answer.m_lookedAt))
        {
            if (!group.m_paths.empty())
                answer.m_problem = LastError();
            continue;
        }
        answer.m_isActive = true;
        for (std::size_t i = 0; i < group.m_documents.size(); ++i)
        {
            const auto found = flags.find(group.m_paths[i]);
            const unsigned flagsOfFile = found == flags.end() ? unsigned(GIT_STATUS_CURRENT) : found->second;
            const QByteArray file = folder + '/' + in_paths.m_documents[group.m_documents[i]];
            const ePermission permission = PermissionOf(file, isAdministrator);
            if (permission != ePermission::eNoFile || flagsOfFile != GIT_STATUS_CURRENT)
                answer.m_states[group.m_documents[i]] = GitStateOf(flagsOfFile, permission == ePermission::eWritable);
        }
    }
    return answer;
}

std::vector<GitCommit> ReadHistory(const QByteArray& in_file, std::size_t in_count,
                                   const std::atomic<bool>& in_isEnding)
{
    std::vector<GitCommit> commits;
    const FileInRepository file = FindFile(in_file);
    git_oid head = {};
    if (file.m_path.empty() || git_reference_name_to_id(&head, file.m_repository.get(), "HEAD") != 0)
        return commits;
    HistoryWalk walk(file.m_repository.get(), file.m_path);
    walk.Add(head);
    while (!walk.IsAtEnd() && commits.size() < in_count && !in_isEnding)
        if (const std::shared_ptr<git_commit> commit = walk.Step())
            commits.push_back(Describe(commit.get()));
    return commits;
}

QString CheckOutFiles(const std::vector<QByteArray>& in_files)
{
    const std::vector<QByteArray> files = ReadOnlyOf(in_files);
    for (const QByteArray& file : files)
        if (const QString difference = CompareWithIndex(file); !difference.isEmpty())
            return difference;
    for (std::size_t done = 0; done < files.size(); ++done)
        if (const QString problem = SetWritable(files[done], true); !problem.isEmpty())
        {
            while (done > 0)
                SetWritable(files[--done], false);
            return problem;
        }
    return QString();
}

QString MakeFilesWritable(const std::vector<QByteArray>& in_files)
{
    QStringList problems;
    for (const QByteArray& file : ReadOnlyOf(in_files))
        if (const QString problem = SetWritable(file, true); !problem.isEmpty())
            problems.append(problem);
    return problems.join(QLatin1Char('\n'));
}

} // namespace workspace
