// SPDX-License-Identifier: MIT
#include "workspace/documents.h"

#include "materialx/identity.h"
#include "workspace/files.h"
#include "workspace/journal.h"
#include "workspace/save.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <exception>
#include <new>
#include <numeric>
#include <set>
#include <utility>

namespace workspace
{
namespace
{

using materialx::Error;

QString WhyBusy()
{
    return QStringLiteral("The library is being saved or read");
}

QByteArray PathOf(const materialx::LibraryDocument& in_document)
{
    return QFile::encodeName(in_document.m_file);
}

std::optional<Error> RecoverIn(const QString& in_folder, QStringList& io_remarks)
{
    const QDir opened(in_folder);
    if (!opened.exists(QLatin1String(gJournalName)) && !opened.exists(QLatin1String(gNewJournalName)))
        return std::nullopt;
    const QByteArray folder = RealPath(QFile::encodeName(in_folder));
    const FolderLock lock(folder);
    if (!lock.GetError().isEmpty())
        return Error{in_folder, 1, lock.GetError()};
    const Recovery recovery = Recover(folder);
    io_remarks += recovery.m_remarks;
    if (!recovery.m_problem.isEmpty())
        io_remarks += recovery.m_problem;
    return std::nullopt;
}

/// A file without the links that lead to it.
QString RealFile(const QString& in_path)
{
    const QFileInfo file(in_path);
    return file.exists() ? file.canonicalFilePath() : file.absoluteFilePath();
}

/// Completes or takes back what was interrupted in a folder and below it.
std::optional<Error> RecoverBelow(const QString& in_folder, QStringList& io_remarks)
{
    if (std::optional<Error> error = RecoverIn(in_folder, io_remarks))
        return error;
    QDirIterator folders(in_folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (folders.hasNext())
        if (std::optional<Error> error = RecoverIn(folders.next(), io_remarks))
            return error;
    return std::nullopt;
}

} // namespace

QString Documents::GetFolder() const
{
    // Of a link the folder of what it leads to: that is where it is written.
    return m_library.m_isFolder ? m_library.m_path : QFileInfo(RealFile(m_library.m_path)).path();
}

QString Documents::GetPathInFolder(const QString& in_relativePath) const
{
    return m_library.m_isFolder ? in_relativePath : QFileInfo(RealFile(m_library.m_path)).fileName();
}

std::optional<Error> Documents::Open(const QString& in_path, Progress* io_progress)
{
    if (QFileInfo(in_path).isDir())
    {
        if (std::optional<Error> error = RecoverBelow(in_path, m_remarks))
            return error;
    }
    else if (QFileInfo::exists(in_path))
    {
        const QString folder = QFileInfo(QFileInfo(in_path).canonicalFilePath()).path();
        if (std::optional<Error> error = RecoverIn(folder, m_remarks))
            return error;
    }
    materialx::Library library;
    if (std::optional<Error> error = materialx::FindDocuments(in_path, library))
        return error;
    if (io_progress)
        io_progress->m_documents = static_cast<int>(library.m_documents.size());
    std::vector<Record> records(library.m_documents.size());
    for (std::size_t i = 0; i < library.m_documents.size(); ++i)
    {
        materialx::LibraryDocument& document = library.m_documents[i];
        records[i].m_stamp = StampOf(PathOf(document));
        if (std::optional<Error> error = materialx::ReadDocument(document))
            return error;
        records[i].m_size = document.m_document.GetBytes().size();
        records[i].m_hash = HashOf(document.m_document.GetBytes());
        if (!io_progress)
            continue;
        ++io_progress->m_read;
        if (io_progress->m_isCancelled)
            return Error{in_path, 1, QStringLiteral("Cancelled")};
    }
    m_library = std::move(library);
    m_records = std::move(records);
    if (m_library.m_isFolder)
        materialx::FindOrAddDocument(QStringLiteral("%1/%1.mtlx").arg(QLatin1String(gLocalFolder)), m_library);
    return std::nullopt;
}

Documents::Record& Documents::Of(std::size_t in_document) const
{
    if (in_document >= m_records.size())
        m_records.resize(m_library.m_documents.size());
    return m_records[in_document];
}

std::map<std::size_t, Documents::State> Documents::GetStates(const materialx::Change& in_change) const
{
    std::map<std::size_t, State> states;
    for (const materialx::DocumentEdit& edit : in_change)
        states[edit.m_document] = GetState(edit.m_document);
    return states;
}

bool Documents::Apply(const materialx::Change& in_change)
{
    std::map<std::size_t, State> states = GetStates(in_change);
    for (auto& [document, state] : states)
        state = ++m_states;
    return Apply(in_change, states);
}

bool Documents::Apply(const materialx::Change& in_change, const std::map<std::size_t, State>& in_states)
{
    std::vector<std::optional<materialx::Range>> touched;
    if (m_isBusy || materialx::Apply(in_change, m_library, &touched))
        return false;
    for (std::size_t edit = 0; edit < touched.size() && m_touched; ++edit)
        if (!touched[edit])
            m_touched.reset();
        else
            for (std::size_t i = touched[edit]->m_first; i < touched[edit]->m_last; ++i)
                m_touched->push_back({in_change[edit].m_document, i});
    std::vector<std::size_t> documents;
    for (const auto& [document, state] : in_states)
    {
        Of(document).m_state = state;
        documents.push_back(document);
    }
    if (documents.size() > 1 && std::find(m_ties.begin(), m_ties.end(), documents) == m_ties.end())
        m_ties.push_back(documents);
    return true;
}

std::optional<std::vector<materialx::DeclarationIndex>> Documents::TakeTouched()
{
    std::optional<std::vector<materialx::DeclarationIndex>> touched = std::move(m_touched);
    m_touched.emplace();
    return touched;
}

bool Documents::IsChanged(std::size_t in_document) const
{
    const Record& record = Of(in_document);
    return record.m_state != record.m_saved &&
           (m_library.m_documents[in_document].m_document.GetBytes().size() != record.m_size ||
            HashOfBytes(in_document) != record.m_hash);
}

const QByteArray& Documents::HashOfBytes(std::size_t in_document) const
{
    const std::string& bytes = m_library.m_documents[in_document].m_document.GetBytes();
    Record& record = Of(in_document);
    if (record.m_hashed != record.m_state || record.m_hashOfState.isEmpty())
        record.m_hashOfState = bytes.empty() ? QByteArray() : HashOf(bytes);
    record.m_hashed = record.m_state;
    return record.m_hashOfState;
}

bool Documents::CanSave() const
{
    return MayReplace(QFile::encodeName(GetFolder()) + '/' + gJournalName);
}

bool Documents::CanWrite(std::size_t in_document) const
{
    const materialx::LibraryDocument& document = m_library.m_documents[in_document];
    if (!document.m_document.CanBeEdited() || !CanSave())
        return false;
    const QByteArray path = PathOf(document);
    const QByteArray real = RealPath(path);
    return real.isEmpty() ? MayReplace(path) : MayWrite(real) && MayReplace(real);
}

/// A look at one file: what is known of it before, and what was found.
struct Documents::Look
{
    std::size_t m_document;
    bool m_isForced = false; ///< read also what is as it was

