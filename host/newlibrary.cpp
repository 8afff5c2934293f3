// SPDX-License-Identifier: MIT
#include "host/newlibrary.h"

#include <QDir>
#include <QDirIterator>
#include <QSaveFile>

namespace host
{

QString MakeLibrary(const QString& in_folder)
{
    const QDir folder(in_folder);
    if (QDirIterator(in_folder, {QStringLiteral("*.mtlx")}, QDir::Files, QDirIterator::Subdirectories).hasNext())
        return QStringLiteral("%1 has MaterialX documents already. Open it instead.").arg(in_folder);
    if (!folder.mkpath(QStringLiteral("local")))
        return QStringLiteral("No folder can be made in %1").arg(in_folder);
    const QByteArray text = "<?xml version=\"1.0\"?>\n<materialx version=\"1.39\">\n</materialx>\n";
    QSaveFile file(folder.filePath(QStringLiteral("local/local.mtlx")));
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return QString();
    return QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
}

} // namespace host
