// SPDX-License-Identifier: MIT
#include "workspace/steps.h"

#include "materialx/encoding.h"
#include "materialx/identity.h"
#include "materialx/moving.h"
#include "materialx/newnode.h"
#include "materialx/operations.h"

#include <QUuid>

#include <algorithm>
#include <map>
#include <utility>

namespace workspace
{
namespace
{

using materialx::Item;
using materialx::NarrowToLatin1;
using materialx::Plan;
using materialx::WidenFromLatin1;
using vireo::datamodel::ItemID;

/// A change of documents that is made and taken back any number of times.
class DocumentStep : public memorymodel::Step
{
public:
    explicit DocumentStep(const ContentPtr& in_content) : m_content(in_content) {}

    /// Plans the change for the first time.
    /// \return false when the documents cannot take it
    bool Prepare(Content& io_content)
    {
        const Plan plan = MakePlan(io_content, true);
        if (!plan.m_refusal.empty())
            return false;
        m_change = plan.m_change;
        m_before = io_content.GetDocuments().GetStates(m_change);
        return true;
    }

    bool Run(bool in_forward) override
    {
        const ContentPtr content = m_content.lock();
        if (!content || content->GetDocuments().IsBusy() || !MayRun(*content, in_forward) ||
            !(RunExactly(*content, in_forward) || Replan(*content, in_forward)))
            return false;
        content->Update(memorymodel::eFollowing::eChange);
        AfterRun(*content, in_forward);
        return true;
    }

    void Settle() override
    {
        if (const ContentPtr content = m_content.lock())
            content->Settle();
    }

protected:
    /// The change, or what takes it back, as the documents are now.
    virtual Plan MakePlan(Content& io_content, bool in_forward) = 0;
    virtual bool MayRun(Content& /*io_content*/, bool /*in_forward*/) const { return true; }
    virtual void AfterRun(Content& /*io_content*/, bool /*in_forward*/) const {}

private:
    using States = std::map<std::size_t, Documents::State>;

    /// Makes the change byte by byte, if the documents are exactly as it needs them.
    bool RunExactly(Content& io_content, bool in_forward)
    {
        Documents& documents = io_content.GetDocuments();
        const States& from = in_forward ? m_before : m_after;
        if (from.size() != m_before.size() || documents.GetStates(m_change) != from)
            return false;
        if (in_forward && m_after.size() != m_before.size())
        {
            if (!documents.Apply(m_change))
                return false;
            m_after = documents.GetStates(m_change);
            return true;
        }
        return in_forward ? documents.Apply(m_change, m_after)
                          : documents.Apply(materialx::Inverse(m_change), m_before);
    }

    bool Replan(Content& io_content, bool in_forward)
    {
        const Plan plan = MakePlan(io_content, in_forward);
        Documents& documents = io_content.GetDocuments();
        const States from = documents.GetStates(plan.m_change);
        if (!plan.m_refusal.empty() || !documents.Apply(plan.m_change))
            return false;
        const States to = documents.GetStates(plan.m_change);
        m_change = in_forward ? plan.m_change : materialx::Inverse(plan.m_change);
        m_before = in_forward ? from : to;
        m_after = in_forward ? to : from;
        return true;
    }

    const std::weak_ptr<Content> m_content;
    materialx::Change m_change; ///< forward
    States m_before;            ///< of the documents that it touches
    States m_after;             ///< empty until it was made
};

Plan ForMissing()
{
    return {{}, "No document has the item any more."};
}

/// A change of what one item is.
class ItemStep : public DocumentStep
{
public:
    ItemStep(const ContentPtr& in_content, const ItemID& in_item) : DocumentStep(in_content), m_item(in_item) {}

protected:
    Plan MakePlan(Content& io_content, bool in_forward) override
    {
        const Item* const item = io_content.GetCatalogue().Find(m_item);
        return item ? MakePlan(io_content, *item, in_forward) : ForMissing();
    }

    virtual Plan MakePlan(Content& io_content, const Item& in_item, bool in_forward) = 0;

