// SPDX-License-Identifier: MIT
/// Somebody who deals at random with whatever menu, dialog or drag is up.
#pragma once

#include "tests/nodebrowser/fuzz/modelfuzz_world.h"
#include "tests/support/modaluser.h"
#include "tests/support/testcompat.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimerEvent>

#include <functional>

/// Between Begin() and End() it does one thing after another to the window on top, and lets the host do things
/// meanwhile. All windows are left in the end, one way or another.
class Person : public QObject
{
public:
    /// \param in_host what the host does meanwhile
    Person(std::function<void()> in_host) : m_host(in_host) {}

    void Begin(unsigned in_seed)
    {
        m_random = Random(in_seed);
        m_hostActs = m_random.OneIn(2) ? m_random.Below(4) : 0;
        m_steps = 0;
        Restart();
    }

    void End()
    {
        killTimer(m_timer);
        m_timer = 0;
    }

    /// What is under the pointer while something is dragged.
    void SetDragWindow(QWidget* in_window) { m_dragWindow = in_window; }

protected:
    void timerEvent(QTimerEvent*) override
    {
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const window = popup ? popup : QApplication::activeModalWidget();
        if (!m_dragWindow && (!window || !window->isVisible()))
            return;
        // A timer does not fire while its own event is being handled, and this one may open another window.
        Restart();
        ++m_steps;
        if (m_hostActs > 0 && m_random.OneIn(2))
        {
            --m_hostActs;
            m_host();
        }
        else if (m_dragWindow)
            LetGo();
        else if (m_steps > gMostSteps)
            window->close();
        else if (QMenu* const menu = qobject_cast<QMenu*>(window))
            UseMenu(*menu);
        else
            UseDialog(*window);
    }

private:
    static const int gMostSteps = 12;

    void Restart()
    {
        killTimer(m_timer);
        m_timer = startTimer(0);
    }

    void LetGo()
    {
        // Such a loop asks the mouse, whose button is up, and ends by itself. An event would reach the browser instead,
        // and start a drag inside of the drag.
        if (testcompat::DragsInSystemLoop())
            return;
        QWidget& window = *m_dragWindow;
        QObject* const receiver = testcompat::DragEventReceiver(window);
        const QPoint position = window.rect().center();
        if (m_random.OneIn(3) && m_steps < gMostSteps)
        {
            QTest::sendKeyEvent(QTest::Click, &window, Qt::Key_Escape, QString(), Qt::NoModifier);
            return;
        }
        const bool moves = m_random.OneIn(2) && m_steps < gMostSteps;
        QMouseEvent event(moves ? QEvent::MouseMove : QEvent::MouseButtonRelease, position,
                          window.mapToGlobal(position), moves ? Qt::NoButton : Qt::LeftButton,
                          moves ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(receiver, &event);
    }

    void UseMenu(QMenu& in_menu)
    {
        const QList<QAction*> actions = in_menu.actions();
        QAction* const action =
            actions.isEmpty() ? nullptr : actions.at(m_random.Below(static_cast<int>(actions.size())));
        const int what = m_random.Below(8);
        if (what == 0)
            in_menu.close();
        else if (what < 3 || !action)
            Press(in_menu, Qt::Key_Escape);
        else if (what == 3)
            Press(in_menu, Qt::Key_Down);
        else if (!action->menu())
            ClickEntry(in_menu, *action);
        else if (!action->menu()->actions().isEmpty())
            action->menu()->actions().at(m_random.Below(static_cast<int>(action->menu()->actions().size())))->trigger();
    }

    void UseDialog(QWidget& in_window)
    {
        const int what = m_random.Below(10);
        if (what == 0)
            in_window.close();
        else if (what < 3)
            Press(in_window, what == 1 ? Qt::Key_Escape : Qt::Key_Return);
        else if (what < 6)
            ClickAnyButton(in_window);
        else
            FillIn(in_window);
    }

    void ClickAnyButton(QWidget& in_window)
    {
        const QList<QPushButton*> buttons = in_window.findChildren<QPushButton*>();
        if (!buttons.isEmpty())
            buttons.at(m_random.Below(static_cast<int>(buttons.size())))->click();
    }

    void FillIn(QWidget& in_window)
    {
        static const char* const texts[] = {"",    "Mix", "blend", "Blend", "Add",  " x",   "a b",
                                            "a;b", "[x]", "New 1", "New 2", "\xC4", "ab_1", " ; a ;; b "};
        QList<QComboBox*> combos = in_window.findChildren<QComboBox*>();
        if (!combos.isEmpty() && m_random.OneIn(3))
        {
            combos.at(0)->setCurrentIndex(m_random.Below(combos.at(0)->count()));
            return;
        }
        const QList<QLineEdit*> edits = in_window.findChildren<QLineEdit*>();
        if (edits.isEmpty())
            return;
        QLineEdit& edit = *edits.at(m_random.Below(static_cast<int>(edits.size())));
        edit.selectAll();
        edit.insert(QString::fromLatin1(m_random.OneOf(texts)));
    }

    std::function<void()> m_host;
    Random m_random = Random(0);
    QWidget* m_dragWindow = nullptr;
    int m_hostActs = 0;
    int m_steps = 0;
    int m_timer = 0;
};
