// SPDX-License-Identifier: MIT
#include "tests/contract/faultylayer.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/itemlibrarymodifier.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <cctype>
#include <cstring>
#include <map>
#include <stdexcept>
#include <vector>

using namespace vireo::datamodel;

namespace faulty
{
namespace
{

/// An item with another identity than it should have.
class FaultyItem : public IContext, public IItem
{
public:
    FaultyItem(eFault in_fault, const ItemAccessor& in_inner) : m_fault(in_fault), m_inner(in_inner) {}

    bool IsAlive() const override { return m_inner.IsValid(); }
    CSimpleValue GetValue(const char* in_key) const override { return m_inner.GetValue(in_key); }
    ItemID GetItemID() const override
    {
        static const std::string solver = VireoType::gSolver;
        static const std::string compound = VireoType::gCompound;
        static std::uint64_t asked = 0;
        const ItemID id = m_inner.GetItemID();
        if (m_fault == eTypeNameIsACopy && id.GetType() == VireoType::gSolver)
            return ItemID(solver.c_str(), id.GetSpace(), id.GetNumber());
        if (m_fault == eIdentityChanges)
            return ItemID(id.GetType(), id.GetSpace() + ++asked, id.GetNumber());
        return id;
    }

    const ItemAccessor& GetInner() const { return m_inner; }

private:
    const eFault m_fault;
    const ItemAccessor m_inner;
};

class FaultyIterator : public IItemIterator
{
public:
    FaultyIterator(eFault in_fault, const ItemTOCAccessor& in_toc, const char* in_type)
        : m_fault(in_fault), m_toc(in_toc), m_type(in_type), m_items(in_toc.IterateItems(in_type))
    {
        if (m_fault == eIterationIsReversed)
            for (; !m_items.IsAtEnd(); m_items.Next())
                m_reversed.push_back(m_items.GetItem());
    }

    bool IsAtEnd() const override { return m_items.IsAtEnd() && m_reversed.empty(); }

    void Next() override
    {
        if (!m_reversed.empty())
            return m_reversed.pop_back();
        m_items.Next();
        if (m_fault == eIteratorSkips)
            m_items.Next();
        if (m_fault == eIteratorNeverEnds && m_items.IsAtEnd())
            m_items = m_toc.IterateItems(m_type);
    }

    ItemAccessor GetItem() const override
    {
        const ItemAccessor item = m_reversed.empty() ? m_items.GetItem() : m_reversed.back();
        return item.IsValid() ? ItemAccessor(UnspecifiedAccessor(std::make_shared<FaultyItem>(m_fault, item))) : item;
    }

private:
    const eFault m_fault;
    const ItemTOCAccessor m_toc;
    const char* const m_type;
    ItemIterator m_items;
    std::vector<ItemAccessor> m_reversed;
};

/// The model of a solver that takes itself for a compound.
class SolverModel : public IContext, public ICompound, public ICompoundModifier, public IFunction
{
public:
    explicit SolverModel(const ItemID& in_item) : m_item(in_item) {}

    bool IsAlive() const override { return true; }
    ItemID GetItemID() const override { return m_item; }
    bool CanModifyCompound(bool) const override { return true; }
    void RenameCompound(const char*, hmx::fwk::ICommandManager*) override {}

private:
    const ItemID m_item;
};

ItemAccessor Unwrapped(const ItemAccessor& in_item)
{
    const FaultyItem* const item =
        in_item.IsValid() ? dynamic_cast<const FaultyItem*>(in_item.GetContext().get()) : nullptr;
    return item ? item->GetInner() : in_item;
}

/// The constant with the same characters; null when there is none.
const char* ConstantOf(const char* in_type)
{
    for (const char* const type : {VireoType::gPolymorphicSolver, VireoType::gCompound, VireoType::gGlobalConstant,
                                   VireoType::gSolver, LibType::gType})
        if (in_type && std::strcmp(type, in_type) == 0)
            return type;
    return nullptr;
}

} // namespace

/// Stands between the library in memory and one observer of the wrapper.
class Relay : public IItemTOCNotification, public IItemLibraryNotification
{
public:
    Relay(FaultyLibrary& in_library, IItemTOCNotification* in_toc, IItemLibraryNotification* in_observer)
        : m_library(in_library), m_toc(in_toc), m_observer(in_observer)
    {
    }

