// SPDX-License-Identifier: MIT
/// Spies for the tests of the browser: they stand between it and the data layer, write down what it asks for, and pass
/// it on.
#pragma once

#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"

#include <QString>
#include <QStringList>

#include <list>
#include <memory>
#include <vector>

/// How many lines of a log begin with a text.
inline int CountLines(const QStringList& in_log, const char* in_beginning)
{
    int count = 0;
    for (int i = 0; i < in_log.size(); ++i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            ++count;
    return count;
}

/// Where the first line that begins with a text stands in a log, and the last one; -1 when there is none.
inline int FirstLine(const QStringList& in_log, const char* in_beginning)
{
    for (int i = 0; i < in_log.size(); ++i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            return i;
    return -1;
}

inline int LastLine(const QStringList& in_log, const char* in_beginning)
{
    for (int i = static_cast<int>(in_log.size()) - 1; i >= 0; --i)
        if (in_log.at(i).startsWith(QLatin1String(in_beginning)))
            return i;
    return -1;
}

/// What the spies write down. Lines of the log:
///   library+40 NAME, library-40 NAME    an observer came or went; the number is the code it passed
///   toc+39 NAME, toc-39 NAME            the same at the table of contents
///   toc of NAME                         the table of contents was asked for
///   iterate TYPE                        the items of a type were asked for
///   valid TYPE                          whether an item is one for graphs was asked
///   dirty                               a drawn row asked for its dirty mark
///   request COUNT                       the states of so many objects were requested
///   task ended NAME
/// A line ends with "wrong context" when the observer passed another context than the accessor's own.
struct SpyRecord
{
    struct Icon
    {
        QSize m_size;
        unsigned m_state;
        bool m_active;
        bool m_ownSpace;
    };

    QStringList m_log;
    int m_nameReads = 0;
    int m_oddNameReads = 0; ///< those that asked for anything but the plain display name
    QStringList m_tagKeys;  ///< the distinct keys that tags were read under
    std::vector<Icon> m_icons;
    std::vector<std::list<nexa4::NEXAHandle<nexa4::IDbObject>>> m_requests;
    QStringList m_taskNames;
    int m_activeQueries = 0;

    void Write(const QString& in_line) { m_log << in_line; }

    int CountRebuilds() const { return CountLines(m_log, "iterate PolymorphicSolver"); }
};

/// One name and one number, and what else belongs to the line.
inline QString SpyLine(const char* in_what, int in_kind, const QString& in_name, bool in_ownContext)
{
    return QString::fromLatin1("%1%2 %3%4")
        .arg(QLatin1String(in_what))
        .arg(in_kind)
        .arg(in_name)
        .arg(QLatin1String(in_ownContext ? "" : " wrong context"));
}

/// A table of contents that writes down its observers and its iterations.
class SpyTOC : public vireo::datamodel::IContext, public vireo::datamodel::IItemTOC
{
public:
    SpyTOC(SpyRecord& in_record, const QString& in_name, const vireo::datamodel::ItemTOCAccessor& in_toc)
        : m_record(in_record), m_name(in_name), m_toc(in_toc)
    {
    }

    bool IsAlive() const override { return m_toc.IsValid(); }

    std::unique_ptr<vireo::datamodel::IItemIterator> IterateItems(const char* in_type) const override
    {
        m_record.Write(QString::fromLatin1("iterate %1").arg(QLatin1String(in_type)));
        const vireo::datamodel::IItemTOC* const toc = GetTOC();
        return toc ? toc->IterateItems(in_type) : nullptr;
    }
    void AddObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                     const vireo::datamodel::ContextPtr& in_context) override
    {
        m_record.Write(SpyLine("toc+", in_kind, m_name, in_context.get() == this));
        m_toc.AddObserver(in_observer, in_kind, m_toc.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemTOCNotification* in_observer, int in_kind,
                        const vireo::datamodel::ContextPtr& in_context) override
    {
        m_record.Write(SpyLine("toc-", in_kind, m_name, in_context.get() == this));
        m_toc.RemoveObserver(in_observer, in_kind, m_toc.GetContext());
    }

private:
    const vireo::datamodel::IItemTOC* GetTOC() const
    {
        return dynamic_cast<const vireo::datamodel::IItemTOC*>(m_toc.GetContext().get());
    }

    SpyRecord& m_record;
    QString m_name;
    vireo::datamodel::ItemTOCAccessor m_toc;
};

/// A library that writes down its observers and what is read of it.
class SpyLibrary : public vireo::datamodel::IContext, public vireo::datamodel::IItemLibrary
{
public:
    SpyLibrary(SpyRecord& in_record, const QString& in_name, const vireo::datamodel::ItemLibraryAccessor& in_library)
        : m_record(in_record), m_name(in_name), m_library(in_library)
    {
    }

    const QString& GetName() const { return m_name; }
    const vireo::datamodel::ItemLibraryAccessor& GetWatched() const { return m_library; }

    bool IsAlive() const override { return m_library.IsValid(); }

    std::string GetItemName(const vireo::datamodel::ItemID& in_item, bool in_displayName,
                            const char* in_scope) const override
    {
        ++m_record.m_nameReads;
        if (!in_displayName || in_scope)
            ++m_record.m_oddNameReads;
        return m_library.GetItemName(in_item, in_displayName, in_scope);
    }
    std::string GetItemTags(const vireo::datamodel::ItemID& in_item, const char* in_key) const override
    {
        const QString key = QString::fromLatin1(in_key);
        if (!m_record.m_tagKeys.contains(key))
            m_record.m_tagKeys << key;
        return m_library.GetItemTags(in_item, in_key);
    }
    bool ItemIsReadOnly(const vireo::datamodel::ItemID& in_item) const override
    {
        return m_library.ItemIsReadOnly(in_item);
    }
    bool ItemIsDirty(const vireo::datamodel::ItemID& in_item) const override
    {
        m_record.Write(QString::fromLatin1("dirty"));
        return m_library.ItemIsDirty(in_item);
    }
    vireo::datamodel::UnspecifiedAccessor GetModel(const vireo::datamodel::ItemID& in_item,
                                                   std::string* out_error) const override
    {
        return m_library.GetModel(in_item, out_error);
    }
    void AddObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                     const vireo::datamodel::ContextPtr& in_context) override
    {
        m_record.Write(SpyLine("library+", in_kind, m_name, in_context.get() == this));
        m_library.AddObserver(in_observer, in_kind, m_library.GetContext());
    }
    void RemoveObserver(vireo::datamodel::IItemLibraryNotification* in_observer, int in_kind,
                        const vireo::datamodel::ContextPtr& in_context) override
    {
        m_record.Write(SpyLine("library-", in_kind, m_name, in_context.get() == this));
        m_library.RemoveObserver(in_observer, in_kind, m_library.GetContext());
    }

private:
    SpyRecord& m_record;
    QString m_name;
    vireo::datamodel::ItemLibraryAccessor m_library;
};

/// Installs the spies for as long as it lives. What the browser is to be watched with comes from Watch().
class SpyLayer : public SpyRecord, private vireo::datamodel::IItemModel, private ISourceControlDisplay
{
public:
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
    vireo::datamodel::ItemLibraryAccessor Watch(const vireo::datamodel::ItemLibraryAccessor& in_library,
                                                const char* in_name = "A")
    {
        return vireo::datamodel::ItemLibraryAccessor(vireo::datamodel::UnspecifiedAccessor(
            std::make_shared<SpyLibrary>(*this, QString::fromLatin1(in_name), in_library)));
    }

    void Forget() { static_cast<SpyRecord&>(*this) = SpyRecord(); }

private:
    static const SpyLibrary* FindSpy(const vireo::datamodel::ItemLibraryAccessor& in_library)
    {
        return dynamic_cast<const SpyLibrary*>(in_library.GetContext().get());
    }

    vireo::datamodel::ItemTOCAccessor GetTOC(const vireo::datamodel::ItemLibraryAccessor& in_library) override
    {
        const SpyLibrary* const spy = FindSpy(in_library);
        if (!spy)
            return m_watched.m_items->GetTOC(in_library);
        Write(QString::fromLatin1("toc of %1").arg(spy->GetName()));
        return vireo::datamodel::ItemTOCAccessor(vireo::datamodel::UnspecifiedAccessor(
            std::make_shared<SpyTOC>(*this, spy->GetName(), m_watched.m_items->GetTOC(spy->GetWatched()))));
    }
    bool IsNameInNodeLibraryHierarchy(const vireo::datamodel::ItemLibraryAccessor& in_library,
                                      const char* in_name) override
    {
        const SpyLibrary* const spy = FindSpy(in_library);
        return m_watched.m_items->IsNameInNodeLibraryHierarchy(spy ? spy->GetWatched() : in_library, in_name);
    }
    bool IsAbstractFunction(vireo::datamodel::ItemAccessor& in_item) override
    {
        return m_watched.m_items->IsAbstractFunction(in_item);
    }
    bool IsValidGraphItemType(const char* in_typeName, vireo::datamodel::ItemAccessor& in_item) override
    {
        Write(QString::fromLatin1("valid %1").arg(QLatin1String(in_typeName)));
        return m_watched.m_items->IsValidGraphItemType(in_typeName, in_item);
    }
    void SetGlobalVireoCompoundTarget(const vireo::datamodel::CompoundAccessor& in_target,
                                      const vireo::datamodel::CompoundAccessor& in_root) override
    {
        m_watched.m_items->SetGlobalVireoCompoundTarget(in_target, in_root);
    }
    const char* GetItemIDUID(const vireo::datamodel::ItemID& in_item) override
    {
        return m_watched.m_items->GetItemIDUID(in_item);
    }
    hmx::fwk::ICommandManager* GetApplicationCommandManager() override
    {
        return m_watched.m_items->GetApplicationCommandManager();
    }

    void RequestObjectStates(const ScsTask& in_task,
                             const std::list<nexa4::NEXAHandle<nexa4::IDbObject>>& in_objects) override
    {
        Write(QString::fromLatin1("request %1").arg(static_cast<int>(in_objects.size())));
        m_requests.push_back(in_objects);
        m_taskNames << QString::fromLatin1(in_task.GetName().c_str());
        m_watched.m_sourceControl->RequestObjectStates(in_task, in_objects);
    }
    void TaskEnded(const ScsTask& in_task) override
    {
        Write(QString::fromLatin1("task ended %1").arg(QLatin1String(in_task.GetName().c_str())));
        m_watched.m_sourceControl->TaskEnded(in_task);
    }
    bool IsFileVersionControlActive() override
    {
        ++m_activeQueries;
        return m_watched.m_sourceControl->IsFileVersionControlActive();
    }
    QPixmap GetAssetStateIcon(const QPixmap& in_base, unsigned in_state, bool in_active, bool in_ownSpace) override
    {
        m_icons.push_back(Icon{in_base.size(), in_state, in_active, in_ownSpace});
        return m_watched.m_sourceControl->GetAssetStateIcon(in_base, in_state, in_active, in_ownSpace);
    }
    QString GetToolTip(const nexa4::NEXAHandle<nexa4::IDbObject>& in_object, const QString& in_icon) override
    {
        return m_watched.m_sourceControl->GetToolTip(in_object, in_icon);
    }

    Provider m_watched;
};

/// A properties manager in the hands of a test. Its log says "connect", "has", "read" and "disconnect".
class FakePropertiesManager : public IRevisionControlPropertiesMgr
{
public:
    explicit FakePropertiesManager(QStringList& in_log) : m_log(in_log) {}

    void GetSourceControlEnabled(bool* out_enabled) override
    {
        m_log << QString::fromLatin1("read");
        *out_enabled = m_enabled;
    }
    void Connect(IRevisionControlPropertiesMgr_Slot* in_slot, RevisionControlConnection& out_connection) override
    {
        m_log << QString::fromLatin1("connect");
        m_slot = in_slot;
        QStringList& log = m_log;
        out_connection.Hold(
            std::shared_ptr<void>(nullptr, [&log](void*) { log << QString::fromLatin1("disconnect"); }));
    }
    bool HasProperties() override
    {
        m_log << QString::fromLatin1("has");
        return m_has;
    }

    /// Tells the connected slot of a change, or with null that the manager is going away.
    void Tell(IRevisionControlPropertiesMgr* in_manager) { m_slot->OnRevisionControlPropertiesChange(in_manager); }

    bool m_enabled = false;
    bool m_has = true;
    IRevisionControlPropertiesMgr_Slot* m_slot = nullptr;

private:
    QStringList& m_log;
};
