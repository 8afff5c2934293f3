// SPDX-License-Identifier: MIT
#include "host/recentlibraries.h"

#include "host/settings.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>

namespace host
{

namespace
{

const int gMostLibraries = 8;
const int gLongestFolder = 48; // characters

QString Key()
{
    return QStringLiteral("recentLibraries");
}

/// "weather.mtlx \u2013 /home/me/libraries"; the middle of a long folder is left out.
QString Describe(const QFileInfo& in_path)
{
    QString folder = QDir::toNativeSeparators(in_path.path());
    if (folder.size() > gLongestFolder)
        folder = folder.left(gLongestFolder / 2) + QChar(0x2026) + folder.right(gLongestFolder / 2);
    QString text = QStringLiteral("%1 \u2013 %2").arg(in_path.fileName(), folder);
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

QStringList GetRecentLibraries()
{
    return Settings().value(Key()).toStringList().mid(0, gMostLibraries);
}

void AddRecentLibrary(const QString& in_path)
{
    const QString path = QDir::cleanPath(QFileInfo(in_path).absoluteFilePath());
    QStringList paths = GetRecentLibraries();
    paths.removeAll(path);
    paths.prepend(path);
    Settings().setValue(Key(), QStringList(paths.mid(0, gMostLibraries)));
}

RecentMenu::RecentMenu(QWidget* in_parent) : QMenu(tr("Re&cent libraries"), in_parent)
{
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &RecentMenu::Fill);
}

void RecentMenu::Fill()
{
    clear();
    int number = 0;
    for (const QString& path : GetRecentLibraries())
    {
        const QFileInfo info(path);
        const QString text = info.exists() ? QStringLiteral("&%1  %2") : tr("&%1  %2 (missing)");
        QAction* const action = addAction(text.arg(++number).arg(Describe(info)));
        action->setEnabled(info.exists());
        action->setToolTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, this, [this, path] { Q_EMIT Chosen(path); });
    }
    if (number == 0)
        addAction(tr("None yet"))->setEnabled(false);
}

} // namespace host
