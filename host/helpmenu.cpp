// SPDX-License-Identifier: MIT
#include "host/helpmenu.h"

#include "host/manualpages.h"
#include "host/searchkeys.h"
#include "nodebrowser/version.h"

#include <QAction>
#include <QDialog>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QVBoxLayout>

namespace host
{

namespace
{

const QSize gManualSize(760, 640);

/// "Redo: Ctrl+Shift+Z; Ctrl+Y", a line for each entry with a key.
void Collect(const QMenu& in_menu, QStringList& io_lines)
{
    for (const QAction* const action : in_menu.actions())
    {
        if (const QMenu* const submenu = action->menu())
            Collect(*submenu, io_lines);
        const QString keys = QKeySequence::listToString(action->shortcuts(), QKeySequence::NativeText);
        if (!keys.isEmpty())
            io_lines << QStringLiteral("%1: %2").arg(action->text().remove(QLatin1Char('&')), keys);
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
    QDialog* const dialog = new QDialog(&m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Manual"));
    dialog->resize(gManualSize);
    ManualPages* const pages = new ManualPages;
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
    lines << QString() << tr("In the search field:") << SearchKeys::Describe();
    QMessageBox box(QMessageBox::Information, tr("Keyboard shortcuts"), lines.join(QLatin1Char('\n')), QMessageBox::Ok,
                    &m_window);
    box.setTextFormat(Qt::PlainText); // "Undo" names an item
    box.exec();
}

void HelpMenu::ShowAbout()
{
    QMessageBox::about(&m_window, tr("About"),
                       tr("nodebrowser %1, the reference host.\n\nA browser for node libraries, at work on documents. "
                          "Licence: MIT.")
                           .arg(QLatin1String(NODEBROWSER_VERSION_STRING)));
}

} // namespace host
