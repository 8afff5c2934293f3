// SPDX-License-Identifier: MIT
#include "nodebrowser/stateicon.h"

#include "datamodel/sourcecontrol.h"
#include "qtcompat/qtcompat.h"

#include <QPainter>

namespace nodebrowser
{
namespace
{

/// An icon for a device pixel ratio. There are renderings for 1, 2 and 3; for what lies between, the largest one is
/// made smaller. So thin lines keep an even weight.
QPixmap LoadIcon(const char* in_name, double in_ratio)
{
    QString path = QString::fromLatin1(in_name);
    const QPixmap plain(path);
    if (qFuzzyCompare(in_ratio, 1.0))
        return plain;
    path.insert(path.lastIndexOf(QLatin1Char('.')), QLatin1String(qFuzzyCompare(in_ratio, 2.0) ? "@2x" : "@3x"));
    QPixmap icon(path);
    const QSize size(qRound(plain.width() * in_ratio), qRound(plain.height() * in_ratio));
    if (icon.size() != size)
        icon = icon.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    qtcompat::SetPixelRatio(icon, in_ratio);
    return icon;
}

/// Draws the factory mark at the left of an icon. Both have the same lower edge.
QPixmap DrawFactoryMark(const QPixmap& in_icon)
{
    const double ratio = qtcompat::PixelRatio(in_icon);
    QPixmap mark = LoadIcon(":./res/projectbrowser/PB_Factory.png", ratio);
    QPixmap icon = in_icon;
    // Everything is painted in device pixels: at a ratio of 1.5, others would end inside of one.
    qtcompat::SetPixelRatio(mark, 1);
    qtcompat::SetPixelRatio(icon, 1);
    const int column = qRound(gFactoryMarkWidth * ratio);
    QPixmap marked(icon.width() + column, icon.height());
    marked.fill(Qt::transparent);
    QPainter painter(&marked);
    painter.drawPixmap(column, 0, icon);
    painter.drawPixmap(0, marked.height() - mark.height(), mark);
    painter.end();
    qtcompat::SetPixelRatio(marked, ratio);
    return marked;
}

} // namespace

QPixmap TypeIcon(eItemKind in_kind, double in_ratio)
{
    switch (in_kind)
    {
    case eKindSolver:
        return LoadIcon(":solver.png", in_ratio);
    case eKindCompound:
        return LoadIcon(":compound.png", in_ratio);
    case eKindSignature:
        return LoadIcon(":signature.png", in_ratio);
    case eKindConstant:
        return LoadIcon(":constant.png", in_ratio);
    case eKindType:
        return LoadIcon(":type.png", in_ratio);
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
        icon = m_icons.emplace(key, Compose(key)).first;
    m_last = &*icon;
    return icon->second;
}

QPixmap StateIcons::Compose(const Key& in_key) const
{
    IconMarks marks;
    marks.m_accessState = std::get<1>(in_key);
    marks.m_factoryItem = std::get<2>(in_key);
    marks.m_readOnlySource = std::get<3>(in_key);
    marks.m_versioningActive = std::get<4>(in_key);
    return ComposeStateIcon(TypeIcon(std::get<0>(in_key), m_ratio), marks);
}

void StateIcons::SetPixelRatio(double in_ratio)
{
    if (qFuzzyCompare(in_ratio, m_commonRatio))
        return;
    // The data layer draws the badges. It may throw, or come back to Find().
    m_commonRatio = 0.0;
    m_ratio = in_ratio;
    for (auto& icon : m_icons)
        icon.second = Compose(icon.first);
    m_commonRatio = in_ratio;
}

} // namespace nodebrowser
