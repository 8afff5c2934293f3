// SPDX-License-Identifier: MIT
#include "nodebrowser/stateicon.h"

#include "datamodel/sourcecontrol.h"
#include "qtcompat/qtcompat.h"

#include <QPainter>

namespace nodebrowser
{
namespace
{

QPixmap LoadIcon(const char* in_name)
{
    return QPixmap(QString::fromLatin1(in_name));
}

/// Draws the factory mark at the left of an icon. Both have the same lower edge.
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

} // namespace

QPixmap TypeIcon(eItemKind in_kind)
{
    switch (in_kind)
    {
    case eKindSolver:
        return LoadIcon(":solver.png");
    case eKindCompound:
        return LoadIcon(":compound.png");
    case eKindSignature:
        return LoadIcon(":signature.png");
    case eKindConstant:
        return LoadIcon(":constant.png");
    case eKindType:
        return LoadIcon(":type.png");
    case eKindOther:
        break;
    }
    return QPixmap();
}

QPixmap ComposeStateIcon(const QPixmap& in_icon, const IconMarks& in_marks)
{
    QPixmap icon = in_marks.m_factoryItem && !in_icon.isNull() ? DrawFactoryMark(in_icon) : in_icon;
    if (in_marks.m_factoryItem && in_marks.m_readOnlySource)
        return icon;
    return ScsUtils::getAssetStateIcon(icon, in_marks.m_accessState, in_marks.m_versioningActive,
                                       !in_marks.m_factoryItem);
}

const QPixmap& StateIcons::Find(eItemKind in_kind, const IconMarks& in_marks)
{
    const Key key(in_kind, in_marks.m_accessState, in_marks.m_factoryItem, in_marks.m_readOnlySource,
                  in_marks.m_versioningActive);
    if (m_last && m_last->first == key)
        return m_last->second;
    auto icon = m_icons.find(key);
    if (icon == m_icons.end())
        icon = m_icons.emplace(key, ComposeStateIcon(TypeIcon(in_kind), in_marks)).first;
    m_last = &*icon;
    return icon->second;
}

} // namespace nodebrowser
