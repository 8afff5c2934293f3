// SPDX-License-Identifier: MIT
/// A spy that stands between the browser and a data layer: it writes down every call that shows a library, does from
/// inside of a call what a test wants, and passes the call on.
#pragma once

#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "tests/nodebrowser/support/recorder.h"

#include <QString>

#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// An item of a library that is watched.
class SpyItem : public vireo::datamodel::IContext, public vireo::datamodel::IItem
{
public:
    SpyItem(Recorder& out_recorder, const QString& in_name, const vireo::datamodel::ItemAccessor& in_item)
        : m_recorder(out_recorder), m_name(in_name), m_item(in_item)
    {
    }

    const QString& GetName() const { return m_name; }
    const vireo::datamodel::ItemAccessor& GetWatched() const { return m_item; }

    bool IsAlive() const override { return m_item.IsValid(); }
    vireo::datamodel::ItemID GetItemID() const override
    {
        m_recorder.Show(QString::fromLatin1("identity ") + m_name, m_item.GetItemID());
        return m_item.GetItemID();
    }
    vireo::datamodel::CSimpleValue GetValue(const char* in_key) const override
    {
        m_recorder.Show(QString::fromLatin1("value %1 %2").arg(m_name).arg(Quoted(in_key)), m_item.GetItemID());
        return m_item.GetValue(in_key);
    }

private:
    Recorder& m_recorder;
    QString m_name;
    vireo::datamodel::ItemAccessor m_item;
};

class SpyIterator : public vireo::datamodel::IItemIterator
{
public:
    SpyIterator(Recorder& out_recorder, const vireo::datamodel::ItemLibraryAccessor& in_library,
                vireo::datamodel::ItemIterator in_items)
        : m_recorder(out_recorder), m_library(in_library), m_items(std::move(in_items))
    {
    }

    bool IsAtEnd() const override { return m_items.IsAtEnd(); }
    void Next() override { m_items.Next(); }
    vireo::datamodel::ItemAccessor GetItem() const override
    {
        const vireo::datamodel::ItemAccessor item = m_items.GetItem();
        const QString name = LoggedName(m_library.GetItemName(item.GetItemID(), true, nullptr));
        return vireo::datamodel::ItemAccessor(
            vireo::datamodel::UnspecifiedAccessor(std::make_shared<SpyItem>(m_recorder, name, item)));
    }

private:
    Recorder& m_recorder;
    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemIterator m_items;
};

class SpyContents : public vireo::datamodel::IContext, public vireo::datamodel::IItemTOC
{
public:
    SpyContents(Recorder& out_recorder, const QString& in_name, const vireo::datamodel::ItemLibraryAccessor& in_library,
                const vireo::datamodel::ItemTOCAccessor& in_contents)
        : m_recorder(out_recorder), m_name(in_name), m_library(in_library), m_contents(in_contents)
    {
    }

    bool IsAlive() const override { return m_contents.IsValid(); }
    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        m_recorder.Show(RecordLine("iterate", in_type));
        return std::unique_ptr<vireo::datamodel::IItemIterator>(
            new SpyIterator(m_recorder, m_library, m_contents.IterateItems(in_type)));
    }
    void AddObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                     const vireo::datamodel::ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("contents+", in_kind, m_name, in_context.get() == this));
        m_contents.AddObserver(in_observer, in_kind, m_contents.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                        const vireo::datamodel::ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("contents-", in_kind, m_name, in_context.get() == this));
        m_contents.RemoveObserver(in_observer, in_kind, m_contents.GetContext());
    }

private:
    Recorder& m_recorder;
    QString m_name;
    vireo::datamodel::ItemLibraryAccessor m_library;
    vireo::datamodel::ItemTOCAccessor m_contents;
};

class SpyLibrary : public vireo::datamodel::IContext, public vireo::datamodel::IItemLibrary
{
public:
    using ItemID = vireo::datamodel::ItemID;

