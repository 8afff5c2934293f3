// SPDX-License-Identifier: MIT
#include "workspace/content.h"

#include "materialx/encoding.h"
#include "materialx/identity.h"
#include "workspace/files.h"

#include <QFile>
#include <QUuid>

#include <algorithm>
#include <future>
#include <utility>

namespace workspace
{
namespace
{

using materialx::eKind;
using materialx::Item;
using materialx::ItemDocuments;
using materialx::NarrowToLatin1;
using memorymodel::eFollowing;
using memorymodel::NewItem;

std::string Narrow(const QString& in_text)
{
    return NarrowToLatin1(in_text.toStdString());
}

NewItem BeginDescription(const Item& in_item)
{
    const std::string name = NarrowToLatin1(in_item.m_shownName);
    switch (in_item.m_kind)
    {
    case eKind::eType:
        return NewItem::Type(name);
    case eKind::eGlobalConstant:
        return NewItem::GlobalConstant(name);
    case eKind::ePolymorphicSolver:
        return NewItem::PolymorphicSolver(name);
    case eKind::eSolver:
        return NewItem::Solver(name);
    case eKind::eCompound:
        return in_item.m_isLoop ? NewItem::LoopCompound(name) : NewItem::Compound(name);
    case eKind::eSignature:
        break;
    }
    return NewItem::Signature(name);
}

/// Whether names and tags of an item can be written at all.
bool IsNode(const Item& in_item)
{
    return in_item.m_kind != eKind::eType && in_item.m_kind != eKind::eGlobalConstant && in_item.m_parent.empty();
}

bool IsFactory(const materialx::Library& in_material, std::size_t in_source)
{
    return in_material.m_isFolder && in_material.m_sources[in_source].m_name == QLatin1String("stdlib");
}

/// Whether a source takes no new items: it came with the product, or nothing can be written there.
bool IsReadOnly(const Documents& in_documents, std::size_t in_source)
{
    const materialx::Library& material = in_documents.GetLibrary();
    const QByteArray location = QFile::encodeName(material.m_sources[in_source].m_location);
    return IsFactory(material, in_source) || !in_documents.CanSave() ||
           !MayReplace(material.m_isFolder ? location + "/file" : location);
}

bool MayChange(const Documents& in_documents, std::size_t in_document)
{
    const materialx::Library& material = in_documents.GetLibrary();
    return !IsFactory(material, material.m_documents[in_document].m_source) && in_documents.CanWrite(in_document);
}

/// Whether each item cannot be changed, whatever its source says. Linear in the size of the library.
std::vector<bool> AreReadOnly(const Documents& in_documents, const std::vector<Item>& in_items,
                              const ItemDocuments& in_documentsOf)
{
    const materialx::Library& material = in_documents.GetLibrary();
    std::vector<bool> isSourceReadOnly;
    for (std::size_t i = 0; i < material.m_sources.size(); ++i)
        isSourceReadOnly.push_back(IsReadOnly(in_documents, i));
    std::vector<std::optional<bool>> mayChange(material.m_documents.size());
    std::vector<bool> answers;
    answers.reserve(in_items.size());
    for (std::size_t i = 0; i < in_items.size(); ++i)
    {
        bool isReadOnly = !IsNode(in_items[i]);
        for (const std::size_t document : in_documentsOf[i])
        {
            // Of its own source that is for the source to say.
            if (isSourceReadOnly[in_items[i].m_source] &&
                material.m_documents[document].m_source == in_items[i].m_source)
                continue;
            if (!mayChange[document])
                mayChange[document] = MayChange(in_documents, document);
            isReadOnly = isReadOnly || !*mayChange[document];
        }
        answers.push_back(isReadOnly);
    }
    return answers;
}

} // namespace

std::optional<materialx::Error> OpenedDocuments::Open(const QString& in_path, Progress* io_progress)
{
    if (std::optional<materialx::Error> error = m_documents.Open(in_path, io_progress))
        return error;
    m_catalogue.Begin(materialx::MakeItems(m_documents.GetLibrary()));
    std::future<std::vector<QUuid>> identities =
        std::async(std::launch::async, [&items = m_catalogue.GetItems()] { return materialx::MakeIdentities(items); });
    m_documentsOf = materialx::DocumentsOf(m_documents.GetLibrary(), m_catalogue.GetItems());
    m_areReadOnly = AreReadOnly(m_documents, m_catalogue.GetItems(), m_documentsOf);
    m_identities = identities.get();
    return std::nullopt;
}

Content::Content(OpenedDocuments in_opened, memorymodel::Library& in_library)
    : m_documents(std::move(in_opened.m_documents)),
      m_catalogue(std::move(in_opened.m_catalogue)),
      m_library(in_library),
      m_documentsOf(std::move(in_opened.m_documentsOf)),
      m_revisionOfDocumentsOf(m_catalogue.GetRevision()),
      m_areReadOnly(std::move(in_opened.m_areReadOnly)),
      m_identities(std::move(in_opened.m_identities))
{
}

const ItemDocuments& Content::GetDocumentsOfItems()
{
    if (std::exchange(m_revisionOfDocumentsOf, m_catalogue.GetRevision()) != m_catalogue.GetRevision())
        m_documentsOf = materialx::DocumentsOf(GetMaterial(), m_catalogue.GetItems());
    return m_documentsOf;
}

memorymodel::DataSource& Content::SourceFor(std::size_t in_source)
{
    memorymodel::DataSource*& shown = m_sources[in_source];
    if (shown)
        return *shown;
    const materialx::Source& source = GetMaterial().m_sources[in_source];
    unsigned flags = IsReadOnly(m_documents, in_source) ? memorymodel::eReadOnlySource : memorymodel::ePlainSource;
    if (IsFactory(GetMaterial(), in_source))
        flags |= memorymodel::eFactorySource;
    const bool isLocal = GetMaterial().m_isFolder && source.m_folder == QLatin1String(gLocalFolder);
    shown = &m_library.AddDataSource(isLocal ? "Local" : Narrow(source.m_name), flags, Narrow(source.m_location));
    return *shown;
}

std::optional<std::size_t> Content::FindSource(const memorymodel::DataSource& in_source) const
{
    for (const auto& [index, source] : m_sources)
        if (source == &in_source)
            return index;
    return std::nullopt;
}

bool Content::MayChange(std::size_t in_document) const
{
    return workspace::MayChange(m_documents, in_document);
}

NewItem Content::Describe(const Item& in_item, bool in_isReadOnly)
{
    NewItem item = BeginDescription(in_item);
    item.In(SourceFor(in_item.m_source))
        .Tags(NarrowToLatin1(materialx::JoinTags(in_item.m_tags)))
        .Parent(NarrowToLatin1(in_item.m_parent))
        .Specializes(NarrowToLatin1(in_item.m_specializes));
    if (in_isReadOnly)
        item.ReadOnly();
    return item;
}

void Content::AddSources()
{
    const std::vector<materialx::Source>& sources = GetMaterial().m_sources;
    for (std::size_t i = 0; i < sources.size(); ++i)
        if (GetMaterial().m_isFolder && sources[i].m_folder == QLatin1String(gLocalFolder))
            SourceFor(i);
    for (std::size_t i = 0; i < sources.size(); ++i)
        SourceFor(i);
}

bool Content::Fill(std::size_t in_count)
{
    const std::vector<Item>& items = m_catalogue.GetItems();
    const std::size_t end = m_filled + std::min(in_count, items.size() - m_filled);
    for (; m_filled < end; ++m_filled)
    {
        const std::string uid = m_identities[m_filled].toString(QUuid::WithoutBraces).toStdString();
        m_catalogue.Pair(m_filled, m_library.Add(Describe(items[m_filled], m_areReadOnly[m_filled]).UID(uid)));
    }
    if (end < items.size())
        return true;
    m_identities = std::vector<QUuid>();
    m_catalogue.ForgetKeys();
    m_documents.TakeTouched();
    return false;
}

void Content::Update(eFollowing in_following)
{
    AddSources();
    const std::optional<std::vector<materialx::DeclarationIndex>> touched = m_documents.TakeTouched();
    if (!touched)
        m_areReadOnly.clear();
    Keep(touched ? m_catalogue.UpdateShown(GetMaterial(), *touched)
                 : m_catalogue.Take(m_catalogue.Compare(materialx::MakeItems(GetMaterial()))),
         in_following);
}

void Content::UpdateRead(const Runner& in_run)
{
    AddSources();
    m_documents.TakeTouched();
    CatalogueUpdate update;
    m_isInStep = false;
    m_documents.RunBusy(in_run, [&] { update = m_catalogue.Compare(materialx::MakeItems(GetMaterial())); });
    m_isInStep = true;
    m_areReadOnly.clear();
    Keep(m_catalogue.Take(std::move(update)), eFollowing::eNews);
}

void Content::Keep(const CatalogueNews& in_news, eFollowing in_following)
{
    for (const ItemID& id : in_news.m_gone)
        m_news.push_back({in_following, true, id, std::string()});
    for (const std::string& key : in_news.m_new)
        m_news.push_back({in_following, false, ItemID(), key});
    for (const ItemID& id : in_news.m_changed)
        m_news.push_back({in_following, false, id, std::string()});
}

void Content::UpdateReadOnly(const Runner& in_run)
{
    const bool isKnown = m_revisionOfDocumentsOf == m_catalogue.GetRevision();
    ItemDocuments found; // the own ones are for the caller's thread, which may need them meanwhile
    std::vector<bool> areReadOnly;
    std::map<std::size_t, bool> areSourcesReadOnly;
    m_documents.RunBusy(in_run, [&] {
        if (!isKnown)
            found = materialx::DocumentsOf(GetMaterial(), m_catalogue.GetItems());
        areReadOnly = AreReadOnly(m_documents, m_catalogue.GetItems(), isKnown ? m_documentsOf : found);
        for (const auto& [index, source] : m_sources)
            areSourcesReadOnly[index] = IsReadOnly(m_documents, index);
    });
    if (!m_isOpen)
        return;
    if (!isKnown)
        m_documentsOf = std::move(found);
    m_revisionOfDocumentsOf = m_catalogue.GetRevision();
    for (const auto& [index, isReadOnly] : areSourcesReadOnly)
    {
        m_isInvalidated = m_isInvalidated || isReadOnly != m_sources[index]->IsReadOnly();
        m_sources[index]->SetReadOnly(isReadOnly);
    }
    m_areReadOnly = std::move(areReadOnly);
    const vireo::datamodel::ItemLibraryAccessor library = m_library.GetAccessor();
    for (std::size_t i = 0; i < m_areReadOnly.size(); ++i)
    {
        const ItemID& id = m_catalogue.GetIds()[i];
        if (!id.IsValid() || SourceFor(m_catalogue.GetItems()[i].m_source).IsReadOnly() ||
            library.ItemIsReadOnly(id) == m_areReadOnly[i])
            continue;
        m_news.push_back({eFollowing::eNews, false, id, std::string()});
        m_isInvalidated = true;
    }
}

void Content::Settle()
{
    while (!m_news.empty() && m_isOpen)
    {
        const News news = m_news.front();
        m_news.pop_front();
        Tell(news);
    }
    if (m_news.empty())
        m_catalogue.ForgetKeys();
    if (std::exchange(m_isInvalidated, false) && m_isOpen)
        m_library.Invalidate();
}

void Content::Tell(const News& in_news)
{
    if (in_news.m_isGone)
    {
        m_library.Drop(in_news.m_id);
        return;
    }
    // By now it may be gone again.
    const Item* const found =
        in_news.m_id.IsValid() ? m_catalogue.Find(in_news.m_id) : m_catalogue.FindNew(in_news.m_key);
    if (!found)
        return;
    const Item item = *found;
    if (m_areReadOnly.empty())
        m_areReadOnly = AreReadOnly(m_documents, m_catalogue.GetItems(), GetDocumentsOfItems());
    const bool isReadOnly = m_areReadOnly[static_cast<std::size_t>(found - m_catalogue.GetItems().data())];
    if (in_news.m_id.IsValid())
    {
        m_library.Follow(in_news.m_id,
                         {NarrowToLatin1(item.m_shownName), NarrowToLatin1(materialx::JoinTags(item.m_tags)),
                          &SourceFor(item.m_source), isReadOnly},
                         in_news.m_following);
        return;
    }
    const std::string uid = materialx::MakeIdentity(in_news.m_key).toString(QUuid::WithoutBraces).toStdString();
    m_catalogue.Pair(in_news.m_key, m_library.Add(Describe(item, isReadOnly).UID(uid)));
}

} // namespace workspace
