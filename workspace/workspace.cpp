// SPDX-License-Identifier: MIT
#include "workspace/workspace.h"

#include "materialx/encoding.h"
#include "memorymodel/datalayer.h"
#include "workspace/content.h"
#include "workspace/steps.h"
#include "workspace/versions.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <exception>
#include <limits>
#include <new>
#include <numeric>
#include <set>
#include <utility>

namespace workspace
{
namespace
{

const int gBusyPause = 50; // milliseconds

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

Reading::Reading(const QString& in_path) : m_path(in_path), m_opened(new OpenedDocuments) {}

Reading::~Reading() = default;

bool Reading::Run()
{
    // On another thread nobody would catch it.
    try
    {
        if (const std::optional<materialx::Error> error = m_opened->Open(m_path, &m_progress))
            m_error = error->GetText();
    }
    catch (const std::bad_alloc&)
    {
        m_error = QStringLiteral("%1:1: There is not enough memory for it").arg(m_path);
    }
    catch (const std::exception& thrown)
    {
        m_error = QStringLiteral("%1:1: %2").arg(m_path, QString::fromLocal8Bit(thrown.what()));
    }
    return m_error.isEmpty();
}

std::shared_ptr<Workspace> Workspace::Open(memorymodel::DataLayer& io_layer, const QString& in_path, QString* out_error)
{
    Reading reading(in_path);
    if (!reading.Run())
    {
        *out_error = reading.GetError();
        return nullptr;
    }
    std::shared_ptr<Workspace> workspace = Open(io_layer, reading);
    workspace->Fill(std::numeric_limits<std::size_t>::max());
    workspace->m_versions->Ask();
    return workspace;
}

std::shared_ptr<Workspace> Workspace::Open(memorymodel::DataLayer& io_layer, Reading& io_reading)
{
    memorymodel::Library& library = io_layer.AddLibrary(Narrow(NameOf(io_reading.m_path)));
    const auto content = std::make_shared<Content>(std::move(*io_reading.m_opened), library);
    content->AddSources();
    const std::shared_ptr<Workspace> workspace(new Workspace(content, io_layer.GetSourceControl()));
    library.SetStore(workspace);
    return workspace;
}

bool Workspace::Fill(std::size_t in_count)
{
    return m_content->IsOpen() && m_content->Fill(in_count);
}

Workspace::Workspace(std::shared_ptr<Content> in_content, memorymodel::SourceControl& in_control)
    : m_content(std::move(in_content)),
      m_versions(new Versions(m_content, in_control)),
      m_runner([](const std::function<void()>& in_function) { in_function(); })
{
    QObject::connect(m_versions.get(), &Versions::PermissionsChanged, m_versions.get(),
                     [this] { OnPermissionsChanged(); });
}

Workspace::~Workspace() = default;

const QString& Workspace::GetPath() const
{
    return m_content->GetMaterial().m_path;
}

bool Workspace::IsBusy() const
{
    return m_content->GetDocuments().IsBusy();
}

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

std::optional<materialx::Description> Workspace::Describe(const ItemID& in_item) const
{
    const Catalogue& catalogue = m_content->GetCatalogue();
    const materialx::Item* const item = catalogue.Find(in_item);
    if (!item || !m_content->IsOpen() || !m_content->IsInStep())
        return std::nullopt;
    return materialx::Describe(m_content->GetMaterial(), *item, catalogue.GetDeclarations(*item));
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
    if (!m_content->IsOpen() || IsBusy() || !IsThere())
        return;
    const std::shared_ptr<Workspace> alive = shared_from_this();
    m_content->GetDocuments().FindNew(m_runner);
    std::vector<std::size_t> all(m_content->GetMaterial().m_documents.size());
    std::iota(all.begin(), all.end(), std::size_t(0));
    Look(all);
}

void Workspace::Refresh(const QString& in_document)
{
    const QString& folder = GetPath();
    if (!m_content->IsOpen() || IsBusy() ||
        (!Find(in_document) && !QFileInfo::exists(folder + QLatin1Char('/') + in_document)))
        return;
    const std::shared_ptr<Workspace> alive = shared_from_this();
    Look({FindOrAddDocument(in_document, m_content->GetDocuments().GetLibrary())});
}

void Workspace::Look(const std::vector<std::size_t>& in_documents)
{
    const bool isReplaced = m_content->GetDocuments().Refresh(in_documents, m_runner);
    if (isReplaced && m_content->IsOpen())
        m_content->UpdateRead(m_runner);
    LookAtPermissions();
}

void Workspace::LookAtPermissions()
{
    m_content->UpdateReadOnly(m_runner);
    m_content->Settle();
    m_versions->Ask();
}

void Workspace::OnPermissionsChanged()
{
    if (IsBusy())
    {
        QTimer::singleShot(gBusyPause, m_versions.get(), [this] { OnPermissionsChanged(); });
        return;
    }
    const std::shared_ptr<Workspace> alive = shared_from_this();
    if (m_content->IsOpen())
        LookAtPermissions();
}

QStringList Workspace::GetTroubledDocuments() const
{
    QStringList paths;
    for (const std::size_t i : InPathOrder(m_content->GetMaterial()))
        if (m_content->GetDocuments().GetDocumentState(i) != eDocumentState::eInStep)
            paths.append(m_content->GetMaterial().m_documents[i].m_relativePath);
    return paths;
}

bool Workspace::IsThere() const
{
    return QFileInfo::exists(GetPath());
}

QStringList Workspace::GetFiles() const
{
    QStringList paths;
    for (const materialx::LibraryDocument& document : m_content->GetMaterial().m_documents)
        if (!document.m_document.IsEmpty())
            paths.append(document.m_file);
    return paths;
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

QStringList Workspace::GetTiedDocuments(const QString& in_document) const
{
    QStringList paths;
    if (const std::optional<std::size_t> document = Find(in_document))
        for (const std::size_t tied : m_content->GetDocuments().WithTiedEdits(*document))
            if (tied != *document)
                paths.append(m_content->GetMaterial().m_documents[tied].m_relativePath);
    return paths;
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

QString Workspace::SaveOursBeside(const QString& in_document, QStringList* out_files)
{
    const std::optional<std::size_t> document = Find(in_document);
    if (!document || !m_content->IsOpen())
        return QStringLiteral("There is no such document");
    const QString error = m_content->GetDocuments().SaveOursBeside(*document, *out_files);
    if (error.isEmpty())
        TakeNews();
    return error;
}

const QStringList& Workspace::GetRemarks() const
{
    return m_content->GetDocuments().GetRemarks();
}

void Workspace::ClearRemarks()
{
    m_content->GetDocuments().ClearRemarks();
}

std::unique_ptr<memorymodel::Step> Workspace::Rename(const ItemID& in_item, const std::string& in_name)
{
    return IsBusy() ? nullptr : MakeRename(m_content, in_item, in_name);
}

std::unique_ptr<memorymodel::Step> Workspace::SetTags(const ItemID& in_item, const std::string& in_key,
                                                      const std::string& in_tags)
{
    if (IsBusy())
        return nullptr;
    return in_key == vireo::datamodel::gApplicationTagsKey ? MakeTagging(m_content, in_item, in_tags)
                                                           : std::make_unique<memorymodel::Step>();
}

std::unique_ptr<memorymodel::Step> Workspace::Move(const ItemID& in_item, const memorymodel::DataSource& in_target)
{
    return IsBusy() ? nullptr : MakeMove(m_content, in_item, in_target);
}

std::unique_ptr<memorymodel::Step> Workspace::Create(memorymodel::Creation& io_creation)
{
    return IsBusy() ? nullptr : MakeCreation(m_content, io_creation);
}

std::unique_ptr<memorymodel::Step> Workspace::Remove(const ItemID& in_item)
{
    return IsBusy() ? nullptr : MakeRemoval(m_content, in_item);
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
    m_savedDocuments.clear();
    if (documents.IsBusy())
    {
        m_saveMessages = QStringList(QStringLiteral("The library is being saved or read"));
        answer.m_messages.push_back(Narrow(m_saveMessages.first()));
        return answer;
    }
    std::vector<std::size_t> saved;
    QStringList messages; // not the member yet: meanwhile others may ask for commits, which are refused
    for (const QString& message : documents.Save(DocumentsToSave(in_request), m_runner, saved))
    {
        messages << message;
        answer.m_messages.push_back(Narrow(message));
    }
    m_saveMessages = messages;
    answer.m_isWritten = !saved.empty();
    for (const std::size_t document : InPathOrder(m_content->GetMaterial()))
        if (std::find(saved.begin(), saved.end(), document) != saved.end())
            m_savedDocuments.append(m_content->GetMaterial().m_documents[document].m_relativePath);
    std::set<std::size_t> changed;
    for (std::size_t i = 0; i < m_content->GetMaterial().m_documents.size(); ++i)
        if (documents.IsChanged(i))
            changed.insert(i);
    const Catalogue& catalogue = m_content->GetCatalogue();
    const auto isSaved = [&](const materialx::Item& in_item) {
        const materialx::ItemDocuments::List all = m_content->GetDocumentsOfItems()[catalogue.IndexOf(in_item)];
        return std::none_of(all.begin(), all.end(),
                            [&](std::size_t in_document) { return changed.count(in_document) != 0; });
    };
    for (const ItemID& id : in_request.m_items)
        if (const materialx::Item* const item = catalogue.Find(id); item && isSaved(*item))
            answer.m_saved.push_back(id);
    m_versions->Ask();
    return answer;
}

} // namespace workspace
