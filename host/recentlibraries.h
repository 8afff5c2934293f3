// SPDX-License-Identifier: MIT
/// The libraries that were opened last, kept in the user's settings.
#pragma once

#include <QMenu>
#include <QString>
#include <QStringList>

namespace host
{

/// Absolute paths, the last one opened first; at most 8. They are kept under "nodebrowser" in the settings' default
/// format.
QStringList GetRecentLibraries();

/// Puts a library at the front.
void AddRecentLibrary(const QString& in_path);

/// The menu of these libraries, filled each time it opens. A library that no longer exists is marked and cannot be
/// chosen.
class RecentMenu : public QMenu
{
    Q_OBJECT

public:
    explicit RecentMenu(QWidget* in_parent);

Q_SIGNALS:
    void Chosen(const QString& in_path);

private Q_SLOTS:
    void Fill();
};

} // namespace host
