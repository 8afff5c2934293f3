/// What the tests of the dialogs share: a person who waits for a window that runs modally and then works in it.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <functional>

inline QString Latin(const char* in_text)
{
    return QString::fromLatin1(in_text);
}

/// Waits until a condition holds, for two seconds at most.
/// \return whether it came to hold
template <class Condition> bool WaitUntil(Condition in_condition)
{
    for (int waited = 0; waited < 2000 && !in_condition(); waited += 10)
        QTest::qWait(10);
    return in_condition();
}

/// Makes a window the one that what is typed arrives in, as a window manager would: there may be none.
/// \return whether it worked
inline bool Activate(QWidget& in_window)
{
    in_window.activateWindow();
    return WaitUntil(
        [&in_window] { return QApplication::activeWindow() == &in_window && QApplication::focusWidget(); });
}

/// Waits for the next modal window to become active, does something with it, and expects it to be closed then. A window
/// that stays open fails the test and is closed, so that nothing hangs.
class Person : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<void(QWidget&)>;

    explicit Person(Work in_work) : m_work(std::move(in_work)), m_before(QApplication::activeModalWidget())
    {
        QTimer::singleShot(0, this, SLOT(Act()));
    }

    /// Whether there was a window.
    bool HasActed() const { return m_acted; }

public Q_SLOTS:
    void Act()
    {
        WaitUntil([this] { return FindWindow(); });
        const QPointer<QWidget> window = FindWindow();
        const bool active = window && Activate(*window);
        if (active)
        {
            m_acted = true;
            m_work(*window);
        }
        if (window && window->isVisible())
        {
            window->close();
            QVERIFY2(!active, "The window stayed open.");
            QVERIFY2(active, "The window did not become active.");
        }
    }

private:
    QWidget* FindWindow() const
    {
        QWidget* const window = QApplication::activeModalWidget();
        return window == m_before ? nullptr : window;
    }

    Work m_work;
    QWidget* m_before;
    bool m_acted = false;
};

/// Fixes what a dialog's layout makes of its size before there is a window: the platform without a screen warns when a
/// window's limits change.
inline void SettleLayout(const QWidget& in_window)
{
    if (in_window.layout())
        in_window.layout()->activate();
}

/// Announces the warning of the platform without a screen, if this is the one, when a tool tip or a message appears.
inline void ExpectPlatformWarning(const char* in_warning)
{
    if (qApp->property("platformName").toString() == Latin("offscreen"))
        QTest::ignoreMessage(QtWarningMsg, in_warning);
}

/// Runs a dialog modally with a person in front of it.
/// \return the dialog's result; -1 when it went away before the person could do anything
inline int RunDialog(QDialog& in_dialog, Person::Work in_work)
{
    SettleLayout(in_dialog);
    const Person person(std::move(in_work));
    const int result = in_dialog.exec();
    return person.HasActed() ? result : -1;
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
        if (buttons.at(i)->text().remove(QLatin1Char('&')) == Latin(in_text))
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
    SettleLayout(in_window);
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