    const ItemID m_item;
};

class RenameStep : public ItemStep
{
public:
    RenameStep(const ContentPtr& in_content, const ItemID& in_item, std::string in_name)
        : ItemStep(in_content, in_item), m_name(std::move(in_name))
    {
    }

protected:
    Plan MakePlan(Content& io_content, const Item& in_item, bool in_forward) override
    {
        if (!in_forward)
            return Rename(io_content.GetMaterial(), in_item, m_before);
        m_before = in_item.m_shownName;
        const bool isPlain = m_name == NarrowToLatin1(in_item.m_name);
        return Rename(io_content.GetMaterial(), in_item, isPlain ? in_item.m_name : WidenFromLatin1(m_name));
    }

private:
    const std::string m_name; ///< Latin-1
    std::string m_before;     ///< UTF-8
};

/// Tags in the characters of the document: of those that are as before the old ones.
std::string WidenTags(const std::string& in_tags, std::vector<std::string> in_before)
{
    std::string widened;
    std::size_t begin = 0;
    while (true)
    {
        const std::size_t end = in_tags.find(';', begin);
        const std::string tag = in_tags.substr(begin, end - begin);
        const auto kept = std::find_if(in_before.begin(), in_before.end(),
                                       [&tag](const std::string& in_old) { return NarrowToLatin1(in_old) == tag; });
        widened += kept == in_before.end() ? WidenFromLatin1(tag) : *kept;
        if (kept != in_before.end())
            in_before.erase(kept);
        if (end == std::string::npos)
            return widened;
        widened += ';';
        begin = end + 1;
    }
}

class TagsStep : public ItemStep
{
public:
    TagsStep(const ContentPtr& in_content, const ItemID& in_item, std::string in_tags)
        : ItemStep(in_content, in_item), m_tags(std::move(in_tags))
    {
    }

protected:
    Plan MakePlan(Content& io_content, const Item& in_item, bool in_forward) override
    {
        if (!in_forward)
            return SetTags(io_content.GetMaterial(), in_item, m_before);
        m_before = materialx::JoinTags(in_item.m_tags);
        return SetTags(io_content.GetMaterial(), in_item, WidenTags(m_tags, in_item.m_tags));
    }

private:
    const std::string m_tags; ///< Latin-1
    std::string m_before;     ///< UTF-8
};

/// Whether all documents that a change touches can be changed and saved; else why not.
std::string WhyNotWritable(const Content& in_content, const materialx::Change& in_change)
{
    for (const materialx::DocumentEdit& edit : in_change)
        if (!in_content.MayChange(edit.m_document))
            return "A document is read-only.";
    return std::string();
}

Plan IfWritable(const Content& in_content, Plan in_plan)
{
    const std::string refusal = WhyNotWritable(in_content, in_plan.m_change);
    return refusal.empty() ? std::move(in_plan) : Plan{{}, refusal};
}

class MoveStep : public ItemStep
{
public:
    MoveStep(const ContentPtr& in_content, const ItemID& in_item, std::size_t in_target)
        : ItemStep(in_content, in_item), m_target(in_target)
    {
    }

protected:
    Plan MakePlan(Content& io_content, const Item& in_item, bool in_forward) override
    {
        if (io_content.GetCatalogue().HasTwin(in_item))
            return {{}, "There is another item of this name."};
        if (in_forward)
            m_before = in_item.m_source;
        return IfWritable(
            io_content, Move(io_content.GetDocuments().GetLibrary(), Item(in_item), in_forward ? m_target : m_before));
    }

private:
    const std::size_t m_target;
    std::size_t m_before = 0;
};

/// An item that comes with its elements, or goes with them, and keeps its identity in the library meanwhile.
class PresenceStep : public DocumentStep
{
public:
    PresenceStep(const ContentPtr& in_content, const ItemID& in_item, bool in_comes)
        : DocumentStep(in_content), m_item(in_item), m_comes(in_comes)
    {
    }

protected:
    /// What comes may be there already, made by somebody else.
    bool MayRun(Content& io_content, bool in_forward) const override
    {
        return in_forward != m_comes || !io_content.GetCatalogue().Has(m_key);
    }

    void AfterRun(Content& io_content, bool in_forward) const override
    {
        if (in_forward == m_comes)
            io_content.GetCatalogue().Pair(m_key, m_item);
    }

    Plan PlanRemoval(Content& io_content) const
    {
        const Item* const item = io_content.GetCatalogue().Find(m_item);
        if (!item)
            return ForMissing();
        if (io_content.GetCatalogue().HasTwin(*item))
            return {{}, "There is another item of this name."};
        return Remove(io_content.GetMaterial(), *item);
    }

    const ItemID m_item;
    const bool m_comes;
    std::string m_key; ///< of the item in the catalogue
};

class CreationStep : public PresenceStep
{
public:
    CreationStep(const ContentPtr& in_content, const ItemID& in_item, std::size_t in_document,
                 materialx::NewNode in_node)
        : PresenceStep(in_content, in_item, true), m_document(in_document), m_node(std::move(in_node))
    {
    }