    bool m_isSame = false;      ///< as it was last seen
    bool m_isOurs = false;      ///< as the document is
    bool m_isThere = false;     ///< there is such a file
    FileStamp m_stamp;          ///< taken before it was read
    QByteArray m_hash;          ///< empty for no file
    materialx::Document m_read; ///< without bytes when there is a problem
    QString m_problem;          ///< why it cannot be read
};

void Documents::Read(Look& io_look) const
{
    const QString& file = m_library.m_documents[io_look.m_document].m_file;
    try
    {
        ReadFile(io_look);
    }
    catch (const std::bad_alloc&)
    {
        io_look.m_problem = QStringLiteral("%1:1: There is not enough memory for it").arg(file);
    }
    catch (const std::exception& thrown)
    {
        io_look.m_problem = QStringLiteral("%1:1: %2").arg(file, QString::fromLocal8Bit(thrown.what()));
    }
}

bool Documents::LeadsOutside(const QByteArray& in_path) const
{
    const QByteArray real = RealPath(in_path);
    return !real.isEmpty() && !IsInside(real, RealPath(QFile::encodeName(GetFolder())));
}

void Documents::ReadFile(Look& io_look) const
{
    const materialx::LibraryDocument& document = m_library.m_documents[io_look.m_document];
    const QByteArray path = PathOf(document);
    const Record& record = m_records[io_look.m_document];
    io_look.m_stamp = StampOf(path);
    // A link may have come meanwhile, on the way to the file, too.
    const bool isOutside = LeadsOutside(path);
    io_look.m_isSame =
        !isOutside && !io_look.m_isForced && io_look.m_stamp.m_size >= 0 && io_look.m_stamp == record.m_stamp;
    if (io_look.m_isSame)
        return;
    QString error;
    std::optional<std::string> bytes = isOutside ? std::nullopt : ReadBytes(path, error);
    if (!error.isEmpty())
    {
        io_look.m_problem = QStringLiteral("%1:1: %2").arg(document.m_file, error);
        return;
    }
    io_look.m_isThere = bytes.has_value();
    io_look.m_hash = bytes ? HashOf(*bytes) : QByteArray();
    io_look.m_isSame = !io_look.m_isForced && io_look.m_hash == record.m_hash;
    const std::string& ours = document.m_document.GetBytes();
    io_look.m_isOurs = bytes ? *bytes == ours : ours.empty();
    if (!bytes || io_look.m_isSame || (io_look.m_isOurs && !io_look.m_isForced))
        return;
    std::size_t line = 1;
    if (const std::optional<materialx::Fault> fault = io_look.m_read.Read(std::move(*bytes), &line))
        io_look.m_problem =
            QStringLiteral("%1:%2: %3").arg(document.m_file).arg(line).arg(QString::fromStdString(fault->m_reason));
}

void Documents::Take(Look& io_look)
{
    materialx::LibraryDocument& document = m_library.m_documents[io_look.m_document];
    document.m_document = std::move(io_look.m_read);
    Record& record = Of(io_look.m_document);
    record = Record();
    record.m_state = ++m_states;
    record.m_saved = record.m_state;
    MarkInStep(record, io_look.m_hash, document.m_document.GetBytes().size(), io_look.m_stamp);
    m_touched.reset();
}

void Documents::MarkInStep(Record& io_record, const QByteArray& in_hash, std::size_t in_size, const FileStamp& in_stamp)
{
    io_record.m_hash = in_hash;
    io_record.m_size = in_size;
    io_record.m_stamp = in_stamp;
    io_record.m_documentState = eDocumentState::eInStep;
    io_record.m_problem.clear();
}

void Documents::RunBusy(const Runner& in_run, const std::function<void()>& in_function)
{
    if (!m_library.m_documents.empty())
        Of(m_library.m_documents.size() - 1); // so that nothing grows while another thread reads
    struct Busy
    {
        explicit Busy(bool& io_isBusy) : m_isBusy(io_isBusy) { m_isBusy = true; }
        ~Busy() { m_isBusy = false; }
        bool& m_isBusy;
    };
    const Busy busy(m_isBusy);
    in_run(in_function);
}

void Documents::FindNew(const Runner& in_run)
{
    materialx::Library found;
    RunBusy(in_run, [&] { materialx::FindDocuments(m_library.m_path, found); });
    AddMissing(found, m_library);
}

bool Documents::Refresh(const std::vector<std::size_t>& in_documents, const Runner& in_run)
{
    std::vector<Look> looks(in_documents.size());
    for (std::size_t i = 0; i < looks.size(); ++i)
        looks[i].m_document = in_documents[i];
    RunBusy(in_run, [&] {
        for (Look& look : looks)
            Read(look);
    });
    bool isReplaced = false;
    for (Look& look : looks)
    {
        Record& record = Of(look.m_document);
        const std::size_t size = m_library.m_documents[look.m_document].m_document.GetBytes().size();
        if (look.m_problem.isEmpty() && look.m_isSame)
        {
            // A document that was in conflict is none any more: the file is as it was again.
            MarkInStep(record, record.m_hash, record.m_size, look.m_stamp);
        }
        else if (look.m_problem.isEmpty() && look.m_isOurs)
        {
            record.m_saved = record.m_state;
            MarkInStep(record, look.m_hash, size, look.m_stamp);
        }
        else if (IsChanged(look.m_document))
            record.m_documentState = eDocumentState::eConflict;
        else if (look.m_problem.isEmpty())
        {
            Take(look);
            isReplaced = true;
        }
        else
        {
            record.m_documentState = eDocumentState::eUnreadable;
            record.m_problem = look.m_problem;
        }
    }
    return isReplaced;
}

std::vector<std::size_t> Documents::WithTiedEdits(std::size_t in_document) const
{
    std::vector<std::size_t> documents = WithTies({in_document});
    documents.erase(std::remove_if(documents.begin(), documents.end(),
                                   [&](std::size_t in_tied) { return in_tied != in_document && !IsChanged(in_tied); }),
                    documents.end());
    return documents;
}

QString Documents::ReadTheirs(std::size_t in_document, std::vector<Look>& out_looks) const
{
    if (m_isBusy)
        return WhyBusy();
    for (const std::size_t document : WithTiedEdits(in_document))
    {
        Of(document);
        out_looks.emplace_back();
        Look& look = out_looks.back();
        look.m_document = document;
        look.m_isForced = true;
        Read(look);
        if (!look.m_problem.isEmpty())
            return look.m_problem;
    }
    return QString();
}

void Documents::TakeAll(std::vector<Look>& io_looks)
{
    std::vector<std::size_t> taken;
    for (Look& look : io_looks)
    {
        Take(look);
        taken.push_back(look.m_document);
    }
    Forget(taken);
}

QString Documents::TakeTheirs(std::size_t in_document)
{
    std::vector<Look> theirs;
    const QString error = ReadTheirs(in_document, theirs);
    if (error.isEmpty())
        TakeAll(theirs);
    return error;
}

QString Documents::KeepOurs(std::size_t in_document)
{
    if (m_isBusy)
        return WhyBusy();
    struct Theirs
    {
        std::size_t m_document;
        FileStamp m_stamp;
        std::optional<std::string> m_bytes;
    };
    std::vector<Theirs> all;
    for (const std::size_t document : WithTiedEdits(in_document))
    {
        if (document != in_document && GetDocumentState(document) != eDocumentState::eConflict)
            continue;
        const QByteArray path = PathOf(m_library.m_documents[document]);
        QString error;
        const FileStamp stamp = StampOf(path);
        all.push_back({document, stamp, ReadBytes(path, error)});
        if (!error.isEmpty())
            return m_library.m_documents[document].m_file + QStringLiteral(": ") + error;
    }
    for (const Theirs& theirs : all)
    {
        const std::optional<std::string>& bytes = theirs.m_bytes;
        Record& record = Of(theirs.m_document);
        record.m_saved = ~State(0); // a state that no document has
        MarkInStep(record, bytes ? HashOf(*bytes) : QByteArray(), bytes ? bytes->size() : 0, theirs.m_stamp);
    }
    return QString();
}

QString Documents::SaveOursBeside(std::size_t in_document, QStringList& out_files)
{
    out_files.clear();
    std::vector<Look> theirs;
    QString error = ReadTheirs(in_document, theirs);
    std::set<QByteArray> folders;
    for (std::size_t i = 0; i < theirs.size() && error.isEmpty(); ++i)
    {
        const materialx::LibraryDocument& ours = m_library.m_documents[theirs[i].m_document];
        if (ours.m_document.IsEmpty())
            continue;
        QString file = ours.m_file + QStringLiteral(".ours");
        for (int number = 2; QFileInfo::exists(file) || QFileInfo(file).isSymLink(); ++number)
            file = ours.m_file + QStringLiteral(".ours%1").arg(number);
        const QByteArray path = QFile::encodeName(file);
        error = WriteNewFile(path, ours.m_document.GetBytes(), PathOf(ours));
        if (error.isEmpty())
            out_files.append(file);
        else
            error.prepend(file + QStringLiteral(": "));
        folders.insert(FolderOf(RealPath(path)));
    }
    for (const QByteArray& folder : folders)
        if (error.isEmpty())
            error = SyncFolder(folder);
    if (error.isEmpty())
    {
        TakeAll(theirs);
        return error;
    }
    for (const QString& file : out_files)
        QFile::remove(file);
    out_files.clear();
    return error;
}

std::vector<std::size_t> Documents::WithTies(std::vector<std::size_t> in_documents) const
{
    std::set<std::size_t> all(in_documents.begin(), in_documents.end());
    for (bool isGrowing = true; isGrowing;)
    {
        isGrowing = false;
        for (const std::vector<std::size_t>& tie : m_ties)
            if (std::any_of(tie.begin(), tie.end(), [&all](std::size_t in_one) { return all.count(in_one) != 0; }))
                for (const std::size_t document : tie)
                    isGrowing = all.insert(document).second || isGrowing;
    }
    in_documents.assign(all.begin(), all.end());
    return in_documents;
}

/// Unties documents that are on the disk as they are here.
void Documents::Forget(const std::vector<std::size_t>& in_documents)
{
    const std::set<std::size_t> gone(in_documents.begin(), in_documents.end());
    for (std::vector<std::size_t>& tie : m_ties)
        tie.erase(std::remove_if(tie.begin(), tie.end(),
                                 [&gone](std::size_t in_document) { return gone.count(in_document) != 0; }),
                  tie.end());
    m_ties.remove_if([](const std::vector<std::size_t>& in_tie) { return in_tie.size() < 2; });
}

std::vector<QString> Documents::Save(const std::vector<std::size_t>& in_documents, const Runner& in_run,
                                     std::vector<std::size_t>& out_saved)
{
    out_saved.clear();
    std::vector<std::size_t> group(m_library.m_documents.size());
    std::iota(group.begin(), group.end(), std::size_t(0));
    for (const std::vector<std::size_t>& tie : m_ties)
        for (const std::size_t document : tie)
            std::replace(group.begin(), group.end(), std::size_t(group[document]), std::size_t(group[tie.front()]));
    std::vector<FileSave> files;
    for (const std::size_t i : in_documents)
    {
        const Record& record = Of(i);
        FileSave file;
        file.m_path = QFileInfo(m_library.m_documents[i].m_file).absoluteFilePath();
        file.m_bytes = m_library.m_documents[i].m_document.GetBytes();
        file.m_known = {record.m_hash};
        file.m_known.insert(file.m_known.end(), record.m_tried.begin(), record.m_tried.end());
        file.m_group = group[i];
        files.push_back(std::move(file));
    }
    std::vector<QString> messages;
    if (files.empty())
        return messages;
    QStringList remarks;
    RunBusy(in_run, [&] {
        for (std::size_t i = 0; i < files.size(); ++i)
            files[i].m_hash = files[i].m_bytes.empty() ? QByteArray() : HashOf(files[i].m_bytes);
        remarks = SaveFiles(GetFolder(), files, [&](std::size_t in_file) {
            const materialx::Document& document = m_library.m_documents[in_documents[in_file]].m_document;
            return FindDifference(document, document.GetBytes());
        });
    });
    m_remarks += remarks;
    for (std::size_t i = 0; i < files.size(); ++i)
    {
        Record& record = Of(in_documents[i]);
        if (!files[i].m_problem.isEmpty())
        {
            if (files[i].m_isUnderWay)
                record.m_tried.push_back(files[i].m_hash);
            messages.push_back(m_library.m_documents[in_documents[i]].m_relativePath + QStringLiteral(": ") +
                               files[i].m_problem);
            continue;
        }
        record.m_tried.clear();
        record.m_saved = record.m_state;
        MarkInStep(record, files[i].m_hash, files[i].m_bytes.size(), FileStamp());
        out_saved.push_back(in_documents[i]);
    }
    Forget(out_saved);
    return messages;
}

} // namespace workspace
