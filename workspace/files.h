// SPDX-License-Identifier: MIT
/// Files as the system has them: their bytes, what may be written, and calls that fail with a reason.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Paths are in the encoding of the system, as QFile::encodeName() makes them.
namespace workspace
{

/// A fingerprint of some bytes, in hexadecimal digits. Never empty.
QByteArray HashOf(std::string_view in_bytes);

/// What the last call of the system failed for.
QString SystemError();

/// An open file or folder. Closed at the end.
class Descriptor
{
public:
    explicit Descriptor(int in_number) : m_number(in_number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const { return m_number >= 0; }
    int Get() const { return m_number; }
    /// False when the system reports late that something was not written.
    bool Close();

private:
    int m_number;
};

/// The bytes of a file; nothing when there is none.
/// \param out_error why it could not be read; empty when it could, or when there is none
std::optional<std::string> ReadBytes(const QByteArray& in_path, QString& out_error);

/// What the system tells of a file without reading it. One that it tells the same of has the same bytes.
struct FileStamp
{
    std::uint64_t m_device = 0;
    std::uint64_t m_number = 0;
    std::int64_t m_size = -1;   ///< -1: nothing is known of the file
    std::int64_t m_changed = 0; ///< nanoseconds

    bool operator==(const FileStamp& in_other) const
    {
        return m_device == in_other.m_device && m_number == in_other.m_number && m_size == in_other.m_size &&
               m_changed == in_other.m_changed;
    }
};

/// Nothing for a file that was changed just now: it could change again, and the system would tell the same of it.
FileStamp StampOf(const QByteArray& in_path);

/// Writes a new file and waits until it is on the disk. An existing file is not touched.
/// \param in_like the file whose permissions, owner and group it gets, if there is such a file, as far as the user may
/// give them. A group that it does not get takes its permissions with it
/// \return why it could not be written; empty on success. On a failure nothing is left of it
QString WriteNewFile(const QByteArray& in_path, std::string_view in_bytes, const QByteArray& in_like = QByteArray());

/// Waits until the names in a folder are on the disk.
/// \return why that cannot be known; empty on success
QString SyncFolder(const QByteArray& in_folder);

/// A path without links; empty when there is no such file or folder.
QByteArray RealPath(const QByteArray& in_path);

/// The folder part of an absolute path.
QByteArray FolderOf(const QByteArray& in_path);

/// Whether a path is a folder or below it. Both are without links.
bool IsInside(const QByteArray& in_path, const QByteArray& in_folder);

/// Whether there is a file or folder that may be written. One that nobody may write is not written by the
/// administrator either, who could.
bool MayWrite(const QByteArray& in_path);

/// Whether a file could be replaced, or made: its folder, or the nearest one above that is there, takes files. Where
/// everybody may do that, as in /tmp, a file is its owner's.
bool MayReplace(const QByteArray& in_path);

} // namespace workspace