    void ItemAdded(ItemAccessor& in_item) override;
    void ItemRemoved(ItemAccessor& in_item) override;
    void OnBeginChanges(ItemLibraryAccessor&) override;
    void OnEndChanges(ItemLibraryAccessor&) override;
    void LibraryInvalidated(ItemLibraryAccessor&) override;
    void ItemNameChanged(ItemLibraryAccessor&, const ItemID& in_item) override;
    void ItemTagsChanged(ItemLibraryAccessor&, const ItemID& in_item, const char* in_key) override;
    void ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID& in_item, long in_state) override;
    void OnPreCommit(ItemLibraryAccessor&, bool* out_veto) override;
    void OnPostCommit(ItemLibraryAccessor&) override;

    FaultyLibrary& m_library;
    IItemTOCNotification* const m_toc;
    IItemLibraryNotification* const m_observer;

private:
    template <class Call> void Pass(const Call& in_call);
};

class FaultyLibrary : public IContext,
                      public IItemLibrary,
                      public IItemTOC,
                      public IItemLibraryModifier,
                      public ILowLevelItemLibrary,
                      public std::enable_shared_from_this<FaultyLibrary>
{
public:
    FaultyLibrary(eFault in_fault, const ItemLibraryAccessor& in_inner)
        : m_fault(in_fault), m_inner(in_inner), m_innerTOC(in_inner)
    {
    }

    ItemLibraryAccessor GetAccessor() { return ItemLibraryAccessor(UnspecifiedAccessor(shared_from_this())); }
    const ItemLibraryAccessor& GetInner() const { return m_inner; }

    bool IsAlive() const override { return m_inner.IsValid() || m_fault == eClosedLibraryStaysValid; }

    // IItemLibrary
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override
    {
        const std::string name = m_inner.GetItemName(in_item, in_displayName, in_scope);
        if (m_fault == eReadNotifies)
            for (const std::unique_ptr<Relay>& relay : m_relays)
                if (relay->m_observer)
                    relay->OnPostCommit(const_cast<ItemLibraryAccessor&>(m_inner));
        if (m_fault == eNameIsUTF8)
            return QString::fromLatin1(name.c_str()).toUtf8().constData();
        if (m_fault != eGoneItemsAnswer)
            return name;
        return name.empty() ? m_names[in_item] : m_names[in_item] = name;
    }

    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        if (m_fault == eGoneItemsThrow && !m_inner.GetModel(in_item, nullptr).IsValid())
            throw std::runtime_error("no such row");
        if (m_fault == eReadRunsTheEventLoop)
            QCoreApplication::processEvents();
        return m_inner.GetItemTags(in_item, in_key);
    }

    bool ItemIsReadOnly(const ItemID& in_item) const override
    {
        return m_fault != eReadOnlyIsForgotten && m_inner.ItemIsReadOnly(in_item);
    }

    bool ItemIsDirty(const ItemID& in_item) const override
    {
        return m_fault != eDirtinessIsForgotten && m_inner.ItemIsDirty(in_item);
    }

    UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        if (m_fault == eSolverOffersACompound && in_item.GetType() == VireoType::gSolver)
            return UnspecifiedAccessor(std::make_shared<SolverModel>(in_item));
        return m_inner.GetModel(in_item, out_error);
    }

    void AddObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_inner.AddObserver(RelayTo(nullptr, in_observer), in_kind, InnerContext(in_context));
    }

    void RemoveObserver(IItemLibraryNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        for (Relay* const relay : RelaysTo(nullptr, in_observer))
            m_inner.RemoveObserver(relay, in_kind, InnerContext(in_context));
    }

    // IItemTOC
    std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const override
    {
        const char* const type = m_fault == eTypesAreComparedByCharacters ? ConstantOf(in_type) : in_type;
        return std::unique_ptr<IItemIterator>(new FaultyIterator(m_fault, m_innerTOC, type));
    }

    void AddObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        m_innerTOC.AddObserver(RelayTo(in_observer, nullptr), in_kind, InnerContext(in_context));
    }

    void RemoveObserver(IItemTOCNotification* in_observer, int in_kind, const ContextPtr& in_context) override
    {
        for (Relay* const relay : RelaysTo(in_observer, nullptr))
            m_innerTOC.RemoveObserver(relay, in_kind, InnerContext(in_context));
    }

    // IItemLibraryModifier
    bool CommitToDisk(bool& out_written, std::list<std::string>* out_messages, bool in_everything,
                      const nexa4::TezUID& in_source) override
    {
        return GetWriter().CommitToDisk(out_written, out_messages, in_everything, in_source);
    }

    bool SetItemTags(const ItemID& in_item, const char* in_key, const char* in_tags,
                     hmx::fwk::ICommandManager* in_commands) override
    {
        const bool hasThem = in_key && m_inner.GetItemTags(in_item, in_key) == (in_tags ? in_tags : "");
        if (m_fault == eTagsNotifyBeforeTheChange && !hasThem)
        {
            NotifyTags(in_item, in_key);
            m_isSilent = true;
        }
        const QByteArray trimmed = QByteArray(in_tags).trimmed();
        const bool isSet = GetWriter().SetItemTags(
            in_item, in_key, m_fault == eTagsAreTrimmed ? trimmed.constData() : in_tags, in_commands);
        m_isSilent = false;
        if (m_fault == eUnchangedTagsNotify && hasThem)
            NotifyTags(in_item, in_key);
        return isSet || m_fault == eRefusedTagsAreReportedAsSet;
    }

    ContextPtr CreateCompound(const char* in_name, bool in_signature, const char* in_baseClass, const char* in_category,
                              hmx::fwk::ICommandManager* in_commands) override
    {
        return GetWriter().CreateCompound(in_name, in_signature, in_baseClass, in_category, in_commands);
    }

    ContextPtr CreateLoopCompound(const char* in_name, const char* in_baseClass, const char* in_category,
                                  hmx::fwk::ICommandManager* in_commands) override
    {
        return GetWriter().CreateLoopCompound(in_name, in_baseClass, in_category, in_commands);
    }

    // ILowLevelItemLibrary
    bool PreCommit() override { return LowLevelItemLibraryAccessor(m_inner).PreCommit(); }

    const eFault m_fault;
    bool m_isSilent = false;
    int m_calls = 0; ///< how many notifications are under way

