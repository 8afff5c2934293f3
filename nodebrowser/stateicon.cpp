#include "nodebrowser/stateicon.h"

#include "datamodel/helpers.h"
#include "datamodel/sourcecontrol.h"
#include "nodebrowser/qtcompat.h"

#include <QPainter>
#include <QPixmapCache>

using vireo::datamodel::Helpers;
using vireo::datamodel::LibType;
using vireo::datamodel::VireoType;

namespace
{

QPixmap LoadIcon(const char* in_name)
{
    return QPixmap(QString::fromLatin1(in_name));
}

/// Draws the factory mark at the left of an icon, both standing on the same lower edge.
QPixmap DrawFactoryMark(const QPixmap& in_icon)
{
    const QPixmap mark = LoadIcon(":./res/projectbrowser/PB_Factory.png");
    const double ratio = qtcompat::PixelRatio(in_icon);
    QPixmap marked(in_icon.width() + qRound(gFactoryMarkWidth * ratio), in_icon.height());
    qtcompat::SetPixelRatio(marked, ratio);
    marked.fill(Qt::transparent);
    QPainter painter(&marked);
    painter.drawPixmap(gFactoryMarkWidth, 0, in_icon);
    const double bottom = marked.height() / ratio;
    painter.drawPixmap(0, qRound(bottom - mark.height() / qtcompat::PixelRatio(mark)), mark);
    return marked;
}

/// The icon with the factory mark. All factory items of a kind share one picture.
QPixmap AddFactoryMark(const QPixmap& in_icon)
{
    const QString key = QString::fromLatin1("nodebrowser/factory/%1").arg(in_icon.cacheKey());
    QPixmap marked;
    if (!QPixmapCache::find(key, &marked))
    {
        marked = DrawFactoryMark(in_icon);
        QPixmapCache::insert(key, marked);
    }
    return marked;
}

} // namespace

QPixmap TypeIcon(vireo::datamodel::ItemAccessor& in_item)
{
    const char* const type = in_item.GetItemID().GetType();
    if (type == VireoType::gPolymorphicSolver || type == VireoType::gSolver)
        return LoadIcon(":solver.png");
    if (type == VireoType::gCompound)
        return LoadIcon(Helpers::IsAbstractFunction(in_item) ? ":signature.png" : ":compound.png");
    if (type == VireoType::gGlobalConstant)
        return LoadIcon(":constant.png");
    if (type == LibType::gType)
        return LoadIcon(":type.png");
    return QPixmap();
}

QPixmap ComposeStateIcon(const QPixmap& in_icon, const IconMarks& in_marks)
{
    QPixmap icon = in_marks.m_factoryItem && !in_icon.isNull() ? AddFactoryMark(in_icon) : in_icon;
    if (in_marks.m_factoryItem && in_marks.m_readOnlySource)
        return icon;
    return ScsUtils::getAssetStateIcon(icon, in_marks.m_accessState, in_marks.m_versioningActive,
                                       !in_marks.m_factoryItem);
}
