// SPDX-License-Identifier: MIT
#include "host/manualpages.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

/// Outside of any namespace, as the toolkit asks for.
static void InitializeManual()
{
    Q_INIT_RESOURCE(manual);
}

namespace host
{

namespace
{

QString FileOf(const QString& in_target)
{
    return QStringLiteral(":/manual/") + in_target;
}

/// Makes "text" of "[text](target)" where the target is a page or a folder that is not built in.
QString WithoutDeadLinks(const QString& in_page)
{
    static const QRegularExpression link(QStringLiteral("(?<!!)\\[([^\\]]*)\\]\\(([^):#]+)\\)"));
    QString page;
    int end = 0;
    for (QRegularExpressionMatchIterator links = link.globalMatch(in_page); links.hasNext();)
    {
        const QRegularExpressionMatch match = links.next();
        const int begin = static_cast<int>(match.capturedStart());
        page += in_page.mid(end, begin - end);
        page += match.captured(QFile::exists(FileOf(match.captured(2))) ? 0 : 1);
        end = static_cast<int>(match.capturedEnd());
    }
    return page + in_page.mid(end);
}

} // namespace

ManualPages::ManualPages()
{
    InitializeManual();
    setOpenExternalLinks(true);
    setSource(QUrl(QStringLiteral("qrc:/manual/host.md")));
}

QVariant ManualPages::loadResource(int in_type, const QUrl& in_url)
{
    const QVariant resource = QTextBrowser::loadResource(in_type, in_url);
    if (!in_url.path().endsWith(QStringLiteral(".md")))
        return resource;
    return WithoutDeadLinks(QString::fromUtf8(resource.toByteArray()));
}

} // namespace host
