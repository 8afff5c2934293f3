// SPDX-License-Identifier: MIT
#include "workspace/files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <xxhash.h>

namespace workspace
{
namespace
{

/// Whether the last call failed since the user may not do that. Inside a user namespace there are owners without a
/// number.
bool IsRefused()
{
    return errno == EPERM || errno == EINVAL;
}

QString BecomeLike(int in_file, const struct stat& in_like)
{
    mode_t mode = in_like.st_mode & 07777U;
    // The owner first, since that takes permissions away. Only the administrator can give a file to somebody else, but
    // everybody can to a group of theirs.
    if (fchown(in_file, in_like.st_uid, in_like.st_gid) != 0)
    {
        const auto noChange = static_cast<uid_t>(-1);
        if (!IsRefused() || (fchown(in_file, noChange, in_like.st_gid) != 0 && !IsRefused()))
            return SystemError();
        struct stat own = {};
        if (fstat(in_file, &own) != 0)
            return SystemError();
        mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
        if (own.st_gid != in_like.st_gid)
            mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return fchmod(in_file, mode) == 0 ? QString() : SystemError();
}

QString WriteAndSync(Descriptor& io_file, std::string_view in_bytes)
{
    while (!in_bytes.empty())
    {
        const ssize_t written = write(io_file.Get(), in_bytes.data(), in_bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return SystemError();
        in_bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return fsync(io_file.Get()) == 0 && io_file.Close() ? QString() : SystemError();
}

} // namespace

QByteArray HashOf(std::string_view in_bytes)
{
    XXH128_canonical_t hash;
    XXH128_canonicalFromHash(&hash, XXH3_128bits(in_bytes.data(), in_bytes.size()));
    return QByteArray(reinterpret_cast<const char*>(hash.digest), sizeof(hash.digest)).toHex();
}

QString SystemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool Descriptor::Close()
{
    const int number = std::exchange(m_number, -1);
    return number < 0 || close(number) == 0;
}

std::optional<std::string> ReadBytes(const QByteArray& in_path, QString& out_error)
{
    out_error.clear();
    // Not blocking: to open a pipe could wait for ever.
    const Descriptor file(open(in_path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0)
    {
        if (errno != ENOENT && errno != ENOTDIR)
            out_error = SystemError();
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode))
    {
        out_error = QStringLiteral("Not a file");
        return std::nullopt;
    }
    std::string bytes;
    bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t size = 0;
    while (true)
    {
        const ssize_t taken = read(file.Get(), bytes.data() + size, bytes.size() - size);
        if (taken < 0 && errno == EINTR)
            continue;
        if (taken < 0)
        {
            out_error = SystemError();
            return std::nullopt;
        }
        if (taken == 0)
            break;
        size += static_cast<std::size_t>(taken);
        if (size == bytes.size())
            bytes.resize(2 * size);
    }
    bytes.resize(size);
    return bytes;
}

FileStamp StampOf(const QByteArray& in_path)
{
    FileStamp stamp;
    struct stat status = {};
    struct timespec now = {};
    if (stat(in_path.constData(), &status) != 0 || clock_gettime(CLOCK_REALTIME, &now) != 0)
        return stamp;
    const std::int64_t second = 1000000000;
    const std::int64_t changed = status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec;
    if (now.tv_sec * second + now.tv_nsec - changed < second)
        return stamp;
    stamp.m_device = status.st_dev;
    stamp.m_number = status.st_ino;
    stamp.m_size = status.st_size;
    stamp.m_changed = changed;
    return stamp;
}

QString WriteNewFile(const QByteArray& in_path, std::string_view in_bytes, const QByteArray& in_like)
{
    struct stat like = {};
    const bool isLike = stat(in_like.constData(), &like) == 0;
    const mode_t mode = isLike ? 0600 : 0666;
    Descriptor file(open(in_path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (!file.IsOpen())
        return SystemError();
    QString error = isLike ? BecomeLike(file.Get(), like) : QString();
    if (error.isEmpty())
        error = WriteAndSync(file, in_bytes);
    if (!error.isEmpty())
        unlink(in_path.constData());
    return error;
}

QString SyncFolder(const QByteArray& in_folder)
{
    const Descriptor folder(open(in_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems know no such thing for folders.
    if (!folder.IsOpen() || (fsync(folder.Get()) != 0 && errno != EINVAL))
        return SystemError();
    return QString();
}

QByteArray RealPath(const QByteArray& in_path)
{
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(in_path.constData(), nullptr), &std::free);
    return QByteArray(path.get());
}

QByteArray FolderOf(const QByteArray& in_path)
{
    const auto slash = in_path.lastIndexOf('/');
    return slash > 0 ? in_path.left(slash) : QByteArray("/");
}

bool IsInside(const QByteArray& in_path, const QByteArray& in_folder)
{
    return in_path == in_folder || in_path.startsWith(in_folder.endsWith('/') ? in_folder : in_folder + '/');
}

bool MayWrite(const QByteArray& in_path)
{
    struct stat status = {};
    return stat(in_path.constData(), &status) == 0 && (status.st_mode & 0222U) != 0 &&
           access(in_path.constData(), W_OK) == 0;
}

bool MayReplace(const QByteArray& in_path)
{
    QByteArray folder = FolderOf(in_path);
    struct stat status = {};
    while (stat(folder.constData(), &status) != 0 && errno == ENOENT && folder != "/")
        folder = FolderOf(folder);
    if (!MayWrite(folder))
        return false;
    struct stat file = {};
    const uid_t user = geteuid();
    return (status.st_mode & S_ISVTX) == 0 || user == 0 || status.st_uid == user ||
           lstat(in_path.constData(), &file) != 0 || file.st_uid == user;
}

} // namespace workspace
