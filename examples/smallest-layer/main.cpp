// SPDX-License-Identifier: MIT
// The smallest data layer of a host of its own that shows rows: read only, and it never changes.
#include <datamodel/provider.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>

using namespace vireo::datamodel;

struct Item : IContext, IItem
{
    Item(std::uint64_t in_number, const std::string& in_name) : m_id(VireoType::gSolver, 1, in_number), m_name(in_name)
    {
    }
    bool IsAlive() const override { return true; }
    ItemID GetItemID() const override { return m_id; }
    CSimpleValue GetValue(const char*) const override { return CSimpleValue(); }
    ItemID m_id;
    std::string m_name;
};

struct Iterator : IItemIterator
{
    bool IsAtEnd() const override { return m_items.empty(); }
    void Next() override { m_items.pop_back(); }
    ItemAccessor GetItem() const override { return ItemAccessor(UnspecifiedAccessor(m_items.back())); }
    std::vector<std::shared_ptr<Item>> m_items;
};

struct Library : IContext, IItemLibrary, IItemTOC
{
    bool IsAlive() const override { return true; }
    std::string GetItemName(const ItemID& in_item, bool, const char*) const override
    {
        return in_item.IsValid() ? m_solvers[in_item.GetNumber()]->m_name : std::string();
    }
    std::string GetItemTags(const ItemID&, const char*) const override { return "my tag"; }
    bool ItemIsReadOnly(const ItemID&) const override { return true; }
    bool ItemIsDirty(const ItemID&) const override { return false; }
    UnspecifiedAccessor GetModel(const ItemID&, std::string*) const override { return UnspecifiedAccessor(); }
    std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const override
    {
        auto items = std::make_unique<Iterator>();
        if (in_type == VireoType::gSolver)
            items->m_items = m_solvers;
        return items;
    }
    // A library that never changes has nothing to tell anybody.
    void AddObserver(IItemLibraryNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(IItemLibraryNotification*, int, const ContextPtr&) override {}
    void AddObserver(IItemTOCNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(IItemTOCNotification*, int, const ContextPtr&) override {}
    std::vector<std::shared_ptr<Item>> m_solvers;
};

struct Model : IItemModel
{
    ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override { return ItemTOCAccessor(in_library); }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor&, const char*) override { return false; }
    bool IsAbstractFunction(ItemAccessor&) override { return false; }
    bool IsValidGraphItemType(const char*, ItemAccessor&) override { return true; }
    void SetGlobalVireoCompoundTarget(const CompoundAccessor&, const CompoundAccessor&) override {}
    const char* GetItemIDUID(const ItemID&) override { return ""; }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override { return nullptr; }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Model model;
    InstallProvider(Provider{nullptr, &model, nullptr, nullptr});
    const auto library = std::make_shared<Library>();
    for (const char* const name : {"Add", "Blend", "Noise"})
        library->m_solvers.push_back(std::make_shared<Item>(library->m_solvers.size(), name));
    CNodeBrowser browser(eConfigNodeBrowser);
    browser.SetItemLibrary(ItemLibraryAccessor(UnspecifiedAccessor(library)));
    browser.resize(300, 400);
    browser.show();
    return application.exec();
}
