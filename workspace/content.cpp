// SPDX-License-Identifier: MIT
#include "workspace/content.h"

#include "materialx/encoding.h"
#include "materialx/identity.h"
#include "materialx/moving.h"
#include "workspace/files.h"

#include <QFile>
#include <QUuid>

#include <algorithm>
#include <utility>

namespace workspace
{
namespace
{

using materialx::eKind;
using materialx::Item;
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

} // namespace

Content::Content(Documents in_documents, memorymodel::Library& in_library)
    : m_documents(std::move(in_documents)), m_library(in_library)
{
}

bool Content::IsFactory(std::size_t in_source) const
{
    return GetMaterial().m_isFolder && GetMaterial().m_sources[in_source].m_name == QLatin1String("stdlib");
}

memorymodel::DataSource& Content::SourceFor(std::size_t in_source)
{
    memorymodel::DataSource*& shown = m_sources[in_source];
    if (shown)
        return *shown;
    const materialx::Source& source = GetMaterial().m_sources[in_source];
    const QByteArray location = QFile::encodeName(source.m_location);
    const QByteArray file = GetMaterial().m_isFolder ? location + "/file" : location;
    unsigned flags = MayReplace(file) ? memorymodel::ePlainSource : memorymodel::eReadOnlySource;
    if (IsFactory(in_source))
        flags = memorymodel::eReadOnlySource | memorymodel::eFactorySource;
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
    return !IsFactory(GetMaterial().m_documents[in_document].m_source) && m_documents.CanWrite(in_document);
}

std::vector<bool> Content::AreReadOnly()
{
    const std::vector<Item>& items = m_catalogue.GetItems();
    const std::vector<std::vector<std::size_t>> documents = DocumentsOf(GetMaterial(), items);
    std::map<std::size_t, bool> mayChange;
    std::vector<bool> answers;
    answers.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        bool isReadOnly = !IsNode(items[i]);
        const bool isSourceReadOnly = SourceFor(items[i].m_source).IsReadOnly();
        for (const std::size_t document : documents[i])
        {
            // Of its own source that is for the source to say.
            if (isSourceReadOnly && GetMaterial().m_documents[document].m_source == items[i].m_source)
                continue;
            const auto [known, isNew] = mayChange.emplace(document, false);
            if (isNew)
                known->second = MayChange(document);
            isReadOnly = isReadOnly || !known->second;
        }
        answers.push_back(isReadOnly);
    }
    return answers;
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

void Content::Fill()
{
    // First the one that new items go to.
    const std::vector<materialx::Source>& sources = GetMaterial().m_sources;
    for (std::size_t i = 0; i < sources.size(); ++i)
        if (GetMaterial().m_isFolder && sources[i].m_folder == QLatin1String(gLocalFolder))
            SourceFor(i);
    AddSources();
    m_catalogue.Update(GetMaterial());
    const std::vector<Item>& items = m_catalogue.GetItems();
    const std::vector<QUuid> identities = materialx::MakeIdentities(items);
    const std::vector<bool> areReadOnly = AreReadOnly();
    for (std::size_t i = 0; i < items.size(); ++i)
        m_catalogue.Pair(
            i, m_library.Add(
                   Describe(items[i], areReadOnly[i]).UID(identities[i].toString(QUuid::WithoutBraces).toStdString())));
}

void Content::AddSources()
{
    for (std::size_t i = 0; i < GetMaterial().m_sources.size(); ++i)
        SourceFor(i);
}

void Content::Update(eFollowing in_following)
{
    AddSources();
    const CatalogueNews news = m_catalogue.Update(GetMaterial());
    m_areReadOnly.clear();
    for (const ItemID& id : news.m_gone)
        m_news.push_back({in_following, true, id, std::string()});
    for (const std::string& key : news.m_new)
        m_news.push_back({in_following, false, ItemID(), key});
    for (const ItemID& id : news.m_changed)
        m_news.push_back({in_following, false, id, std::string()});
}

void Content::UpdateAccess()
{
    if (!m_isOpen)
        return;
    m_areReadOnly = AreReadOnly();
    const std::vector<ItemID>& ids = m_catalogue.GetIds();
    for (std::size_t i = 0; i < ids.size(); ++i)
    {
        const bool isReadOnly = m_areReadOnly[i] || SourceFor(m_catalogue.GetItems()[i].m_source).IsReadOnly();
        if (ids[i].IsValid() && m_library.GetAccessor().ItemIsReadOnly(ids[i]) != isReadOnly)
            m_news.push_back({eFollowing::eNews, false, ids[i], std::string()});
    }
    Settle();
}

void Content::Settle()
{
    while (!m_news.empty() && m_isOpen)
    {
        const News news = m_news.front();
        m_news.pop_front();
        Tell(news);
    }
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
        m_areReadOnly = AreReadOnly();
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
