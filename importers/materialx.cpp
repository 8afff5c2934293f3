// SPDX-License-Identifier: MIT
#include "importers/materialx.h"

#include "importers/materialxdocument.h"
#include "importers/materialxitems.h"
#include "memorymodel/library.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace importers
{
namespace
{

/// One "?" for each character that Latin-1 lacks.
std::string NarrowToLatin1(const QString& in_text)
{
    std::string text;
    text.reserve(static_cast<std::size_t>(in_text.size()));
    for (const QChar unit : in_text)
    {
        if (unit.isLowSurrogate())
            continue; // the second half of a character that its first half stands for
        text.push_back(unit.unicode() <= 0xFF ? static_cast<char>(unit.unicode()) : '?');
    }
    return text;
}

/// The last part of a path, also of "." and "..".
QString FolderName(const QString& in_folder)
{
    const QString path = QDir::cleanPath(QFileInfo(in_folder).absoluteFilePath());
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

/// The paths of the documents below a folder, relative to it and in order. A folder that cannot be listed is an error:
/// otherwise a part of the library would be missing and nobody would know.
std::optional<MaterialXError> FindDocuments(const QString& in_folder, QStringList& out_documents)
{
    const QDir folder(in_folder);
    if (!QFileInfo(in_folder).isReadable())
        return MaterialXError{in_folder, 1, QStringLiteral("The folder cannot be read")};
    // "System" lists links that lead nowhere, too: to open one is an error, and so it is reported.
    QDirIterator entries(in_folder, QStringList(QStringLiteral("*.mtlx")),
                         QDir::Files | QDir::System | QDir::AllDirs | QDir::NoDotAndDotDot | QDir::CaseSensitive,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
    {
        const QString path = entries.next();
        const QFileInfo entry = entries.fileInfo();
        const QString relativePath = folder.relativeFilePath(entry.absoluteFilePath());
        if (relativePath.startsWith(QLatin1Char('.')) || relativePath.contains(QLatin1String("/.")))
            continue;
        if (!entry.isDir())
            out_documents.append(relativePath);
        else if (!entry.isSymLink() && !(entry.isReadable() && entry.isExecutable()))
            return MaterialXError{path, 1, QStringLiteral("The folder cannot be read")};
    }
    if (out_documents.isEmpty())
        return MaterialXError{in_folder, 1, QStringLiteral("The folder has no MaterialX documents")};
    std::sort(out_documents.begin(), out_documents.end());
    return std::nullopt;
}

/// Collects documents and the sources that they belong to.
class DocumentList
{
public:
    void AddFile(const QString& in_file)
    {
        Add(in_file, QString(), {QFileInfo(in_file).completeBaseName(), QDir::toNativeSeparators(in_file)});
    }

    void AddFileOfFolder(const QString& in_folder, const QString& in_relativePath)
    {
        const QDir folder(in_folder);
        const QString path = folder.filePath(in_relativePath);
        if (!in_relativePath.contains(QLatin1Char('/')))
        {
            Add(path, QString(), {FolderName(in_folder), QDir::toNativeSeparators(in_folder)});
            return;
        }
        const QString topFolder = in_relativePath.section(QLatin1Char('/'), 0, 0);
        Add(path, topFolder, {topFolder, QDir::toNativeSeparators(folder.filePath(topFolder))});
    }

    const std::vector<MaterialXDocument>& GetDocuments() const { return m_documents; }
    const std::vector<MaterialXSource>& GetSources() const { return m_sources; }

private:
    void Add(const QString& in_file, const QString& in_topFolder, const MaterialXSource& in_source)
    {
        const auto known = m_indexOfFolder.constFind(in_topFolder);
        const std::size_t index = known != m_indexOfFolder.constEnd() ? *known : m_sources.size();
        if (index == m_sources.size())
        {
            m_indexOfFolder.insert(in_topFolder, index);
            m_sources.push_back(in_source);
        }
        m_documents.push_back({in_file, in_topFolder, index});
    }

    std::vector<MaterialXDocument> m_documents;
    std::vector<MaterialXSource> m_sources;
    QHash<QString, std::size_t> m_indexOfFolder;
};

memorymodel::NewItem Describe(const MaterialXItem& in_item)
{
    const std::string name = NarrowToLatin1(in_item.m_name);
    switch (in_item.m_kind)
    {
    case eMaterialXKind::eType:
        return memorymodel::NewItem::Type(name);
    case eMaterialXKind::eGlobalConstant:
        return memorymodel::NewItem::GlobalConstant(name);
    case eMaterialXKind::ePolymorphicSolver:
        return memorymodel::NewItem::PolymorphicSolver(name);
    case eMaterialXKind::eSolver:
        return memorymodel::NewItem::Solver(name);
    case eMaterialXKind::eCompound:
        return memorymodel::NewItem::Compound(name);
    case eMaterialXKind::eSignature:
        break;
    }
    return memorymodel::NewItem::Signature(name);
}

} // namespace

std::optional<MaterialXError> ReadMaterialX(const QString& in_path, MaterialXContent& out_content)
{
    DocumentList list;
    if (QFileInfo(in_path).isDir())
    {
        QStringList paths;
        if (const std::optional<MaterialXError> error = FindDocuments(in_path, paths))
            return error;
        for (const QString& path : paths)
            list.AddFileOfFolder(in_path, path);
    }
    else
        list.AddFile(in_path);

    MaterialXElements elements;
    for (std::size_t document = 0; document < list.GetDocuments().size(); ++document)
        if (const std::optional<MaterialXError> error =
                ReadDocument(list.GetDocuments()[document].m_file, document, elements))
            return error;
    out_content = {list.GetSources(), MakeItems(elements, list.GetDocuments())};
    return std::nullopt;
}

void AddMaterialX(const MaterialXContent& in_content, memorymodel::Library& io_library)
{
    io_library.AddDataSource("Local");
    std::vector<memorymodel::DataSource*> sources;
    for (const MaterialXSource& source : in_content.m_sources)
    {
        const unsigned factory =
            source.m_name == QLatin1String("stdlib") ? memorymodel::eFactorySource : memorymodel::ePlainSource;
        sources.push_back(&io_library.AddDataSource(
            NarrowToLatin1(source.m_name), memorymodel::eReadOnlySource | factory, NarrowToLatin1(source.m_location)));
    }
    for (const MaterialXItem& item : in_content.m_items)
        io_library.Add(Describe(item)
                           .In(*sources[item.m_source])
                           .Tags(NarrowToLatin1(item.m_tags.join(QLatin1Char(';'))))
                           .Parent(NarrowToLatin1(item.m_parent))
                           .Specializes(NarrowToLatin1(item.m_specializes)));
}

} // namespace importers
