// SPDX-License-Identifier: MIT
/// Folders of documents that tests open, change and save.
#pragma once

#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/system.h"
#include "memorymodel/datalayer.h"
#include "tests/materialx/documents.h"
#include "workspace/workspace.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>

#include <list>
#include <memory>
#include <stdexcept>
#include <string>

using Files = QMap<QString, QByteArray>;

inline QByteArray BytesOfFile(const QString& in_path)
{
    QFile file(in_path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("The test cannot read " + in_path.toStdString());
    return file.readAll();
}

/// All files below a folder, hidden ones included, by their paths; folders without files end with "/".
inline Files FilesBelow(const QString& in_folder)
{
    Files files;
    const QDir folder(in_folder);
    QDirIterator entries(in_folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
    {
        const QString path = entries.next();
        const bool isFolder = entries.fileInfo().isDir() && !entries.fileInfo().isSymLink();
        if (!isFolder)
            files[folder.relativeFilePath(path)] = BytesOfFile(path);
        else if (QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
            files[folder.relativeFilePath(path) + QLatin1Char('/')] = QByteArray();
    }
    return files;
}

/// What is not the same, for people.
inline QString Difference(const Files& in_a, const Files& in_b)
{
    QStringList lines;
    for (const QString& path : (in_a.keys() + in_b.keys()))
        if (!in_b.contains(path))
            lines += QStringLiteral("only before: ") + path;
        else if (!in_a.contains(path))
            lines += QStringLiteral("only after: ") + path;
        else if (in_a[path] != in_b[path])
            lines += QStringLiteral("differs: ") + path;
    lines.removeDuplicates();
    return lines.join(QLatin1Char('\n'));
}

/// A copy of the documents of a folder that can be written.
inline void CopyDocuments(const QString& in_from, const DocumentFolder& in_to)
{
    const Files files = FilesBelow(in_from);
    for (auto file = files.begin(); file != files.end(); ++file)
        if (file.key().endsWith(QLatin1String(".mtlx")) && !file.key().contains(QLatin1String("/.")) &&
            !file.key().startsWith(QLatin1Char('.')))
            in_to.Write(file.key(), file.value());
}

/// A data layer with one library: an opened folder.
class Opened
{
public:
    using ItemID = vireo::datamodel::ItemID;

    explicit Opened(const QString& in_path)
    {
        QString error;
        m_workspace = workspace::Workspace::Open(m_layer, in_path, &error);
        if (!m_workspace)
            throw std::runtime_error(error.toStdString());
    }

    workspace::Workspace& GetWorkspace() { return *m_workspace; }
    memorymodel::Library& GetLibrary() { return m_workspace->GetLibrary(); }
    memorymodel::DataLayer& GetLayer() { return m_layer; }
    vireo::datamodel::ItemLibraryAccessor Get() { return GetLibrary().GetAccessor(); }
    memorymodel::CommandManager* GetCommands() { return &m_layer.GetCommandManager(); }
    QUndoStack& GetStack() { return m_layer.GetCommandManager().GetStack(); }

    /// The first listed item with a name.
    ItemID Find(const char* in_name)
    {
        const ItemID item = GetLibrary().FindByName(in_name);
        if (!item.IsValid())
            throw std::runtime_error(std::string("There is no item ") + in_name);
        return item;
    }
    QByteArray TagsOf(const char* in_name)
    {
        return QByteArray::fromStdString(Get().GetItemTags(Find(in_name), vireo::datamodel::gApplicationTagsKey));
    }
    QByteArray SourceOf(const char* in_name)
    {
        return QByteArray::fromStdString(GetLibrary().GetSourceOf(Find(in_name))->GetName());
    }
    bool Move(const ItemID& in_item, const char* in_source)
    {
        auto* const helper = hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        const auto object =
            helper->FindObject(nexa4::DbObjectId(vireo::datamodel::ItemIDUnlock::GetItemIDUID(in_item)));
        for (const std::shared_ptr<memorymodel::DataSource>& source : GetLibrary().GetDataSources())
            if (source->GetName() == in_source)
                return nexa4::IHelper::GetHelper(object.GetManager()->GetDatabase())
                    ->MoveToDataSource(object, nexa4::NEXAPtr<nexa4::IDataSource>(source), true);
        throw std::runtime_error(std::string("There is no source ") + in_source);
    }
    bool Commit(bool in_everything = false, const nexa4::TezUID& in_source = nexa4::UID_Null())
    {
        m_messages.clear();
        return vireo::datamodel::ItemLibraryModifierAccessor(Get()).CommitToDisk(m_isWritten, &m_messages,
                                                                                 in_everything, in_source);
    }
    QByteArray GetMessages() const
    {
        QByteArray all;
        for (const std::string& message : m_messages)
            all += QByteArray::fromStdString(message) + '\n';
        return all;
    }

    bool m_isWritten = false; ///< by the last Commit()
    std::list<std::string> m_messages;

private:
    memorymodel::DataLayer m_layer;
    std::shared_ptr<workspace::Workspace> m_workspace;
};

/// Each item with all that the library tells of it, in the order of the texts.
inline QStringList Describe(memorymodel::Library& in_library)
{
    QStringList lines;
    const vireo::datamodel::ItemLibraryAccessor accessor = in_library.GetAccessor();
    for (const vireo::datamodel::ItemID& item : in_library.GetItems())
        lines.append(QString::fromLatin1(
            (std::string(item.GetType()) + (in_library.IsSignature(item) ? " signature " : " ") +
             (in_library.IsLoopCompound(item) ? "loop " : "") + accessor.GetItemName(item, true, nullptr) + " [" +
             accessor.GetItemTags(item, vireo::datamodel::gApplicationTagsKey) + "] @" +
             in_library.GetSourceOf(item)->GetName() + (accessor.ItemIsReadOnly(item) ? " read-only " : " ") +
             vireo::datamodel::ItemIDUnlock::GetItemIDUID(item))
                .c_str()));
    lines.sort();
    return lines;
}
