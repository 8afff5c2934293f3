// SPDX-License-Identifier: MIT
#include "host/librarybrowser.h"

#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "qtcompat/latin1.h"

#include <QLineEdit>
#include <QTabBar>

using qtcompat::FromLatin1;
using vireo::datamodel::ItemAccessor;
using vireo::datamodel::ItemID;

namespace host
{

LibraryBrowser::LibraryBrowser() : CNodeBrowser(eConfigNodeBrowser)
{
    m_afterFrame.setSingleShot(true);
    connect(&m_afterFrame, &QTimer::timeout, this, &LibraryBrowser::Painted);
}

void LibraryBrowser::paintEvent(QPaintEvent* in_event)
{
    CNodeBrowser::paintEvent(in_event);
    m_afterFrame.start(0);
}

void LibraryBrowser::SelectTab(int in_tab)
{
    findChild<QTabBar*>()->setCurrentIndex(in_tab);
}

void LibraryBrowser::Search(const QString& in_text)
{
    findChild<QLineEdit*>()->setText(in_text);
}

std::vector<Row> LibraryBrowser::GetRows(const memorymodel::Library& in_library) const
{
    std::vector<Row> rows(GetRowCount());
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        ItemAccessor accessor = GetRowItem(i);
        const ItemID item = accessor.GetItemID();
        rows[i].m_kind = QLatin1String(GetItemLabel(in_library, item).m_word);
        rows[i].m_name = GetItemName(in_library, item);
        for (const std::string& tag : GetSearchTags(item))
            rows[i].m_tags << FromLatin1(tag);
        CompareToFilter(accessor, &rows[i].m_score);
    }
    return rows;
}

} // namespace host
