// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include "materialx/encoding.h"
#include "materialx/moving.h"
#include "memorymodel/datalayer.h"
#include "workspace/content.h"
#include "workspace/files.h"
#include "workspace/steps.h"
#include "workspace/versions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <set>
#include <utility>

namespace workspace
{
namespace
{

std::string Narrow(const QString& in_text)
{
    return materialx::NarrowToLatin1(in_text.toStdString());
}

/// The last part of a path, also of "." and "..".
QString NameOf(const QString& in_path)
{
    return QFileInfo(QDir::cleanPath(QFileInfo(in_path).absoluteFilePath())).fileName();
}

} // namespace

std::shared_ptr<Workspace> Workspace::Open(memorymodel::DataLayer& io_layer, const QString& in_path, QString* out_error)
{
    Documents documents;
    if (const std::optional<materialx::Error> error = documents.Open(in_path))
    {
        *out_error = error->GetText();
        return nullptr;
    }
    memorymodel::Library& library = io_layer.AddLibrary(Narrow(NameOf(in_path)));
    const auto content = std::make_shared<Content>(std::move(documents), library);
    content->Fill();
    const std::shared_ptr<Workspace> workspace(new Workspace(content, io_layer.GetSourceControl()));
    library.SetStore(workspace);
    workspace->m_versions->Ask();
    return workspace;
}

Workspace::Workspace(std::shared_ptr<Content> in_content, memorymodel::SourceControl& in_control)
    : m_content(in_content), m_versions(new Versions(std::move(in_content), in_control))
{
}

Workspace::~Workspace() = default;

memorymodel::Library& Workspace::GetLibrary() const
{
    return m_content->GetLibrary();
}

std::optional<std::size_t> Workspace::Find(const QString& in_document) const
{
    const std::vector<materialx::LibraryDocument>& documents = m_content->GetMaterial().m_documents;
    for (std::size_t i = 0; i < documents.size(); ++i)
        if (documents[i].m_relativePath == in_document)
            return i;
    return std::nullopt;
}

QStringList Workspace::GetChangedDocuments() const
{
    QStringList paths;
    for (const std::size_t i : InPathOrder(m_content->GetMaterial()))
        if (m_content->GetDocuments().IsChanged(i))
            paths.append(m_content->GetMaterial().m_documents[i].m_relativePath);
    return paths;
}

void Workspace::TakeNews()
{
    m_content->Update(memorymodel::eFollowing::eNews);
    m_content->Settle();
}

void Workspace::Refresh()
{
    if (!m_content->IsOpen())
        return;
    materialx::Library found;
    if (!materialx::FindDocuments(m_content->GetMaterial().m_path, found))
        for (const materialx::LibraryDocument& document : found.m_documents)
            FindOrAddDocument(document.m_relativePath, m_content->GetDocuments().GetLibrary());
    bool isNews = false;
    for (std::size_t i = 0; i < m_content->GetMaterial().m_documents.size(); ++i)
        isNews = m_content->GetDocuments().Refresh(i) || isNews;
    if (isNews)
        TakeNews();
    m_versions->Ask();
}

void Workspace::Refresh(const QString& in_document)
{
    if (!m_content->IsOpen())
        return;
    const QString& folder = m_content->GetMaterial().m_path;
    if (!Find(in_document) && !QFileInfo::exists(folder + QLatin1Char('/') + in_document))
        return;
    const std::size_t document = FindOrAddDocument(in_document, m_content->GetDocuments().GetLibrary());
    if (m_content->GetDocuments().Refresh(document))
        TakeNews();
    m_versions->Ask();
}

eDocumentState Workspace::GetDocumentState(const QString& in_document) const
{
    const std::optional<std::size_t> document = Find(in_document);
    return document ? m_content->GetDocuments().GetDocumentState(*document) : eDocumentState::eInStep;
}

QString Workspace::GetProblem(const QString& in_document) const
{
    const std::optional<std::size_t> document = Find(in_document);
    return document ? m_content->GetDocuments().GetProblem(*document) : QString();
}

QString Workspace::TakeTheirs(const QString& in_document)
{
    const std::optional<std::size_t> document = Find(in_document);
    if (!document || !m_content->IsOpen())
        return QStringLiteral("There is no such document");
    const QString error = m_content->GetDocuments().TakeTheirs(*document);
    if (error.isEmpty())
        TakeNews();
    return error;
}

QString Workspace::KeepOurs(const QString& in_document)
{
    const std::optional<std::size_t> document = Find(in_document);
    return document ? m_content->GetDocuments().KeepOurs(*document) : QStringLiteral("There is no such document");
}

QString Workspace::SaveOursBeside(const QString& in_document, QString* out_file)
{
    const std::optional<std::size_t> document = Find(in_document);
    if (!document)
        return QStringLiteral("There is no such document");
    const materialx::LibraryDocument& ours = m_content->GetMaterial().m_documents[*document];
    *out_file = ours.m_file + QStringLiteral(".ours");
    for (int number = 2; QFileInfo::exists(*out_file); ++number)
        *out_file = ours.m_file + QStringLiteral(".ours%1").arg(number);
    const QByteArray path = QFile::encodeName(*out_file);
    const QString error = WriteNewFile(path, ours.m_document.GetBytes(), QFile::encodeName(ours.m_file));
    if (!error.isEmpty())
    {
        QFile::remove(*out_file);
        return error;
    }
    SyncFolder(FolderOf(RealPath(path)));
    return TakeTheirs(in_document);
}

std::unique_ptr<memorymodel::Step> Workspace::Rename(const ItemID& in_item, const std::string& in_name)
{
    return MakeRename(m_content, in_item, in_name);
}

std::unique_ptr<memorymodel::Step> Workspace::SetTags(const ItemID& in_item, const std::string& in_key,
                                                      const std::string& in_tags)
{
    return in_key == vireo::datamodel::gApplicationTagsKey ? MakeTagging(m_content, in_item, in_tags)
                                                           : std::make_unique<memorymodel::Step>();
}

std::unique_ptr<memorymodel::Step> Workspace::Move(const ItemID& in_item, const memorymodel::DataSource& in_target)
{
    return MakeMove(m_content, in_item, in_target);
}

std::unique_ptr<memorymodel::Step> Workspace::Create(memorymodel::Creation& io_creation)
{
    return MakeCreation(m_content, io_creation);
}

std::unique_ptr<memorymodel::Step> Workspace::Remove(const ItemID& in_item)
{
    return MakeRemoval(m_content, in_item);
}

std::vector<std::size_t> Workspace::DocumentsToSave(const memorymodel::CommitRequest& in_request) const
{
    const Documents& documents = m_content->GetDocuments();
    const std::vector<materialx::LibraryDocument>& all = m_content->GetMaterial().m_documents;
    const auto isWanted = [&](std::size_t in_document) {
        return documents.IsChanged(in_document) ||
               (in_request.m_isEverything && !all[in_document].m_document.IsEmpty() &&
                documents.GetDocumentState(in_document) == eDocumentState::eInStep &&
                m_content->MayChange(in_document));
    };
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < all.size(); ++i)
        if ((!in_request.m_only || m_content->FindSource(*in_request.m_only) == all[i].m_source) && isWanted(i))
            chosen.push_back(i);
    chosen = documents.WithTies(std::move(chosen));
    chosen.erase(
        std::remove_if(chosen.begin(), chosen.end(), [&](std::size_t in_document) { return !isWanted(in_document); }),
        chosen.end());
    return chosen;
}

