// SPDX-License-Identifier: MIT
/// A person in front of menus and dialogs that run modally.
#pragma once

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QStringList>
#include <QTest>
#include <QTimerEvent>

#include <algorithm>
#include <deque>
#include <functional>

/// Takes steps one after the other. Each step waits for a window and runs inside the event loop of that window. A test
/// lists the steps before it opens the first window:
///
///     ModalUser user;
///     user.WhenMenuOpens([](QMenu& in_menu) { Choose(in_menu, "Rename Blend"); });
///     user.WhenDialogOpens("Rename Blend", [](QDialog& in_dialog) { Press(in_dialog, Qt::Key_Escape); });
///     browser.PopContexMenu(position, row);
///     QVERIFY(user.IsDone());
///
/// A window that no step waits for, or that stays open after its step, is closed after five seconds. Then IsDone()
/// stays false. So no test hangs.
class ModalUser : public QObject
{
public:
    ModalUser()
    {
        m_idle.start();
        m_timer = startTimer(gPollInterval);
    }

    void WhenMenuOpens(std::function<void(QMenu&)> in_action)
    {
        When([] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); },
             [in_action](QWidget& in_window) { in_action(static_cast<QMenu&>(in_window)); });
    }

    /// The same for a menu without entries. Only some versions of the toolkit show it, so IsDone() does not require it.
    void IfMenuOpens(std::function<void(QMenu&)> in_action)
    {
        WhenMenuOpens(in_action);
        m_steps.back().m_optional = true;
    }

    /// The same for the next modal window, whatever it is.
    void WhenWindowOpens(std::function<void(QWidget&)> in_action) { When(QApplication::activeModalWidget, in_action); }

    /// \param in_title title of the window; a message box and a dialog of ours alike
    void WhenDialogOpens(const char* in_title, std::function<void(QDialog&)> in_action)
    {
        const QString title = QString::fromLatin1(in_title);
        When(
            [title]() -> QWidget* {
                QDialog* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                return dialog && dialog->windowTitle() == title ? dialog : nullptr;
            },
            [in_action](QWidget& in_window) { in_action(static_cast<QDialog&>(in_window)); });
    }

    /// Whether all steps were taken and no window had to be closed by force.
    bool IsDone() const
    {
        return !m_stuck &&
               std::all_of(m_steps.begin(), m_steps.end(), [](const Step& in_step) { return in_step.m_optional; });
    }

protected:
    void timerEvent(QTimerEvent* in_event) override
    {
        if (in_event->timerId() != m_timer)
            return;
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const window = popup ? popup : QApplication::activeModalWidget();
        if (!window)
            m_idle.restart();
        QWidget* const expected = m_steps.empty() ? nullptr : m_steps.front().m_find();
        if (expected && expected->isVisible())
            Do(*expected);
        else if (window && m_idle.elapsed() > gPatience)
        {
            m_stuck = true;
            window->close();
        }
    }

private:
    struct Step
    {
        std::function<QWidget*()> m_find;
        std::function<void(QWidget&)> m_act;
        bool m_optional;
    };

    /// Adds a step, which runs as soon as its window is visible.
    /// \param in_find finds the window; null while there is none
    void When(std::function<QWidget*()> in_find, std::function<void(QWidget&)> in_action)
    {
        m_steps.push_back(Step{in_find, in_action, false});
    }

    void Do(QWidget& in_window)
    {
        const Step step = m_steps.front();
        m_steps.pop_front();
        m_idle.restart();
        // A timer does not fire while its own event is being handled, and this one may open another window.
        killTimer(m_timer);
        m_timer = startTimer(gPollInterval);
        step.m_act(in_window);
        m_idle.restart();
    }

    static const int gPollInterval = 2;
    static const int gPatience = 5000;

    std::deque<Step> m_steps;
    QElapsedTimer m_idle;
    int m_timer = 0;
    bool m_stuck = false;
};

/// The entries of a menu, or the titles of a menu bar.
inline QStringList Texts(const QWidget& in_menu)
{
    QStringList texts;
    const QList<QAction*> actions = in_menu.actions();
    for (int i = 0; i < actions.size(); ++i)
        texts << actions.at(i)->text();
    return texts;
}

/// The entry of a menu with a text; null when there is none.
inline QAction* FindEntry(const QMenu& in_menu, const QString& in_text)
{
    const QList<QAction*> actions = in_menu.actions();
    for (int i = 0; i < actions.size(); ++i)
        if (actions.at(i)->text() == in_text)
            return actions.at(i);
    return nullptr;
}

inline QAction* FindEntry(const QMenu& in_menu, const char* in_text)
{
    return FindEntry(in_menu, QString::fromLatin1(in_text));
}

inline void Press(QWidget& in_window, Qt::Key in_key)
{
    QTest::keyClick(&in_window, in_key);
}

/// Goes down a menu with the arrow key until an entry is the active one.
/// \return whether the entry can be reached
inline bool GoTo(QMenu& in_menu, const char* in_text)
{
    QAction* const wanted = FindEntry(in_menu, in_text);
    for (int i = 0; wanted && i < in_menu.actions().size() && in_menu.activeAction() != wanted; ++i)
        Press(in_menu, Qt::Key_Down);
    return wanted && in_menu.activeAction() == wanted;
}

/// Chooses an entry with the keyboard; leaves the menu when the entry cannot be reached.
inline void Choose(QMenu& in_menu, const char* in_text)
{
    Press(in_menu, GoTo(in_menu, in_text) ? Qt::Key_Return : Qt::Key_Escape);
}

/// Clicks an entry with the mouse, whether it is enabled or not. The pointer moves there first. Without a movement the
/// menu would take the release for the end of the click that opened it.
inline void ClickEntry(QMenu& in_menu, QAction& in_entry)
{
    const QPoint target = in_menu.actionGeometry(&in_entry).center();
    for (int away = 10; away >= 0; --away)
    {
        const QPoint position = target - QPoint(away, 0);
        QMouseEvent move(QEvent::MouseMove, position, in_menu.mapToGlobal(position), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&in_menu, &move);
    }
    QTest::mouseClick(&in_menu, Qt::LeftButton, Qt::NoModifier, target);
}

/// The same for the entry with a text.
/// \return whether there is such an entry
inline bool ClickEntry(QMenu& in_menu, const QString& in_text)
{
    QAction* const entry = FindEntry(in_menu, in_text);
    if (entry)
        ClickEntry(in_menu, *entry);
    return entry != nullptr;
}

inline bool ClickEntry(QMenu& in_menu, const char* in_text)
{
    return ClickEntry(in_menu, QString::fromLatin1(in_text));
}

/// Closes the menus that are open, as Escape does.
inline void CloseMenus()
{
    while (QWidget* const open = QApplication::activePopupWidget())
        Press(*open, Qt::Key_Escape);
}

/// Replaces the text of a line edit by typing.
inline void Retype(QLineEdit& in_edit, const char* in_text)
{
    in_edit.selectAll();
    if (!*in_text)
        Press(in_edit, Qt::Key_Delete);
    const QString text = QString::fromLatin1(in_text);
    for (int i = 0; i < text.size(); ++i)
    {
        // Only ASCII has keys of its own.
        if (text.at(i).unicode() < 128)
            QTest::keyClick(&in_edit, static_cast<char>(text.at(i).unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, &in_edit, Qt::Key_unknown, text.mid(i, 1), Qt::NoModifier);
    }
}
