// SPDX-License-Identifier: MIT
#include "host/breadcrumb.h"

#include "host/itemhelp.h"
#include "memorymodel/library.h"

#include <QFontMetrics>

#include <algorithm>

using vireo::datamodel::ItemID;

namespace host
{

namespace
{

const int gMargin = 6;
const int gLongestName = 160;

} // namespace

Breadcrumb::Breadcrumb()
{
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    setWordWrap(true);
    setContentsMargins(gMargin, gMargin, gMargin, gMargin);
    setAccessibleName(tr("Where the graph is"));
    connect(this, &QLabel::linkActivated, this, &Breadcrumb::OnLinkActivated);
}

void Breadcrumb::SetLibrary(const memorymodel::Library* in_library)
{
    m_library = in_library;
    m_way.clear();
    Refresh();
}

void Breadcrumb::Enter(const ItemID& in_compound)
{
    if (std::find(m_way.begin(), m_way.end(), in_compound) == m_way.end())
        m_way.push_back(in_compound);
}

void Breadcrumb::SetCompound(const ItemID& in_compound)
{
    const auto known = std::find(m_way.begin(), m_way.end(), in_compound);
    if (known != m_way.end())
    {
        m_way.erase(known + 1, m_way.end());
    }
    else
    {
        m_way.clear();
        if (in_compound.IsValid())
            m_way.push_back(in_compound);
    }
    Refresh();
}

ItemID Breadcrumb::GetParentOf(const ItemID& in_compound) const
{
    const auto known = std::find(m_way.begin(), m_way.end(), in_compound);
    return known == m_way.begin() || known == m_way.end() ? ItemID() : ItemID(*(known - 1));
}

QStringList Breadcrumb::GetNames() const
{
    QStringList names(tr("Main graph"));
    for (const ItemID& compound : m_way)
        names << GetFullName(*m_library, compound);
    return names;
}

void Breadcrumb::Refresh()
{
    m_way.erase(std::remove_if(m_way.begin(), m_way.end(),
                               [this](const ItemID& in_compound) { return !m_library->GetSourceOf(in_compound); }),
                m_way.end());
    const QStringList names = GetNames();
    QStringList parts;
    for (int i = 0; i < names.size(); ++i)
    {
        const QString name = fontMetrics().elidedText(names.at(i), Qt::ElideRight, gLongestName).toHtmlEscaped();
        parts << (i + 1 == names.size() ? QStringLiteral("<b>%1</b>").arg(name)
                                        : QStringLiteral("<a href=\"%1\">%2</a>").arg(QString::number(i), name));
    }
    setText(parts.join(QStringLiteral(" \u203a ")));
}

void Breadcrumb::OnLinkActivated(const QString& in_link)
{
    const std::size_t index = static_cast<std::size_t>(in_link.toInt());
    Q_EMIT Chosen(index == 0 || index > m_way.size() ? ItemID() : ItemID(m_way[index - 1]));
}

} // namespace host
