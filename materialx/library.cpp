// SPDX-License-Identifier: MIT
#include "materialx/library.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <new>
#include <numeric>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace materialx
{
namespace
{

/// The last part of a path, also of "." and "..".
QString FolderName(const QString& in_folder)
{
    const QString path = QDir::cleanPath(QFileInfo(in_folder).absoluteFilePath());
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

/// What one link in a folder stands for.
struct Link
{
    QString m_relativePath;
    QString m_target;
};

/// The first document whose path has no text, because it is not in the encoding of the system; empty without one.
/// The toolkit lists no such files.
QString FindUnnamable(const QString& in_folder)
{
    std::error_code error;
    std::filesystem::recursive_directory_iterator entries(QFile::encodeName(in_folder).toStdString(), error);
    QString first;
    for (; !error && entries != std::filesystem::recursive_directory_iterator(); entries.increment(error))
    {
        const std::string name = entries->path().filename().string();
        if (name.front() == '.')
            entries.disable_recursion_pending();
        else if (entries->path().extension() == ".mtlx" && !entries->is_directory(error))
        {
            const std::string path = entries->path().string();
            const QString text = QFile::decodeName(QByteArray::fromStdString(path));
            if (QFile::encodeName(text).toStdString() != path && (first.isEmpty() || text < first))
                first = text;
        }
    }
    return first;
}

/// The paths of the documents below a folder, relative to it and in order. A folder that cannot be listed is an error:
/// otherwise a part of the library would be missing and nobody would know.
std::optional<Error> FindPaths(const QString& in_folder, QStringList& out_paths)
{
    const QDir folder(QDir(in_folder).absolutePath());
    const QString canonicalFolder = folder.canonicalPath();
    if (!QFileInfo(in_folder).isReadable())
        return Error{in_folder, 1, QStringLiteral("The folder cannot be read")};
    // "System" lists links that lead nowhere, too: to open one is an error, and so it is reported.
    QDirIterator entries(folder.path(), QStringList(QStringLiteral("*.mtlx")),
                         QDir::Files | QDir::System | QDir::AllDirs | QDir::NoDotAndDotDot | QDir::CaseSensitive,
                         QDirIterator::Subdirectories);
    QSet<QString> listed;
    std::vector<Link> links;
    while (entries.hasNext())
    {
        entries.next();
        const QFileInfo entry = entries.fileInfo();
        const QString relativePath = folder.relativeFilePath(entry.absoluteFilePath());
        if (relativePath.startsWith(QLatin1Char('.')) || relativePath.contains(QLatin1String("/.")))
            continue;
        const QString target = entry.isSymLink() ? entry.canonicalFilePath() : QString();
        if (entry.isDir())
        {
            if (!entry.isSymLink() && !(entry.isReadable() && entry.isExecutable()))
                return Error{QDir(in_folder).filePath(relativePath), 1, QStringLiteral("The folder cannot be read")};
        }
        else if (target.isEmpty())
        {
            out_paths.append(relativePath);
            listed.insert(entry.canonicalFilePath());
        }
        else if (target.startsWith(canonicalFolder + QLatin1Char('/')))
            links.push_back({relativePath, target});
    }
    std::sort(links.begin(), links.end(),
              [](const Link& in_a, const Link& in_b) { return in_a.m_relativePath < in_b.m_relativePath; });
    for (const Link& link : links)
        if (!listed.contains(link.m_target))
        {
            listed.insert(link.m_target);
            out_paths.append(link.m_relativePath);
        }
    std::sort(out_paths.begin(), out_paths.end());
    if (const QString path = FindUnnamable(in_folder); !path.isEmpty())
        return Error{path, 1, QStringLiteral("The name of the file is not in the encoding of the system")};
    if (out_paths.isEmpty())
        return Error{in_folder, 1, QStringLiteral("The folder has no MaterialX documents")};
    return std::nullopt;
}

std::size_t FindOrAddSource(const QString& in_topFolder, Library& io_library)
{
    for (std::size_t i = 0; i < io_library.m_sources.size(); ++i)
        if (io_library.m_sources[i].m_folder == in_topFolder)
            return i;
    const QDir folder(io_library.m_path);
    Source source = {in_topFolder, QDir::toNativeSeparators(folder.filePath(in_topFolder)), in_topFolder};
    if (in_topFolder.isEmpty())
    {
        source.m_name =
            io_library.m_isFolder ? FolderName(io_library.m_path) : QFileInfo(io_library.m_path).completeBaseName();
        source.m_location = QDir::toNativeSeparators(io_library.m_path);
    }
    io_library.m_sources.push_back(source);
    return io_library.m_sources.size() - 1;
}

void AddDocument(const QString& in_relativePath, Library& io_library)
{
    LibraryDocument document;
    const bool isInFolder = io_library.m_isFolder && in_relativePath.contains(QLatin1Char('/'));
    const QString topFolder = isInFolder ? in_relativePath.section(QLatin1Char('/'), 0, 0) : QString();
    document.m_file = io_library.m_isFolder ? QDir(io_library.m_path).filePath(in_relativePath) : io_library.m_path;
    document.m_relativePath = in_relativePath;
    document.m_topFolder = topFolder.toStdString();
    document.m_source = FindOrAddSource(topFolder, io_library);
    io_library.m_documents.push_back(std::move(document));
}

} // namespace

std::vector<std::size_t> InPathOrder(const Library& in_library)
{
    std::vector<std::size_t> order(in_library.m_documents.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto isLess = [&in_library](std::size_t in_a, std::size_t in_b) {
        return in_library.m_documents[in_a].m_relativePath < in_library.m_documents[in_b].m_relativePath;
    };
    if (!std::is_sorted(order.begin(), order.end(), isLess))
        std::sort(order.begin(), order.end(), isLess);
    return order;
}

std::size_t FindOrAddDocument(const QString& in_relativePath, Library& io_library)
{
    for (std::size_t i = 0; i < io_library.m_documents.size(); ++i)
        if (io_library.m_documents[i].m_relativePath == in_relativePath || !io_library.m_isFolder)
            return i;
    AddDocument(in_relativePath, io_library);
    return io_library.m_documents.size() - 1;
}

void AddMissing(const Library& in_found, Library& io_library)
{
    if (!io_library.m_isFolder)
        return;
    QSet<QString> known;
    for (const LibraryDocument& document : io_library.m_documents)
        known.insert(document.m_relativePath);
    for (const LibraryDocument& document : in_found.m_documents)
        if (!known.contains(document.m_relativePath))
            AddDocument(document.m_relativePath, io_library);
}

std::optional<Error> FindDocuments(const QString& in_path, Library& out_library)
{
    Library library;
    library.m_path = in_path;
    library.m_isFolder = QFileInfo(in_path).isDir();
    QStringList paths;
    std::optional<Error> error;
    if (library.m_isFolder)
        error = FindPaths(in_path, paths);
    else
        paths.append(QFileInfo(in_path).fileName());
    for (const QString& path : std::as_const(paths))
        AddDocument(path, library);
    out_library = std::move(library);
    return error;
}

namespace
{

std::optional<Error> ReadFile(LibraryDocument& io_document)
{
    const QString& path = io_document.m_file;
    const QFileInfo info(path);
    if (!info.exists())
        return Error{path, 1, QStringLiteral("No such file or folder")};
    if (!info.isFile())
        return Error{path, 1, QStringLiteral("Not a file")}; // reading from a pipe could wait for ever
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{path, 1, file.errorString()};
    // The size is where to begin: a file may grow meanwhile, and some have another size than they tell.
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(file.size()) + 64 * 1024); // so that the first edits copy nothing
    bytes.resize(static_cast<std::size_t>(file.size()) + 1);
    std::size_t size = 0;
    while (true)
    {
        const qint64 taken = file.read(bytes.data() + size, static_cast<qint64>(bytes.size() - size));
        if (taken < 0)
            return Error{path, 1, file.errorString()};
        if (taken == 0)
            break;
        size += static_cast<std::size_t>(taken);
        if (size == bytes.size())
            bytes.resize(2 * size);
    }
    bytes.resize(size);
    std::size_t line = 1;
    if (const std::optional<Fault> fault = io_document.m_document.Read(std::move(bytes), &line))
        return Error{path, static_cast<qint64>(line), QString::fromStdString(fault->m_reason)};
    return std::nullopt;
}

} // namespace

std::optional<Error> ReadDocument(LibraryDocument& io_document)
{
    const auto tooLarge = [&io_document] {
        return Error{io_document.m_file, 1, QStringLiteral("There is not enough memory for it")};
    };
    try
    {
        return ReadFile(io_document);
    }
    catch (const std::bad_alloc&)
    {
        return tooLarge();
    }
    catch (const std::length_error&)
    {
        return tooLarge();
    }
}

std::optional<Error> ReadLibrary(const QString& in_path, Library& out_library)
{
    Library library;
    if (std::optional<Error> error = FindDocuments(in_path, library))
        return error;
    for (LibraryDocument& document : library.m_documents)
        if (std::optional<Error> error = ReadDocument(document))
            return error;
    out_library = std::move(library);
    return std::nullopt;
}

std::optional<Fault> Apply(const Change& in_change, Library& io_library, std::vector<std::optional<Range>>* out_touched)
{
    std::vector<std::optional<Range>> touched;
    for (auto edit = in_change.begin(); edit != in_change.end(); ++edit)
    {
        std::optional<Fault> fault =
            io_library.m_documents[edit->m_document].m_document.Apply(edit->m_edit, &touched.emplace_back());
        if (!fault)
            continue;
        for (auto made = edit; made != in_change.begin();)
        {
            --made;
            io_library.m_documents[made->m_document].m_document.Apply(Inverse(made->m_edit));
        }
        return fault;
    }
    if (out_touched)
        *out_touched = std::move(touched);
    return std::nullopt;
}

} // namespace materialx
