// SPDX-License-Identifier: MIT
/// A person's journey through the window of the host: the steps that journeys share.
#pragma once

#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/host/journey.h"
#include "tests/host/windowfixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include <memory>
#include <utility>

inline QString Same(const QString& in_actual, const QString& in_wanted)
{
    return in_actual == in_wanted ? QString() : QStringLiteral("\"%1\" is not \"%2\"").arg(in_actual, in_wanted);
}

inline QString Needs(bool in_fact, const char* in_what)
{
    return in_fact ? QString() : QStringLiteral("missing: ") + QLatin1String(in_what);
}

inline QString Both(const QString& in_first, const QString& in_second)
{
    return in_first.isEmpty() ? in_second : in_first;
}

template <class Widget> Widget* InDialog()
{
    QWidget* const dialog = QApplication::activeModalWidget();
    return dialog ? dialog->findChild<Widget*>() : nullptr;
}

inline QMenu* OpenPopup()
{
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

/// The entry of the menu in front, or null.
inline QAction* EntryInFront(const QString& in_text)
{
    const QMenu* const menu = OpenPopup();
    return menu ? FindEntry(*menu, in_text) : nullptr;
}

inline QPoint CentreOfEntry(const QString& in_text)
{
    QMenu* const menu = OpenPopup();
    return menu->mapToGlobal(menu->actionGeometry(EntryInFront(in_text)).center());
}

class WindowJourney : public QObject
{
protected:
    /// \param in_folder for the pictures
    /// \return why it cannot begin, else empty
    QString Begin(const QString& in_folder)
    {
        m_journey.reset(new Journey(in_folder));
        return m_journey->StartWindowManager();
    }

    void ShowWindow(memorymodel::Library& in_library)
    {
        m_window.reset(new host::MainWindow(m_layer, in_library));
        m_window->resize(900, 600);
        m_window->move(60, 60);
        m_window->show();
    }

    virtual void Step(const QString& in_name, Journey::Action in_action, Journey::Check in_check)
    {
        m_journey->Add(in_name, std::move(in_action), std::move(in_check));
    }

    /// Clicks the first row with the right button and chooses an entry of its menu.
    void ChooseInContextMenu(const QString& in_entry, Journey::Check in_check)
    {
        Step(
            QStringLiteral("menu for ") + in_entry, [this] { return ClickAt(Row(0), 3); },
            [in_entry] {
                const QAction* const entry = EntryInFront(in_entry);
                return Needs(entry && entry->isEnabled(), qPrintable(in_entry));
            });
        Step(in_entry, [in_entry] { return ClickAt(CentreOfEntry(in_entry)); }, std::move(in_check));
    }

    /// Opens a menu of the menu bar with the mouse.
    void OpenInMenuBar(const QString& in_title, const QString& in_entry)
    {
        Step(
            QStringLiteral("open the %1 menu").arg(QString(in_title).remove(QLatin1Char('&'))),
            [this, in_title] {
                const QMenuBar& bar = *m_window->menuBar();
                for (QAction* const action : bar.actions())
                    if (action->text() == in_title)
                        return ClickAt(bar.mapToGlobal(bar.actionGeometry(action).center()));
                return QStringList();
            },
            [in_entry] { return Needs(EntryInFront(in_entry), qPrintable(in_entry)); });
    }

    /// Types into the search field in the place of what it holds.
    void SearchFor(const QString& in_text, const QStringList& in_rows)
    {
        Step(
            QStringLiteral("go to search for ") + in_text, [this] { return ClickAt(CentreOf(*SearchField())); },
            [this] { return Needs(SearchField()->hasFocus(), "the focus in the search field"); });
        Step(
            QStringLiteral("mark the search before ") + in_text, [] { return PressKeys({QStringLiteral("ctrl+a")}); },
            [this] { return Same(SearchField()->selectedText(), SearchField()->text()); });
        Step(
            QStringLiteral("search for ") + in_text, [in_text] { return TypeText(in_text); },
            [this, in_text, in_rows] {
                return Both(Same(SearchField()->text(), in_text),
                            Same(Rows().join(QLatin1Char('|')), in_rows.join(QLatin1Char('|'))));
            });
    }

    QLineEdit* SearchField() const { return m_window->GetBrowser().findChild<QLineEdit*>(); }
    QStringList Rows() const
    {
        QStringList names;
        for (const host::Row& row : m_window->GetBrowser().GetRows(m_window->GetLibrary()))
            names << row.m_name;
        return names;
    }

    /// The middle of a row on the screen.
    QPoint Row(int in_row) const { return m_window->GetBrowser().mapToGlobal(RowCentre(in_row)); }

    QString StatusText() const { return m_window->statusBar()->findChildren<QLabel*>().first()->text(); }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<host::MainWindow> m_window;
    std::unique_ptr<Journey> m_journey;
};
