// SPDX-License-Identifier: MIT
/// What the tests of the dialogs share: a person who works in a dialog, and finds the parts of it.
#pragma once

#include "qtcompat/latin1.h"
#include "tests/support/modaluser.h"
#include "tests/support/testcompat.h"
#include "tests/support/waiting.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QWidget>

#include <functional>

/// Makes a window the one that what is typed arrives in, as a window manager would. There may be none, and a system may
/// refuse; then the toolkit is told that it is the active one.
/// \return whether it worked
inline bool Activate(QWidget& in_window)
{
    const auto isActive = [&in_window] {
        return QApplication::activeWindow() == &in_window && QApplication::focusWidget();
    };
    in_window.activateWindow();
    if (WaitFor(isActive))
        return true;
    testcompat::DeclareActive(in_window);
    return WaitFor(isActive);
}

/// Runs a dialog modally with a person in front of it, who is expected to close it.
/// \return the dialog's result; -1 when it never became the active window
inline int RunDialog(QDialog& in_dialog, const std::function<void(QWidget&)>& in_work)
{
    bool active = false;
    ModalUser user;
    user.WhenWindowOpens([&](QWidget& in_window) {
        active = Activate(in_window);
        if (active)
            in_work(in_window);
    });
    const int result = in_dialog.exec();
    QTest::qVerify(user.IsDone(), "user.IsDone()", "The dialog stayed open or was never active.", __FILE__, __LINE__);
    return active ? result : -1;
}

/// Presses a key in the widget that has the focus, as the keyboard does.
inline void PressKey(Qt::Key in_key, Qt::KeyboardModifiers in_modifiers = Qt::NoModifier)
{
    QVERIFY2(QApplication::focusWidget(), "Nothing has the focus.");
    QTest::keyClick(QApplication::focusWidget(), in_key, in_modifiers);
}

/// Types a text, character by character, into the widget that has the focus.
inline void TypeText(const QString& in_text)
{
    for (int i = 0; i < in_text.size(); ++i)
    {
        QVERIFY2(QApplication::focusWidget(), "Nothing has the focus.");
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(in_text.at(i)));
        QApplication::sendEvent(QApplication::focusWidget(), &press);
    }
}

inline void Click(QWidget& in_widget)
{
    QTest::mouseClick(&in_widget, Qt::LeftButton);
}

/// The button of a window with a text, a mnemonic's ampersand not counted; null when there is none.
inline QPushButton* FindButton(const QWidget& in_window, const char* in_text)
{
    const QList<QPushButton*> buttons = in_window.findChildren<QPushButton*>();
    for (int i = 0; i < buttons.size(); ++i)
        if (buttons.at(i)->text().remove(QLatin1Char('&')) == qtcompat::FromLatin1(in_text))
            return buttons.at(i);
    return nullptr;
}

/// The label of a window with a text; null when there is none.
inline QLabel* FindLabel(const QWidget& in_window, const QString& in_text)
{
    const QList<QLabel*> labels = in_window.findChildren<QLabel*>();
    for (int i = 0; i < labels.size(); ++i)
        if (labels.at(i)->text() == in_text)
            return labels.at(i);
    return nullptr;
}

/// The edits of a window in the order in which the Tab key reaches them.
inline QList<QLineEdit*> FindEdits(const QWidget& in_window)
{
    QList<QLineEdit*> edits;
    for (QWidget* next = in_window.nextInFocusChain(); next != &in_window; next = next->nextInFocusChain())
        if (QLineEdit* const edit = qobject_cast<QLineEdit*>(next))
            edits << edit;
    return edits;
}

/// Shows a window and waits until it is the active one.
inline bool ShowActive(QWidget& in_window)
{
    in_window.show();
    return Activate(in_window);
}

/// Which widgets the Tab key leads to, starting with the one that has the focus, until it comes round.
inline QList<QWidget*> FollowTabKey()
{
    QList<QWidget*> stops;
    for (QWidget* stop = QApplication::focusWidget(); stop && !stops.contains(stop); stop = QApplication::focusWidget())
    {
        stops << stop;
        QTest::keyClick(stop, Qt::Key_Tab);
    }
    return stops;
}
