// SPDX-License-Identifier: MIT
#include "host/fileswindow.h"

#include "host/findworkspace.h"
#include "host/itemhelp.h"
#include "host/versionfollower.h"
#include "memorymodel/library.h"
#include "qtcompat/latin1.h"
#include "workspace/versions.h"
#include "workspace/workspace.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <vector>

using qtcompat::FromLatin1;
using vireo::datamodel::ItemID;

namespace host
{
namespace
{

/// A line of its own in all columns.
void AddLine(const QString& in_text, QTreeWidgetItem& io_document)
{
    QTreeWidgetItem* const line = new QTreeWidgetItem(&io_document, {in_text});
    line->setToolTip(0, in_text);
    line->setFirstColumnSpanned(true);
}

/// A document with its state; below it, why it cannot be read, and its last commits.
void AddDocument(const workspace::DocumentVersion& in_document, workspace::Versions& in_versions, QTreeWidget& io_list)
{
    const QString state =
        in_versions.IsActive() ? QString(QLatin1String(workspace::WordsFor(in_document.m_state))) : QString();
    QTreeWidgetItem* const row = new QTreeWidgetItem(&io_list, {QDir::toNativeSeparators(in_document.m_path), state});
    row->setIcon(0, io_list.style()->standardIcon(QStyle::SP_FileIcon));
    row->setToolTip(0, in_document.m_file);
    if (!in_document.m_problem.isEmpty())
        AddLine(in_document.m_problem, *row);
    if (const std::vector<workspace::GitCommit>* const commits = in_versions.FindHistory(in_document.m_path))
        for (const workspace::GitCommit& commit : *commits)
            AddLine(
                FilesWindow::tr("%1, %2: %3")
                    .arg(QLocale().toString(commit.m_date, QLocale::ShortFormat), commit.m_author, commit.m_subject),
                *row);
}

/// The file of the document that the current line belongs to.
QString ChosenFile(const QTreeWidget& in_list)
{
    const QTreeWidgetItem* line = in_list.currentItem();
    while (line && line->parent())
        line = line->parent();
    return line ? line->toolTip(0) : QString();
}

} // namespace

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
    : QDialog(&in_parent),
      m_library(in_library),
      m_item(in_item),
      m_label(new QLabel),
      m_list(new QTreeWidget),
      m_openFolder(nullptr)
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_list->setHeaderLabels({tr("Document"), tr("State")});
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->setTextElideMode(Qt::ElideMiddle);
    QDialogButtonBox* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    m_openFolder = buttons->addButton(tr("&Open folder"), QDialogButtonBox::ActionRole);
    connect(m_openFolder, &QPushButton::clicked, this, &FilesWindow::OnOpenFolder);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QVBoxLayout* const rows = new QVBoxLayout(this);
    rows->addWidget(m_label);
    rows->addWidget(m_list);
    rows->addWidget(buttons);
    const QSize size(560, 300);
    resize(size);
    if (const workspace::Versions* const versions = FindVersions(m_library))
    {
        connect(versions, &workspace::Versions::StatesRead, this, &FilesWindow::Refresh);
        connect(versions, &workspace::Versions::HistoryRead, this, &FilesWindow::Refresh);
    }
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
    // While documents are read anew, nothing is known of their items. The states follow.
    if (const std::shared_ptr<workspace::Workspace> workspace = FindWorkspace(m_library);
        workspace && workspace->IsBusy() && m_list->topLevelItemCount() > 0)
        return;
    const QString name = GetFullName(m_library, m_item);
    const QString sourceName = FromLatin1(source->GetName());
    setWindowTitle(tr("Files of %1").arg(name));
    const QString chosen = ChosenFile(*m_list);
    m_list->clear();
    workspace::Versions* const versions = FindVersions(m_library);
    m_list->setVisible(versions != nullptr);
    m_openFolder->setVisible(versions != nullptr);
    if (!versions)
    {
        m_label->setText(tr("%1 is in the data source %2, in memory only.").arg(name, sourceName));
        return;
    }
    QString text = tr("%1 is stored in the data source %2:").arg(name, sourceName);
    if (!versions->GetProblem().isEmpty())
        text += QLatin1Char('\n') + versions->GetProblem();
    else if (!versions->IsActive())
        text += QLatin1Char('\n') + tr("It is not under version control.");
    m_label->setText(text);
    for (const workspace::DocumentVersion& document : versions->GetDocuments(m_item))
        AddDocument(document, *versions, *m_list);
    m_list->expandAll();
    m_list->setCurrentItem(m_list->topLevelItem(0));
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        if (m_list->topLevelItem(i)->toolTip(0) == chosen)
            m_list->setCurrentItem(m_list->topLevelItem(i));
    m_openFolder->setEnabled(m_list->topLevelItemCount() != 0);
}

void FilesWindow::OnOpenFolder()
{
    const QString file = ChosenFile(*m_list);
    if (!file.isEmpty())
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).path()));
}

} // namespace host