private:
    ContextPtr InnerContext(const ContextPtr& in_context) const
    {
        return in_context.get() == this ? m_inner.GetContext() : in_context;
    }

    IItemLibraryModifier& GetWriter() { return dynamic_cast<IItemLibraryModifier&>(*m_inner.GetContext()); }

    /// The relay of an observer; a new one when there is none. The library in memory registers a relay once, whatever
    /// the wrapper does.
    Relay* RelayTo(IItemTOCNotification* in_toc, IItemLibraryNotification* in_observer)
    {
        if (!in_toc && !in_observer)
            return nullptr;
        const std::vector<Relay*> relays = RelaysTo(in_toc, in_observer);
        if (!relays.empty() && m_fault != eObserversAreRegisteredTwice)
            return relays.front();
        m_relays.emplace_back(new Relay(*this, in_toc, in_observer));
        return m_relays.back().get();
    }

    std::vector<Relay*> RelaysTo(IItemTOCNotification* in_toc, IItemLibraryNotification* in_observer) const
    {
        std::vector<Relay*> relays;
        if (m_fault == eRemovedObserversAreCalled && m_calls > 0)
            return relays;
        for (const std::unique_ptr<Relay>& relay : m_relays)
            if (relay->m_toc == in_toc && relay->m_observer == in_observer)
                relays.push_back(relay.get());
        return relays;
    }

    void NotifyTags(const ItemID& in_item, const char* in_key)
    {
        ItemLibraryAccessor self = GetAccessor();
        for (const std::unique_ptr<Relay>& relay : m_relays)
            if (relay->m_observer)
            {
                relay->OnBeginChanges(self);
                relay->ItemTagsChanged(self, in_item, in_key);
                relay->OnEndChanges(self);
            }
    }

    const ItemLibraryAccessor m_inner;
    const ItemTOCAccessor m_innerTOC;
    std::vector<std::unique_ptr<Relay>> m_relays; ///< they live on, since one may be removed inside its call
    mutable std::map<ItemID, std::string> m_names;
};

template <class Call> void Relay::Pass(const Call& in_call)
{
    if (m_library.m_isSilent)
        return;
    ItemLibraryAccessor self = m_library.GetAccessor();
    ++m_library.m_calls;
    in_call(self);
    --m_library.m_calls;
}

void Relay::ItemAdded(ItemAccessor& in_item)
{
    if (m_library.m_fault != eAdditionIsSilent)
        Pass([&](ItemLibraryAccessor&) { m_toc->ItemAdded(in_item); });
}

void Relay::ItemRemoved(ItemAccessor& in_item)
{
    Pass([&](ItemLibraryAccessor&) { m_toc->ItemRemoved(in_item); });
}

void Relay::OnBeginChanges(ItemLibraryAccessor&)
{
    if (m_library.m_fault != eBracketsAreMissing)
        Pass([&](ItemLibraryAccessor& in_library) { m_observer->OnBeginChanges(in_library); });
}

