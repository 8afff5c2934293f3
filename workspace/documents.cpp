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
#include <numeric>
#include <set>
#include <utility>

namespace workspace
{
namespace
{

using materialx::Error;

QByteArray PathOf(const materialx::LibraryDocument& in_document)
{
    return QFile::encodeName(in_document.m_file);
}

std::optional<Error> RecoverIn(const QString& in_folder)
{
    const QDir opened(in_folder);
    if (!opened.exists(QLatin1String(gJournalName)) && !opened.exists(QLatin1String(gNewJournalName)))
        return std::nullopt;
    const QByteArray folder = RealPath(QFile::encodeName(in_folder));
    const FolderLock lock(folder);
    const QString error = lock.GetError().isEmpty() ? Recover(folder) : lock.GetError();
    if (error.isEmpty())
        return std::nullopt;
    return Error{in_folder, 1, QStringLiteral("A save was interrupted here and cannot be completed: %1").arg(error)};
}

/// Completes or takes back what was interrupted in a folder and below it.
std::optional<Error> RecoverBelow(const QString& in_folder)
{
    if (std::optional<Error> error = RecoverIn(in_folder))
        return error;
    QDirIterator folders(in_folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (folders.hasNext())
        if (std::optional<Error> error = RecoverIn(folders.next()))
            return error;
    return std::nullopt;
}

} // namespace

QString Documents::GetFolder() const
{
    if (m_library.m_isFolder)
        return m_library.m_path;
    // Of a link the folder of what it leads to: that is where it is written.
    const QFileInfo file(m_library.m_path);
    const QString path = file.exists() ? file.canonicalFilePath() : file.absoluteFilePath();
    return QFileInfo(path).path();
}

std::optional<Error> Documents::Open(const QString& in_path)
{
    if (QFileInfo(in_path).isDir())
    {
        if (std::optional<Error> error = RecoverBelow(in_path))
            return error;
    }
    else if (QFileInfo::exists(in_path))
        if (std::optional<Error> error = RecoverIn(QFileInfo(QFileInfo(in_path).canonicalFilePath()).path()))
            return error;
    materialx::Library library;
    if (std::optional<Error> error = materialx::FindDocuments(in_path, library))
        return error;
    for (materialx::LibraryDocument& document : library.m_documents)
        if (std::optional<Error> error = materialx::ReadDocument(document))
            return error;
    m_library = std::move(library);
    m_records.clear();
    for (std::size_t i = 0; i < m_library.m_documents.size(); ++i)
        Of(i).m_hash = HashOf(m_library.m_documents[i].m_document.GetBytes());
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
    if (materialx::Apply(in_change, m_library))
        return false;
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

bool Documents::IsChanged(std::size_t in_document) const
{
    const Record& record = Of(in_document);
    return record.m_state != record.m_saved && HashOfBytes(in_document) != record.m_hash;
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

bool Documents::CanWrite(std::size_t in_document) const
{
    const materialx::LibraryDocument& document = m_library.m_documents[in_document];
    if (!document.m_document.CanBeEdited())
        return false;
    const QByteArray path = PathOf(document);
    const QByteArray real = RealPath(path);
    return real.isEmpty() ? MayReplace(path) : MayWrite(real) && MayReplace(real);
}

QString Documents::Read(std::size_t in_document)
{
    materialx::LibraryDocument& document = m_library.m_documents[in_document];
    QString error;
    std::optional<std::string> bytes = ReadBytes(PathOf(document), error);
    if (!error.isEmpty())
        return error;
    const QByteArray hash = bytes ? HashOf(*bytes) : QByteArray();
    materialx::Document read;
    std::size_t line = 1;
    if (bytes)
        if (const std::optional<materialx::Fault> fault = read.Read(std::move(*bytes), &line))
            return QStringLiteral("Line %1: %2").arg(line).arg(QString::fromStdString(fault->m_reason));
    document.m_document = std::move(read);
    Record& record = Of(in_document);
    record = Record();
    record.m_state = ++m_states;
    record.m_saved = record.m_state;
    record.m_hash = hash;
    return QString();
}

bool Documents::Refresh(std::size_t in_document)
{
    QString error;
    const std::optional<std::string> bytes = ReadBytes(PathOf(m_library.m_documents[in_document]), error);
    Record& record = Of(in_document);
    if (error.isEmpty())
    {
        const QByteArray hash = bytes ? HashOf(*bytes) : QByteArray();
        const std::string& ours = m_library.m_documents[in_document].m_document.GetBytes();
        if (hash == record.m_hash || (bytes ? *bytes == ours : ours.empty()))
        {
            // As it was, or as it is to be.
            if (hash != record.m_hash)
                record.m_saved = record.m_state;
            record.m_hash = hash;
            record.m_documentState = eDocumentState::eInStep;
            record.m_problem.clear();
            return false;
        }
    }
    if (IsChanged(in_document))
    {
        record.m_documentState = eDocumentState::eConflict;
        return false;
    }
    if (error.isEmpty())
        error = Read(in_document);
    if (error.isEmpty())
        return true;
    record.m_documentState = eDocumentState::eUnreadable;
    record.m_problem = error;
    return false;
}

QString Documents::TakeTheirs(std::size_t in_document)
{
    const QString error = Read(in_document);
    if (error.isEmpty())
        Forget({in_document});
    return error;
}

QString Documents::KeepOurs(std::size_t in_document)
{
    QString error;
    const std::optional<std::string> bytes = ReadBytes(PathOf(m_library.m_documents[in_document]), error);
    if (!error.isEmpty())
        return error;
    Record& record = Of(in_document);
    record.m_hash = bytes ? HashOf(*bytes) : QByteArray();
    record.m_saved = ~State(0); // a state that no document has
    record.m_documentState = eDocumentState::eInStep;
    record.m_problem.clear();
    return QString();
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

std::vector<QString> Documents::Save(const std::vector<std::size_t>& in_documents, bool& out_isWritten)
{
    out_isWritten = false;
    std::vector<QString> messages;
    std::vector<std::size_t> documents;
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
        file.m_hash = HashOfBytes(i);
        file.m_known = {record.m_hash};
        if (!record.m_tried.isEmpty())
            file.m_known.push_back(record.m_tried);
        file.m_group = group[i];
        documents.push_back(i);
        files.push_back(std::move(file));
    }
    if (files.empty())
        return messages;
    SaveFiles(GetFolder(), files, [&](std::size_t in_file, const std::string& in_bytes) {
        return FindDifference(m_library.m_documents[documents[in_file]].m_document, in_bytes);
    });
    std::vector<std::size_t> saved;
    for (std::size_t i = 0; i < files.size(); ++i)
    {
        Record& record = Of(documents[i]);
        const QByteArray& hash = files[i].m_hash;
        if (!files[i].m_problem.isEmpty())
        {
            record.m_tried = hash;
            messages.push_back(m_library.m_documents[documents[i]].m_relativePath + QStringLiteral(": ") +
                               files[i].m_problem);
            continue;
        }
        record.m_hash = hash;
        record.m_tried.clear();
        record.m_saved = record.m_state;
        record.m_documentState = eDocumentState::eInStep;
        record.m_problem.clear();
        saved.push_back(documents[i]);
    }
    Forget(saved);
    out_isWritten = !saved.empty();
    return messages;
}

} // namespace workspace
