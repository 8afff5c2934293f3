// SPDX-License-Identifier: MIT
#include "host/fileswindow.h"

#include "host/itemlabel.h"
#include "memorymodel/library.h"
#include "qtcompat/latin1.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QStyle>
#include <QVBoxLayout>

using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;

namespace host
{

void FilesWindow::Open(const memorymodel::Library& in_library, const ItemID& in_item, QWidget& in_parent)
{
    if (!in_library.GetSourceOf(in_item))
        return;
    FilesWindow* window = nullptr;
    for (FilesWindow* const open : in_parent.findChildren<FilesWindow*>())
        if (open->m_item == in_item && open->isVisible())
            window = open;
    if (!window)
        window = new FilesWindow(in_library, in_item, in_parent);
    window->show();
    window->raise();
    window->activateWindow();
}

FilesWindow::FilesWindow(const memorymodel::Library& in_library, const ItemID& in_item, QWidget& in_parent)
    : QDialog(&in_parent), m_library(in_library), m_item(in_item), m_sourceLabel(new QLabel), m_list(new QListWidget)
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_sourceLabel->setTextFormat(Qt::PlainText);
    m_sourceLabel->setWordWrap(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    QDialogButtonBox* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->addWidget(m_sourceLabel);
    rows->addWidget(m_list);
    rows->addWidget(buttons);
    resize(460, 180);
    Refresh();
}

void FilesWindow::Refresh()
{
    const memorymodel::DataSource* const source = m_library.GetSourceOf(m_item);
    if (!source)
    {
        close();
        return;
    }
    const QString name = GetItemName(m_library, m_item);
    const QString location = FromLatin1(source->GetLocation());
    setWindowTitle(tr("Files of %1").arg(name));
    m_sourceLabel->setText(tr("%1 is stored in the data source %2:").arg(name, FromLatin1(source->GetName())));

    const QFileInfo onDisk(location);
    const QIcon fileIcon = style()->standardIcon(QStyle::SP_FileIcon);
    m_list->clear();
    new QListWidgetItem(onDisk.isFile() ? fileIcon : style()->standardIcon(QStyle::SP_DirIcon),
                        QDir::toNativeSeparators(location), m_list);
    if (!onDisk.exists())
        new QListWidgetItem(fileIcon, QDir::toNativeSeparators(location + QLatin1Char('/') + name), m_list);
    for (int i = 0; i < m_list->count(); ++i)
        m_list->item(i)->setToolTip(m_list->item(i)->text());
}

} // namespace host