void Workspace::Close()
{
    m_versions->Close();
    m_content->Close();
}

memorymodel::CommitAnswer Workspace::Commit(const memorymodel::CommitRequest& in_request)
{
    memorymodel::CommitAnswer answer;
    Documents& documents = m_content->GetDocuments();
    for (const QString& message : documents.Save(DocumentsToSave(in_request), answer.m_isWritten))
        answer.m_messages.push_back(Narrow(message));
    std::vector<materialx::Item> items;
    std::vector<ItemID> ids;
    for (const ItemID& id : in_request.m_items)
        if (const materialx::Item* const item = m_content->GetCatalogue().Find(id))
        {
            items.push_back(*item);
            ids.push_back(id);
        }
    const std::vector<std::vector<std::size_t>> documentsOf = DocumentsOf(m_content->GetMaterial(), items);
    std::set<std::size_t> changed;
    for (std::size_t i = 0; i < m_content->GetMaterial().m_documents.size(); ++i)
        if (documents.IsChanged(i))
            changed.insert(i);
    for (std::size_t i = 0; i < items.size(); ++i)
        if (std::none_of(documentsOf[i].begin(), documentsOf[i].end(),
                         [&](std::size_t in_document) { return changed.count(in_document) != 0; }))
            answer.m_saved.push_back(ids[i]);
    m_versions->Ask();
    return answer;
}

} // namespace workspace