void Relay::OnEndChanges(ItemLibraryAccessor&)
{
    if (m_library.m_fault != eBracketsAreMissing)
        Pass([&](ItemLibraryAccessor& in_library) { m_observer->OnEndChanges(in_library); });
}

void Relay::LibraryInvalidated(ItemLibraryAccessor&)
{
    Pass([&](ItemLibraryAccessor& in_library) { m_observer->LibraryInvalidated(in_library); });
}

void Relay::ItemNameChanged(ItemLibraryAccessor&, const ItemID& in_item)
{
    if (m_library.m_fault != eRenamingIsSilent)
        Pass([&](ItemLibraryAccessor& in_library) { m_observer->ItemNameChanged(in_library, in_item); });
}

void Relay::ItemTagsChanged(ItemLibraryAccessor&, const ItemID& in_item, const char* in_key)
{
    const int times = m_library.m_fault == eTagsAreSilent ? 0 : m_library.m_fault == eTagsNotifyTwice ? 2 : 1;
    for (int i = 0; i < times; ++i)
        Pass([&](ItemLibraryAccessor& in_library) { m_observer->ItemTagsChanged(in_library, in_item, in_key); });
}

void Relay::ItemAccessStateChanged(ItemLibraryAccessor&, const ItemID& in_item, long in_state)
{
    Pass([&](ItemLibraryAccessor& in_library) { m_observer->ItemAccessStateChanged(in_library, in_item, in_state); });
}

void Relay::OnPreCommit(ItemLibraryAccessor&, bool* out_veto)
{
    bool ignored = false;
    bool* const veto = m_library.m_fault == eVetoIsIgnored ? &ignored : out_veto;
    Pass([&](ItemLibraryAccessor& in_library) { m_observer->OnPreCommit(in_library, veto); });
}

void Relay::OnPostCommit(ItemLibraryAccessor&)
{
    Pass([&](ItemLibraryAccessor& in_library) { m_observer->OnPostCommit(in_library); });
}

ItemTOCAccessor FaultyModel::GetTOC(const ItemLibraryAccessor& in_library)
{
    return ItemTOCAccessor(in_library);
}

bool FaultyModel::IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name)
{
    const ItemLibraryAccessor& inner = dynamic_cast<FaultyLibrary&>(*in_library.GetContext()).GetInner();
    if (m_inner->IsNameInNodeLibraryHierarchy(inner, in_name))
        return true;
    if (m_fault != eCaseOfNamesIsIgnored || !in_name)
        return false;
    std::string capitalised = in_name;
    if (!capitalised.empty())
        capitalised[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(capitalised[0])));
    return m_inner->IsNameInNodeLibraryHierarchy(inner, capitalised.c_str());
}

bool FaultyModel::IsAbstractFunction(ItemAccessor& in_item)
{
    ItemAccessor item = Unwrapped(in_item);
    return m_fault != eSignaturesAreNotTold && m_inner->IsAbstractFunction(item);
}

bool FaultyModel::IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item)
{
    ItemAccessor item = Unwrapped(in_item);
    return m_inner->IsValidGraphItemType(in_typeName, item);
}

void FaultyModel::SetGlobalVireoCompoundTarget(const CompoundAccessor& in_target, const CompoundAccessor& in_root)
{
    m_inner->SetGlobalVireoCompoundTarget(in_target, in_root);
}

const char* FaultyModel::GetItemIDUID(const ItemID& in_item)
{
    return m_inner->GetItemIDUID(in_item);
}

hmx::fwk::ICommandManager* FaultyModel::GetApplicationCommandManager()
{
    return m_inner->GetApplicationCommandManager();
}

FaultyFixture::FaultyFixture(eFault in_fault)
    : m_inner(InstallProvider(Provider())),
      m_model(in_fault),
      m_library(std::make_shared<FaultyLibrary>(in_fault, MemoryFixture::GetLibrary()))
{
    m_model.m_inner = m_inner.m_items;
    Provider provider = m_inner;
    provider.m_items = &m_model;
    InstallProvider(provider);
}

FaultyFixture::~FaultyFixture()
{
    InstallProvider(m_inner);
}

unsigned FaultyFixture::GetFeatures() const
{
    return contract::eAllFeatures & ~unsigned(contract::eServices | contract::eSeveralLayers);
}

ItemLibraryAccessor FaultyFixture::GetLibrary()
{
    return m_library->GetAccessor();
}

void FaultyFixture::Undo()
{
    m_library->m_isSilent = m_library->m_fault == eUndoIsSilent;
    MemoryFixture::Undo();
    m_library->m_isSilent = false;
}

} // namespace faulty