    const std::string& GetKey() const { return m_key; }

protected:
    Plan MakePlan(Content& io_content, bool in_forward) override
    {
        if (!in_forward)
            return PlanRemoval(io_content);
        std::string nodeDef;
        Plan plan = AddNode(io_content.GetMaterial(), m_document, m_node, &nodeDef);
        if (!plan.m_refusal.empty())
            return plan;
        const std::string prefix = "ND_";
        Item item;
        item.m_kind = m_node.m_kind == materialx::eNewKind::eSignature ? materialx::eKind::eSignature
                                                                       : materialx::eKind::eCompound;
        item.m_name = nodeDef.substr(prefix.size());
        const std::string key = Catalogue::KeyOf(item);
        // The library knows it by the first one.
        if (!m_key.empty() && m_key != key)
            return {{}, "The name is in use by now."};
        m_key = key;
        return IfWritable(io_content, std::move(plan));
    }

private:
    const std::size_t m_document;
    const materialx::NewNode m_node;
};

class RemovalStep : public PresenceStep
{
public:
    RemovalStep(const ContentPtr& in_content, const ItemID& in_item) : PresenceStep(in_content, in_item, false) {}

protected:
    Plan MakePlan(Content& io_content, bool in_forward) override
    {
        const materialx::Library& library = io_content.GetMaterial();
        if (!in_forward)
        {
            Plan plan;
            for (const auto& [document, lines] : m_lines)
                plan.m_change.push_back({document, AppendElements(DocumentOf(library, document), lines)});
            return plan;
        }
        const Plan plan = PlanRemoval(io_content);
        if (!plan.m_refusal.empty())
            return plan;
        const Item& item = *io_content.GetCatalogue().Find(m_item);
        m_key = Catalogue::KeyOf(item);
        m_lines.clear();
        for (const materialx::DeclarationIndex& element : ElementsOf(library, item))
        {
            const materialx::Document& document = DocumentOf(library, element.m_document);
            m_lines[element.m_document].push_back(
                CopyElement(document, DeclarationOf(library, element).m_span, StyleOf(document)));
        }
        return plan;
    }

private:
    std::map<std::size_t, std::vector<std::string>> m_lines; ///< of the elements, by their documents
};

StepPtr IfPossible(const ContentPtr& in_content, std::unique_ptr<DocumentStep> in_step)
{
    return in_step->Prepare(*in_content) ? std::move(in_step) : nullptr;
}

/// The name of the definition of a signature; empty when there is none with that UID.
std::string FindNodeDef(Content& io_content, const std::string& in_uid)
{
    const QUuid uid(QString::fromStdString(in_uid));
    const std::vector<Item>& items = io_content.GetCatalogue().GetItems();
    const std::vector<QUuid> identities = materialx::MakeIdentities(items);
    for (std::size_t i = 0; i < items.size(); ++i)
        if (identities[i] == uid)
            return DeclarationOf(io_content.GetMaterial(), items[i].m_declaration).m_name;
    return std::string();
}

materialx::eNewKind KindOf(const memorymodel::Creation& in_creation)
{
    if (in_creation.m_isSignature)
        return materialx::eNewKind::eSignature;
    return in_creation.m_isLoop ? materialx::eNewKind::eLoopCompound : materialx::eNewKind::eCompound;
}

} // namespace

StepPtr MakeRename(const ContentPtr& in_content, const ItemID& in_item, const std::string& in_name)
{
    // Without a name the document gives it one.
    return in_name.empty() ? nullptr
                           : IfPossible(in_content, std::make_unique<RenameStep>(in_content, in_item, in_name));
}

StepPtr MakeTagging(const ContentPtr& in_content, const ItemID& in_item, const std::string& in_tags)
{
    return IfPossible(in_content, std::make_unique<TagsStep>(in_content, in_item, in_tags));
}

StepPtr MakeMove(const ContentPtr& in_content, const ItemID& in_item, const memorymodel::DataSource& in_target)
{
    const std::optional<std::size_t> target = in_content->FindSource(in_target);
    return target ? IfPossible(in_content, std::make_unique<MoveStep>(in_content, in_item, *target)) : nullptr;
}

StepPtr MakeCreation(const ContentPtr& in_content, memorymodel::Creation& io_creation)
{
    const std::optional<std::size_t> source = in_content->FindSource(*io_creation.m_source);
    if (!source)
        return nullptr;
    materialx::NewNode node;
    node.m_kind = KindOf(io_creation);
    node.m_name = WidenFromLatin1(io_creation.m_name);
    node.m_category = WidenFromLatin1(io_creation.m_category);
    if (!io_creation.m_baseClass.empty())
        node.m_inherit = FindNodeDef(*in_content, io_creation.m_baseClass);
    materialx::Library& library = in_content->GetDocuments().GetLibrary();
    const materialx::Source& target = library.m_sources[*source];
    const QString folder = target.m_folder.isEmpty() ? QString() : target.m_folder + QLatin1Char('/');
    const std::size_t document = FindOrAddDocument(folder + target.m_name + QStringLiteral(".mtlx"), library);
    auto step = std::make_unique<CreationStep>(in_content, io_creation.m_item, document, node);
    if (!step->Prepare(*in_content))
        return nullptr;
    std::vector<std::string> tags;
    for (const std::string& tag : {node.m_category, library.m_documents[document].m_topFolder})
        if (!tag.empty() && std::find(tags.begin(), tags.end(), tag) == tags.end())
            tags.push_back(tag);
    io_creation.m_tags = NarrowToLatin1(materialx::JoinTags(tags));
    io_creation.m_uid = materialx::MakeIdentity(step->GetKey()).toString(QUuid::WithoutBraces).toStdString();
    return step;
}

StepPtr MakeRemoval(const ContentPtr& in_content, const ItemID& in_item)
{
    return IfPossible(in_content, std::make_unique<RemovalStep>(in_content, in_item));
}

} // namespace workspace