    SpyLibrary(Recorder& out_recorder, const QString& in_name, const vireo::datamodel::ItemLibraryAccessor& in_library)
        : m_recorder(out_recorder), m_name(in_name), m_library(in_library)
    {
    }

    const QString& GetName() const { return m_name; }
    const vireo::datamodel::ItemLibraryAccessor& GetWatched() const { return m_library; }

    bool IsAlive() const override { return m_library.IsValid(); }
    std::string GetItemName(const ItemID& in_item, bool in_displayName, const char* in_scope) const override
    {
        m_recorder.Show(ItemLine("name", in_item), in_item);
        if (!in_displayName || in_scope)
            m_recorder.Command(ItemLine("odd name", in_item), in_item);
        return m_library.GetItemName(in_item, in_displayName, in_scope);
    }
    std::string GetItemTags(const ItemID& in_item, const char* in_key) const override
    {
        m_recorder.Show(ItemLine("tags", in_item) + QLatin1Char(' ') + Quoted(in_key), in_item);
        return m_library.GetItemTags(in_item, in_key);
    }
    bool ItemIsReadOnly(const ItemID& in_item) const override
    {
        m_recorder.Show(ItemLine("read-only", in_item), in_item);
        return m_library.ItemIsReadOnly(in_item);
    }
    bool ItemIsDirty(const ItemID& in_item) const override
    {
        m_recorder.Show(ItemLine("dirty", in_item), in_item);
        return m_library.ItemIsDirty(in_item);
    }
    vireo::datamodel::UnspecifiedAccessor GetModel(const ItemID& in_item, std::string* out_error) const override
    {
        m_recorder.Show(ItemLine("model", in_item), in_item);
        return m_library.GetModel(in_item, out_error);
    }
    void AddObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                     const vireo::datamodel::ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("library+", in_kind, m_name, in_context.get() == this));
        m_library.AddObserver(in_observer, in_kind, m_library.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                        const vireo::datamodel::ContextPtr& in_context) override
    {
        m_recorder.Show(ObserverLine("library-", in_kind, m_name, in_context.get() == this));
        m_library.RemoveObserver(in_observer, in_kind, m_library.GetContext());
    }

private:
    QString ItemLine(const char* in_word, const ItemID& in_item) const
    {
        return RecordLine(in_word, m_library.GetItemName(in_item, true, nullptr));
    }

    Recorder& m_recorder;
    QString m_name;
    vireo::datamodel::ItemLibraryAccessor m_library;
};

/// Installs itself for as long as it lives. The library that the browser is to be watched with comes from Watch().
class SpyLayer : public Recorder, private vireo::datamodel::IItemModel, private ISourceControlDisplay
{
public:
    using ItemID = vireo::datamodel::ItemID;
    using ItemAccessor = vireo::datamodel::ItemAccessor;
    using ItemLibraryAccessor = vireo::datamodel::ItemLibraryAccessor;

    /// An icon that was asked for.
    struct Icon
    {
        QSize m_size;
        unsigned m_state;
        bool m_active;
        bool m_ownSpace;
    };

    SpyLayer()
    {
        m_watched = InstallProvider(Provider());
        Provider spied = m_watched;
        spied.m_items = this;
        spied.m_sourceControl = this;
        InstallProvider(spied);
    }
    ~SpyLayer() override { InstallProvider(m_watched); }
    SpyLayer(const SpyLayer&) = delete;
    SpyLayer& operator=(const SpyLayer&) = delete;

    /// The same library, watched under a name.
    ItemLibraryAccessor Watch(const ItemLibraryAccessor& in_library, const char* in_name = "A")
    {
        return ItemLibraryAccessor(vireo::datamodel::UnspecifiedAccessor(
            std::make_shared<SpyLibrary>(*this, QString::fromLatin1(in_name), in_library)));
    }

    void Forget()
    {
        Recorder::Forget();
        m_icons.clear();
        m_requests.clear();
    }

