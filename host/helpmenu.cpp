// SPDX-License-Identifier: MIT
#include "host/helpmenu.h"

#include "nodebrowser/version.h"

#include <QAction>
#include <QDialog>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

/// Outside of any namespace, as the toolkit asks for.
static void InitializeManual()
{
    Q_INIT_RESOURCE(manual);
}

namespace host
{

namespace
{

const QSize gManualSize(760, 640);

/// "Undo: Ctrl+Z", a line for each entry with a key.
void Collect(const QMenu& in_menu, QStringList& io_lines)
{
    for (const QAction* const action : in_menu.actions())
    {
        if (const QMenu* const submenu = action->menu())
            Collect(*submenu, io_lines);
        if (!action->shortcut().isEmpty())
            io_lines << QStringLiteral("%1: %2").arg(action->text().remove(QLatin1Char('&')),
                                                     action->shortcut().toString(QKeySequence::NativeText));
    }
}

} // namespace

HelpMenu::HelpMenu(QMainWindow& in_window) : QMenu(tr("&Help"), &in_window), m_window(in_window)
{
    QAction* const manual = addAction(tr("&Manual"));
    manual->setShortcut(QKeySequence::HelpContents);
    connect(manual, &QAction::triggered, this, &HelpMenu::ShowManual);
    connect(addAction(tr("&Keyboard shortcuts")), &QAction::triggered, this, &HelpMenu::ShowShortcuts);
    addSeparator();
    connect(addAction(tr("&About")), &QAction::triggered, this, &HelpMenu::ShowAbout);
}

void HelpMenu::ShowManual()
{
    InitializeManual();
    QDialog* const dialog = new QDialog(&m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Manual"));
    dialog->resize(gManualSize);
    QTextBrowser* const pages = new QTextBrowser;
    pages->setOpenExternalLinks(true);
    pages->setSource(QUrl(QStringLiteral("qrc:/manual/libraries.md")));
    QVBoxLayout* const layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pages);
    dialog->show();
}

void HelpMenu::ShowShortcuts()
{
    QStringList lines;
    for (const QAction* const menu : m_window.menuBar()->actions())
        if (menu->menu())
            Collect(*menu->menu(), lines);
    QMessageBox::information(&m_window, tr("Keyboard shortcuts"), lines.join(QLatin1Char('\n')));
}

void HelpMenu::ShowAbout()
{
    QMessageBox::about(&m_window, tr("About"),
                       tr("nodebrowser %1, the reference host.\n\nA browser for node libraries, at work on documents. "
                          "Licence: MIT.")
                           .arg(QLatin1String(NODEBROWSER_VERSION_STRING)));
}

} // namespace host
