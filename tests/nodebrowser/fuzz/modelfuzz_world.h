// SPDX-License-Identifier: MIT
/// The data layer of the fuzz: its libraries, and what may happen to them while somebody works with a browser.
#pragma once

#include "memorymodel/datalayer.h"
#include "tests/support/random.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// What an item was made with and no accessor tells.
struct Traits
{
    bool m_listed = true;
    bool m_uid = true;
    bool m_object = true;
    bool m_builtIn = false;
    bool m_loaded = true;
};

/// The libraries of a run and the switches around them. Act() does one random thing of all that a data layer may do.
class World : private vireo::datamodel::IItemTOCNotification
{
public:
    using ItemID = vireo::datamodel::ItemID;

    World(memorymodel::DataLayer& in_layer, Random& in_random) : m_layer(in_layer), m_random(in_random)
    {
        SetSystem(true);
        SetHelper(true);
        m_active = m_enabled = true;
        m_layer.GetSourceControl().SetVersionControlActive(true);
        m_layer.GetSourceControl().SetEnabled(true);
        AddLibrary(true);
        for (int i = 0; i < 3; ++i)
            AddLibrary(false);
    }

    ~World() override
    {
        m_layer.GetCommandManager().GetStack().clear();
        while (!m_libraries.empty())
            RemoveLibrary(0);
        SetSystem(true);
        SetHelper(true);
        m_layer.GetSourceControl().SetVersionControlActive(false);
        m_layer.GetSourceControl().SetHasProperties(true);
        m_layer.GetSourceControl().SetEnabled(false);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    bool HasHelper() const { return m_system && m_helper; }
    bool HasSystem() const { return m_system; }
    bool IsVersionControlActive() const { return m_active; }
    /// What the properties manager says.
    bool IsEnabledByProperties() const { return m_hasProperties && m_enabled; }
    memorymodel::DataLayer& GetLayer() const { return m_layer; }

    Traits GetTraits(const ItemID& in_item) const
    {
        const std::map<ItemID, Traits>::const_iterator found = m_traits.find(in_item);
        return found == m_traits.end() ? Traits() : found->second;
    }

    bool IsSignature(const ItemID& in_item) const
    {
        for (const memorymodel::Library* library : m_libraries)
            if (library->IsSignature(in_item))
                return true;
        return false;
    }

    const memorymodel::DataSource* GetSourceOf(const ItemID& in_item) const
    {
        for (const memorymodel::Library* library : m_libraries)
            if (const memorymodel::DataSource* const source = library->GetSourceOf(in_item))
                return source;
        return nullptr;
    }

    /// Whether a source holds one of the factory objects.
    bool IsFactorySource(const memorymodel::DataSource* in_source) const
    {
        return in_source && (in_source == LastSource(memorymodel::eFactorySource) ||
                             in_source == LastSource(memorymodel::eSecondFactorySource));
    }

    /// A few items that may be anywhere.
    ItemID AnyItem()
    {
        if (m_libraries.empty())
            return ItemID();
        const std::vector<ItemID> items = AnyLibrary().GetItems();
        return items.empty() ? ItemID() : items[Index(items.size())];
    }

    /// Something to attach: a library, a closed one, or none.
    vireo::datamodel::ItemLibraryAccessor AnyAccessor(QString& out_text)
    {
        if (m_random.OneIn(8) || m_libraries.empty())
        {
            out_text = QString::fromLatin1("no library");
            return vireo::datamodel::ItemLibraryAccessor();
        }
        memorymodel::Library& library = *m_libraries[Index(m_libraries.size())];
        m_attached = &library;
        out_text = QString::fromLatin1("library %1").arg(QString::fromLatin1(library.GetName().c_str()));
        return library.GetAccessor();
    }

    /// One random thing. While an observer is being told, the undo stack is left alone.
    QString Act(bool in_insideNotification)
    {
        const int what = m_random.Below(100);
        if (what < 50)
            return ActOnItems(in_insideNotification);
        if (what < 72)
            return in_insideNotification ? ActOnItems(true) : ActOnStack();
        if (what < 94)
            return ActOnSwitches();
        return ActOnLibraries();
    }

    /// Called after the properties manager has told its slots.
    std::function<void()> m_propertiesChanged;

private:
    enum
    {
        eMostItems = 50
    };

    std::size_t Index(std::size_t in_size)
    {
        return static_cast<std::size_t>(m_random.Below(static_cast<int>(in_size)));
    }
    /// Often the one that was attached last.
    memorymodel::Library& AnyLibrary()
    {
        return m_attached && m_random.OneIn(2) ? *m_attached : *m_libraries[Index(m_libraries.size())];
    }

    hmx::fwk::ICommandManager* AnyCommands() { return m_random.OneIn(3) ? nullptr : &m_layer.GetCommandManager(); }

    std::string AnyName()
    {
        static const char* const names[] = {
            "Blend", "blend", "BLEND", "Add", "add", "Zed", "_a", "[x]", "a b",       "\xC4rger", "\xE4rger", "Noise 2",
            "x y z", "A;B",   "",      "Mix", "mIX", "ab",  "ba", "Cab", "Condition", "\xDF",     "Z",        "zz"};
        std::string name = m_random.OneOf(names);
        if (m_random.OneIn(3))
            name += std::to_string(m_random.Below(10));
        return name;
    }

    std::string AnyTags()
    {
        static const char* const tags[] = {"",  "a",     "a;b",    "color;mix", ";",        "a;;b",
                                           "Z", "BLEND", "\xC4;x", "Compound",  "State;ab", "type;noise"};
        return m_random.OneOf(tags);
    }

    memorymodel::NewItem AnyKind(const std::string& in_name)
    {
        switch (m_random.Below(9))
        {
        case 0:
            return memorymodel::NewItem::LoopCompound(in_name);
        case 1:
            return memorymodel::NewItem::Signature(in_name);
        case 2:
            return memorymodel::NewItem::Solver(in_name);
        case 3:
            return memorymodel::NewItem::PolymorphicSolver(in_name);
        case 4:
            return memorymodel::NewItem::GlobalConstant(in_name);
        case 5:
        case 6:
            return memorymodel::NewItem::Type(in_name);
        default:
            return memorymodel::NewItem::Compound(in_name);
        }
    }

    QString Add(memorymodel::Library& in_library)
    {
        const std::string name = AnyName();
        memorymodel::NewItem item = AnyKind(name);
        Traits traits;
        item.Tags(AnyTags());
        const std::vector<std::shared_ptr<memorymodel::DataSource>>& sources = in_library.GetDataSources();
        if (!sources.empty())
            item.In(*sources[Index(sources.size())]);
        switch (m_random.Below(24))
        {
        case 0:
            item.Parent("Somebody");
            traits.m_listed = false;
            break;
        case 1:
            item.Specializes("Something");
            traits.m_listed = false;
            break;
        case 2:
            item.NotForGraphs();
            traits.m_listed = false;
            break;
        case 3:
            item.WithoutUID();
            traits.m_uid = traits.m_object = false;
            break;
        case 4:
            item.WithoutObject();
            traits.m_object = false;
            break;
        case 5:
        case 6:
            item.BuiltIn();
            traits.m_builtIn = true;
            break;
        case 7:
            item.BuiltIn();
            item.Unloaded();
            traits.m_builtIn = true;
            traits.m_loaded = false;
            break;
        case 8:
            item.ReadOnly();
            break;
        default:
            break;
        }
        // Another item may be on its way already: whoever adds this one may do so as that one's change begins.
        const Traits* const outerTraits = m_traitsToCome;
        const std::string outerName = m_nameToCome;
        m_traitsToCome = &traits;
        m_nameToCome = name;
        in_library.Add(item);
        m_traitsToCome = outerTraits;
        m_nameToCome = outerName;
        return Text("add ") + Text(name);
    }

    // The world is told first of all, so that it knows the item when anybody asks. Whoever acts when a change begins
    // may add other items before the one that is to come: those made by commands, which have no traits of their own.
    void ItemAdded(vireo::datamodel::ItemAccessor& in_item) override
    {
        const ItemID id = in_item.GetItemID();
        if (m_traits.find(id) != m_traits.end())
            return;
        const bool awaited = m_traitsToCome && NameOf(id) == m_nameToCome;
        m_traits[id] = awaited ? *m_traitsToCome : Traits();
        if (awaited)
            m_traitsToCome = nullptr;
    }
    std::string NameOf(const ItemID& in_item) const
    {
        for (const memorymodel::Library* library : m_libraries)
            if (library->GetSourceOf(in_item))
                return library->GetAccessor().GetItemName(in_item, true, nullptr);
        return std::string();
    }
    void ItemRemoved(vireo::datamodel::ItemAccessor&) override {}

    QString ActOnItems(bool in_insideNotification)
    {
        if (m_libraries.empty())
            return Text("nothing");
        memorymodel::Library& library = AnyLibrary();
        const std::vector<ItemID> items = library.GetItems();
        const int what = m_random.Below(12);
        if (items.empty() || (what < 3 && items.size() < eMostItems))
            return Add(library);
        const ItemID item = items[Index(items.size())];
        const QString which = Text(library.GetAccessor().GetItemName(item, true, nullptr));
        hmx::fwk::ICommandManager* const commands = AnyCommands();
        if (what < 5)
        {
            library.Remove(item, commands);
            return Text("remove ") + which;
        }
        if (what < 7)
        {
            const std::string name = AnyName();
            library.Rename(item, name, commands);
            return Text("rename ") + which + Text(" to ") + Text(name);
        }
        if (what < 9)
        {
            const std::string tags = AnyTags();
            library.SetTags(item, tags, commands);
            return Text("tag ") + which + Text(" as ") + Text(tags);
        }
        if (what < 11 || in_insideNotification)
        {
            const unsigned state = static_cast<unsigned>(m_random.Below(9));
            m_layer.GetSourceControl().SetState(item, state);
            return Text("state of ") + which + Text(" is ") + QString::number(state);
        }
        const int count = m_random.Between(5, 20);
        for (int i = 0; i < count && library.GetItemCount() < eMostItems; ++i)
            Add(library);
        return Text("add many");
    }
    QString ActOnStack()
    {
        QUndoStack& stack = m_layer.GetCommandManager().GetStack();
        const int what = m_random.Below(20);
        if (what == 0)
        {
            stack.clear();
            return Text("forget what can be undone");
        }
        const bool undo = what < 12;
        const int steps = m_random.OneIn(4) ? m_random.Between(2, 6) : 1;
        for (int i = 0; i < steps; ++i)
            undo ? stack.undo() : stack.redo();
        return Text(undo ? "undo" : "redo");
    }
    QString ActOnSwitches()
    {
        memorymodel::SourceControl& sourceControl = m_layer.GetSourceControl();
        // Mostly everything is on, so that there is something to be seen of it.
        const bool on = !m_random.OneIn(4);
        const QString text = Text(on ? " on" : " off");
        switch (m_random.Below(8))
        {
        case 0:
            SetHelper(on);
            return Text("helper") + text;
        case 1:
            SetSystem(on);
            return Text("system") + text;
        case 2:
            m_active = on;
            sourceControl.SetVersionControlActive(on);
            return Text("version control") + text;
        case 3:
        case 4:
        {
            const bool changed = m_enabled != on;
            m_enabled = on;
            sourceControl.SetEnabled(on);
            if (changed && m_propertiesChanged)
                m_propertiesChanged();
            return Text("source control") + text;
        }
        case 5:
        {
            const bool changed = m_hasProperties != on;
            m_hasProperties = on;
            sourceControl.SetHasProperties(on);
            if (changed && m_propertiesChanged)
                m_propertiesChanged();
            return Text("properties") + text;
        }
        case 6:
            sourceControl.DeliverRequestedStates();
            return Text("deliver states");
        default:
            return SwitchSource();
        }
    }
    QString SwitchSource()
    {
        if (m_libraries.empty())
            return Text("nothing");
        const std::vector<std::shared_ptr<memorymodel::DataSource>>& sources = AnyLibrary().GetDataSources();
        if (sources.empty())
            return Text("nothing");
        memorymodel::DataSource& source = *sources[Index(sources.size())];
        source.SetReadOnly(!source.IsReadOnly());
        return Text("source ") + Text(source.GetName()) + Text(source.IsReadOnly() ? " closed" : " open");
    }
    QString ActOnLibraries()
    {
        const int what = m_random.Below(12);
        if (m_libraries.size() < 3 || what == 0)
        {
            AddLibrary(false);
            return Text("a new library");
        }
        memorymodel::Library& library = AnyLibrary();
        const QString name = Text(library.GetName());
        if (what < 9)
        {
            library.Invalidate();
            return Text("invalidate ") + name;
        }
        if (what < 11)
        {
            library.Close();
            return Text("close ") + name;
        }
        RemoveLibrary(Index(m_libraries.size()));
        return Text("remove a library");
    }

    /// The source that a factory object is in: of all open libraries the last one that was made for it.
    const memorymodel::DataSource* LastSource(unsigned in_flag) const
    {
        const memorymodel::DataSource* last = nullptr;
        for (const memorymodel::Library* library : m_libraries)
            for (const auto& source : library->GetDataSources())
                if (library->GetAccessor().IsValid() && (source->GetFlags() & in_flag) != 0)
                    last = source.get();
        return last;
    }

    void AddLibrary(bool in_factory)
    {
        static const unsigned flags[] = {memorymodel::ePlainSource, memorymodel::eReadOnlySource};
        memorymodel::Library& library = m_layer.AddLibrary("L" + std::to_string(++m_librariesMade));
        library.AddDataSource("Local");
        library.AddDataSource("Other", flags[m_random.Below(2)]);
        if (in_factory || m_random.OneIn(3))
        {
            library.AddDataSource("Factory", memorymodel::eFactorySource | flags[m_random.Below(2)]);
            library.AddDataSource("Second", memorymodel::eSecondFactorySource);
        }
        const vireo::datamodel::ItemTOCAccessor toc = GetTOC(library.GetAccessor());
        toc.AddObserver(this, vireo::datamodel::eItemTOCNotificationKind, toc.GetContext());
        m_libraries.push_back(&library);
        for (int count = m_random.Below(40); count > 0; --count)
            Add(library);
    }
    void RemoveLibrary(std::size_t in_index)
    {
        memorymodel::Library* const library = m_libraries[in_index];
        if (m_attached == library)
            m_attached = nullptr;
        m_libraries.erase(m_libraries.begin() + static_cast<std::ptrdiff_t>(in_index));
        m_layer.RemoveLibrary(*library);
    }
    void SetSystem(bool in_present)
    {
        m_system = in_present;
        m_layer.SetSystemPresent(in_present);
    }
    void SetHelper(bool in_present)
    {
        m_helper = in_present;
        if (in_present)
            m_layer.RestoreService("RevisionControlUIHelper");
        else
            m_layer.SetService("RevisionControlUIHelper", nullptr);
    }

    static QString Text(const std::string& in_text) { return QString::fromLatin1(in_text.c_str()); }

    memorymodel::DataLayer& m_layer;
    Random& m_random;
    std::vector<memorymodel::Library*> m_libraries;
    std::map<ItemID, Traits> m_traits;
    memorymodel::Library* m_attached = nullptr;
    const Traits* m_traitsToCome = nullptr; ///< of the item that is just being added
    std::string m_nameToCome;               ///< its name
    int m_librariesMade = 0;
    bool m_system = true;
    bool m_helper = true;
    bool m_active = false;
    bool m_enabled = false;
    bool m_hasProperties = true;
};