    std::vector<Icon> m_icons;
    std::vector<std::list<nexa4::NEXAHandle<nexa4::IDbObject>>> m_requests;

private:
    static const SpyLibrary* FindSpy(const ItemLibraryAccessor& in_library)
    {
        return dynamic_cast<const SpyLibrary*>(in_library.GetContext().get());
    }

    /// Writes down a question about an item.
    /// \return the item that the watched data layer knows
    ItemAccessor Ask(const QString& in_what, const ItemAccessor& in_item)
    {
        const SpyItem* const spy = dynamic_cast<const SpyItem*>(in_item.GetContext().get());
        const ItemAccessor item = spy ? spy->GetWatched() : in_item;
        Show(in_what + QLatin1Char(' ') + (spy ? spy->GetName() : QString()), item.GetItemID());
        return item;
    }

    vireo::datamodel::ItemTOCAccessor GetTOC(const ItemLibraryAccessor& in_library) override
    {
        const SpyLibrary* const spy = FindSpy(in_library);
        if (!spy)
            return m_watched.m_items->GetTOC(in_library);
        Show(QString::fromLatin1("contents of ") + spy->GetName());
        return vireo::datamodel::ItemTOCAccessor(vireo::datamodel::UnspecifiedAccessor(std::make_shared<SpyContents>(
            *this, spy->GetName(), spy->GetWatched(), m_watched.m_items->GetTOC(spy->GetWatched()))));
    }
    bool IsNameInNodeLibraryHierarchy(const ItemLibraryAccessor& in_library, const char* in_name) override
    {
        Show(QString::fromLatin1("used ") + Quoted(in_name));
        const SpyLibrary* const spy = FindSpy(in_library);
        return m_watched.m_items->IsNameInNodeLibraryHierarchy(spy ? spy->GetWatched() : in_library, in_name);
    }
    bool IsAbstractFunction(ItemAccessor& in_item) override
    {
        ItemAccessor item = Ask(QString::fromLatin1("signature"), in_item);
        return m_watched.m_items->IsAbstractFunction(item);
    }
    bool IsValidGraphItemType(const char* in_typeName, ItemAccessor& in_item) override
    {
        ItemAccessor item = Ask(QString::fromLatin1("valid %1").arg(QLatin1String(in_typeName)), in_item);
        return m_watched.m_items->IsValidGraphItemType(in_typeName, item);
    }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        m_watched.m_items->SetGlobalVireoCompoundTarget(in_target, in_root);
    }
    const char* GetItemIDUID(const ItemID& in_item) override
    {
        Show(QString::fromLatin1("uid"), in_item);
        return m_watched.m_items->GetItemIDUID(in_item);
    }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override
    {
        return m_watched.m_items->GetApplicationCommandManager();
    }

    void RequestObjectStates(const ScsTask& in_task,
                             const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects) override
    {
        Command(QString::fromLatin1("request %1 for ").arg(static_cast<int>(in_objects.size())) +
                qtcompat::FromLatin1(in_task.GetName()));
        m_requests.push_back(in_objects);
        m_watched.m_sourceControl->RequestObjectStates(in_task, in_objects);
    }
    void TaskEnded(const ScsTask& in_task) override
    {
        Command(RecordLine("task ended", in_task.GetName()));
        m_watched.m_sourceControl->TaskEnded(in_task);
    }
    bool IsFileVersionControlActive() override
    {
        Show(QString::fromLatin1("active"));
        return m_watched.m_sourceControl->IsFileVersionControlActive();
    }
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace) override
    {
        Show(QString::fromLatin1("icon %1").arg(in_state));
        m_icons.push_back(Icon{in_base.size(), in_state, in_active, in_ownSpace});
        return m_watched.m_sourceControl->GetAssetStateIcon(in_base, in_state, in_active, in_ownSpace);
    }
    QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const QString& in_icon) override
    {
        return m_watched.m_sourceControl->GetToolTip(in_object, in_icon);
    }

    Provider m_watched;
};
