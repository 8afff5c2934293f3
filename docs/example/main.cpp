// A browser on a library of its own: the smallest data layer that shows rows.
#include <datamodel/provider.h>
#include <nodebrowser/nodebrowser.h>

#include <QApplication>

#include <algorithm>
#include <vector>

using namespace vireo::datamodel;

struct Item : IContext, IItem
{
    Item(const char* in_type, std::uint64_t in_number, const char* in_name, const char* in_tags)
        : m_id(in_type, 1, in_number), m_name(in_name), m_tags(in_tags) {}
    bool IsAlive() const override { return true; }
    ItemID GetItemID() const override { return m_id; }
    CSimpleValue GetValue(const char*) const override { return CSimpleValue(); }
    ItemID m_id;
    std::string m_name, m_tags;
};

using Items = std::vector<std::shared_ptr<Item>>;

struct Iterator : IItemIterator
{
    explicit Iterator(const Items& in_items) : m_items(in_items) {}
    bool IsAtEnd() const override { return m_next == m_items.size(); }
    void Next() override { ++m_next; }
    ItemAccessor GetItem() const override { return ItemAccessor(UnspecifiedAccessor(m_items[m_next])); }
    Items m_items;
    std::size_t m_next = 0;
};

struct Library : IContext, IItemLibrary, IItemTOC
{
    bool IsAlive() const override { return true; }
    std::string GetItemName(const ItemID& in_id, bool, const char*) const override { return Find(in_id).m_name; }
    std::string GetItemTags(const ItemID& in_id, const char*) const override { return Find(in_id).m_tags; }
    bool ItemIsReadOnly(const ItemID&) const override { return true; }
    bool ItemIsDirty(const ItemID&) const override { return false; }
    UnspecifiedAccessor GetModel(const ItemID&, std::string*) const override { return UnspecifiedAccessor(); }
    std::unique_ptr<IItemIterator> IterateItems(const char* in_type) const override
    {
        return std::make_unique<Iterator>(in_type == VireoType::gSolver ? m_items : Items());
    }
    // A library that never changes has nothing to tell anybody.
    void AddObserver(IItemLibraryNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(IItemLibraryNotification*, int, const ContextPtr&) override {}
    void AddObserver(IItemTOCNotification*, int, const ContextPtr&) override {}
    void RemoveObserver(IItemTOCNotification*, int, const ContextPtr&) override {}
    const Item& Find(const ItemID& in_id) const { return **std::find_if(m_items.begin(), m_items.end(), [&](const auto& in_item) { return in_item->m_id == in_id; }); }
    Items m_items;
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
    Provider provider;
    provider.m_items = &model;
    InstallProvider(provider);
    const auto library = std::make_shared<Library>();
    library->m_items = {std::make_shared<Item>(VireoType::gSolver, 1, "Add", "math"), std::make_shared<Item>(VireoType::gSolver, 2, "Noise", "pattern")};
    CNodeBrowser browser(eConfigNodeBrowser);
    browser.SetItemLibrary(ItemLibraryAccessor(UnspecifiedAccessor(library)));
    browser.show();
    return application.exec();
}
