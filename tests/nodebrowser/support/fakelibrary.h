// SPDX-License-Identifier: MIT
/// A data layer of plain fields: it counts what it is asked, and does what a well-behaved one never does.
#pragma once

#include "datamodel/helpers.h"
#include "datamodel/provider.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// An item, which is its own model. Every field may be changed at any time; nobody is told.
struct FakeItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem, public vireo::datamodel::ICompound
{
    bool IsAlive() const override { return m_alive; }
    vireo::datamodel::ItemID GetItemID() const override { return m_id; }
    vireo::datamodel::CSimpleValue GetValue(const char*) const override { return vireo::datamodel::CSimpleValue(); }

    vireo::datamodel::ItemID m_id;
    const char* m_listedAs = nullptr; ///< the list of the table of contents that has the item
    std::string m_name;
    bool m_dirty = false;
    bool m_alive = true;
    int m_nameReads = 0;
    int m_dirtyReads = 0;
};

/// The items of one list as they were when the walk began.
class FakeIterator : public vireo::datamodel::IItemIterator
{
public:
    explicit FakeIterator(std::vector<std::shared_ptr<FakeItem>> in_items) : m_items(std::move(in_items)) {}
    bool IsAtEnd() const override { return m_next >= m_items.size(); }
    void Next() override { ++m_next; }
    vireo::datamodel::ItemAccessor GetItem() const override
    {
        vireo::datamodel::ItemAccessor item;
        item.ResetContext(m_items[m_next]);
        item.RefreshInterfacePointer();
        return item;
    }

private:
    std::vector<std::shared_ptr<FakeItem>> m_items;
    std::size_t m_next = 0;
};

/// The library's context, which is its own table of contents.
struct FakeContents : public vireo::datamodel::IContext,
                      public vireo::datamodel::IItemLibrary,
                      public vireo::datamodel::IItemTOC
{
    using ItemID = vireo::datamodel::ItemID;
    using ContextPtr = vireo::datamodel::ContextPtr;

    FakeItem* Find(const ItemID& in_item) const
    {
        for (const std::shared_ptr<FakeItem>& item : m_items)
            if (item->m_id == in_item)
                return item.get();
        return nullptr;
    }

    bool IsAlive() const override { return true; }
    std::string GetItemName(const ItemID& in_item, bool, const char*) const override
    {
        FakeItem* const item = Find(in_item);
        if (!item)
            return std::string();
        ++item->m_nameReads;
        return item->m_name;
    }
    std::string GetItemTags(const ItemID&, const char*) const override { return std::string(); }
    bool ItemIsReadOnly(const ItemID&) const override { return false; }
    bool ItemIsDirty(const ItemID& in_item) const override
    {
        FakeItem* const item = Find(in_item);
        if (!item)
            return false;
        ++item->m_dirtyReads;
        return item->m_dirty;
    }
    vireo::datamodel::UnspecifiedAccessor GetModel(const ItemID& in_item, std::string*) const override
    {
        for (const std::shared_ptr<FakeItem>& item : m_items)
            if (item->m_id == in_item)
                return vireo::datamodel::UnspecifiedAccessor(item);
        return vireo::datamodel::UnspecifiedAccessor();
    }
    void AddObserver(vireo::datamodel::IItemLibraryNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification*, int, const ContextPtr&) override {}

    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        ++m_walks;
        std::vector<std::shared_ptr<FakeItem>> items;
        for (const std::shared_ptr<FakeItem>& item : m_items)
            if (item->m_listedAs == in_type)
                items.push_back(item);
        return std::unique_ptr<vireo::datamodel::IItemIterator>(new FakeIterator(std::move(items)));
    }
    void AddObserver(vireo::datamodel::IItemTOCNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(vireo::datamodel::IItemTOCNotification*, int, const ContextPtr&) override {}

    std::vector<std::shared_ptr<FakeItem>> m_items;
    mutable int m_walks = 0;
};

/// A library that is a data layer by itself: making one installs it, destroying it puts back what was there before.
/// There are no services, and no item has a database object.
class FakeLibrary : private vireo::datamodel::IItemModel
{
public:
    FakeLibrary() : m_contents(new FakeContents)
    {
        Provider provider;
        provider.m_items = this;
        m_before = InstallProvider(provider);
    }
    ~FakeLibrary() override { InstallProvider(m_before); }
    FakeLibrary(const FakeLibrary&) = delete;
    FakeLibrary& operator=(const FakeLibrary&) = delete;

    vireo::datamodel::ItemLibraryAccessor GetAccessor() const { return View<vireo::datamodel::ItemLibraryAccessor>(); }

    FakeItem& Add(const char* in_type, const std::string& in_name) { return AddAs(in_type, in_type, in_name); }

    /// Adds an item whose identity has another type name than the list that it stands in.
    FakeItem& AddAs(const char* in_listedAs, const char* in_type, const std::string& in_name)
    {
        const std::uint64_t space = 0xFA4Eu;
        const std::shared_ptr<FakeItem> item(new FakeItem);
        item->m_id = vireo::datamodel::ItemID(in_type, space, m_contents->m_items.size() + 1);
        item->m_listedAs = in_listedAs;
        item->m_name = in_name;
        m_contents->m_items.push_back(item);
        return *item;
    }

    /// Adds solvers named "Node 000", "Node 001" and so on.
    void AddNodes(int in_count)
    {
        for (int i = 0; i < in_count; ++i)
        {
            const std::string number = std::to_string(i);
            Add(vireo::datamodel::VireoType::gSolver,
                "Node " + std::string(number.size() < 3 ? 3 - number.size() : 0, '0') + number);
        }
    }

    FakeItem& GetItem(int in_index) const { return *m_contents->m_items[static_cast<std::size_t>(in_index)]; }

    void ForgetCounts()
    {
        m_contents->m_walks = 0;
        for (const std::shared_ptr<FakeItem>& item : m_contents->m_items)
            item->m_nameReads = item->m_dirtyReads = 0;
    }

    /// How often one of the lists was walked. Each rebuild walks all five.
    int GetWalks() const { return m_contents->m_walks; }

    /// What was made the global compound target, and inside of what, in the order of the calls.
    std::vector<vireo::datamodel::CompoundAccessor> m_targets;
    std::vector<vireo::datamodel::CompoundAccessor> m_roots;

private:
    template <class Accessor> Accessor View() const
    {
        Accessor accessor;
        accessor.ResetContext(m_contents);
        accessor.RefreshInterfacePointer();
        return accessor;
    }

    vireo::datamodel::ItemTOCAccessor GetTOC(const vireo::datamodel::ItemLibraryAccessor& in_library) override
    {
        return in_library.IsValid() ? View<vireo::datamodel::ItemTOCAccessor>() : vireo::datamodel::ItemTOCAccessor();
    }
    bool IsNameInNodeLibraryHierarchy(const vireo::datamodel::ItemLibraryAccessor&, const char*) override
    {
        return false;
    }
    bool IsAbstractFunction(vireo::datamodel::ItemAccessor&) override { return false; }
    bool IsValidGraphItemType(const char*, vireo::datamodel::ItemAccessor&) override { return true; }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        m_targets.push_back(in_target);
        m_roots.push_back(in_root);
    }
    const char* GetItemIDUID(const vireo::datamodel::ItemID&) override { return ""; }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return nullptr; }

    std::shared_ptr<FakeContents> m_contents;
    Provider m_before;
};
