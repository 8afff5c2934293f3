// SPDX-License-Identifier: MIT
/// A person in front of a program that knows nothing of tests. Qt loads this plug-in into each program that is started
/// with
///
///     QT_PLUGIN_PATH=FOLDER QT_QPA_GENERIC_PLUGINS=person:JOURNEY QT_QPA_PLATFORM=offscreen
///
/// The person does the steps of the journey by mouse and key events that the windows get as if the system sent them,
/// and looks at what the program painted. A journey ends with a line "the person did all of JOURNEY"; the program then
/// ends by itself. A step that cannot be done in time ends the program with status 3.
#include "nodebrowser/rowlayout.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QGenericPlugin>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QScreen>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

namespace
{

const int gInterval = 20;     // milliseconds between two looks at the program
const int gLimit = 30 * 1000; // milliseconds for each step

/// One thing to do or to see. It is tried until it returns true.
struct Step
{
    QString m_what;
    std::function<bool()> m_try;
};

/// Does something once the step is over: a press may open a menu, and returns when that is closed.
void Do(std::function<void()> in_action)
{
    QTimer::singleShot(0, qApp, std::move(in_action));
}

/// The browser that is shown; null when there is none.
QWidget* FindBrowser()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets)
        if (widget->inherits("CNodeBrowser") && widget->isVisible() && widget->window()->windowHandle()->isExposed())
            return widget;
    return nullptr;
}

QLineEdit* FindSearchField()
{
    QWidget* const browser = FindBrowser();
    return browser ? browser->findChild<QLineEdit*>() : nullptr;
}

int ListTop(const QWidget& in_browser)
{
    const QTabBar* const tabs = in_browser.findChild<QTabBar*>();
    return nodebrowser::gListTop + (tabs && tabs->isVisible() ? nodebrowser::gTabBarRoom : 0);
}

/// The names in the list, as a screen reader reads them.
QStringList ReadNames(QWidget& in_browser)
{
    QStringList names;
    QAccessibleInterface* const browser = QAccessible::queryAccessibleInterface(&in_browser);
    QAccessibleInterface* const list = browser->child(browser->childCount() - 1);
    for (int row = 0; row < list->childCount(); ++row)
        names << list->child(row)->text(QAccessible::Name);
    return names;
}

/// Whether a row's icon and name are there: points that are far from the colour of the row's last free column.
bool HasInk(const QImage& in_list, int in_row)
{
    const int top = in_row * nodebrowser::gRowHeight;
    const int right = in_list.width() * 3 / 4;
    int points = 0;
    for (int y = top + 2; y < top + nodebrowser::gRowHeight - 2; ++y)
        for (int x = 2; x < right; ++x)
            points += qAbs(qGray(in_list.pixel(x, y)) - qGray(in_list.pixel(right, y))) > 60;
    return points > 20;
}

/// How many rows the window shows, from the top without a gap; -1 when there is ink below a gap.
int CountPaintedRows(const QWidget& in_browser)
{
    QWindow* const window = in_browser.window()->windowHandle();
    const QPoint corner = in_browser.mapTo(in_browser.window(), QPoint(0, ListTop(in_browser)));
    const QSize size(in_browser.width(), in_browser.height() - ListTop(in_browser));
    const QImage list = window->screen()->grabWindow(window->winId()).toImage().copy(QRect(corner, size));
    const int all = size.height() / nodebrowser::gRowHeight;
    int rows = 0;
    while (rows < all && HasInk(list, rows))
        ++rows;
    for (int below = rows; below < all; ++below)
        if (HasInk(list, below))
            return -1;
    return rows;
}

void TypeInto(QWindow* in_window, const char* in_text)
{
    for (const char* letter = in_text; *letter; ++letter)
        QTest::keyClick(in_window, *letter);
}

/// The rows as a failure tells of them.
QString DescribeRows()
{
    QWidget* const browser = FindBrowser();
    if (!browser)
        return QLatin1String("no browser is shown");
    return QString::fromLatin1("the rows are \"%1\", %2 are painted")
        .arg(ReadNames(*browser).join(QLatin1String(", ")))
        .arg(CountPaintedRows(*browser));
}

/// The rows have these names, and the window shows as many.
Step See(const QStringList& in_names)
{
    const QString names = in_names.isEmpty() ? QLatin1String("none") : in_names.join(QLatin1String(", "));
    return {QLatin1String("see the rows: ") + names, [in_names] {
                QWidget* const browser = FindBrowser();
                return browser && ReadNames(*browser) == in_names && CountPaintedRows(*browser) == in_names.size();
            }};
}

Step Press(Qt::MouseButton in_button, int in_row)
{
    return {QString::fromLatin1("press row %1").arg(in_row), [in_button, in_row] {
                QWidget* const browser = FindBrowser();
                const int row = ListTop(*browser) + in_row * nodebrowser::gRowHeight;
                const QPoint point(browser->width() / 2, row + nodebrowser::gRowHeight / 2);
                const QPoint inWindow = browser->mapTo(browser->window(), point);
                QWindow* const window = browser->window()->windowHandle();
                Do([=] { QTest::mouseClick(window, in_button, Qt::NoModifier, inWindow); });
                return true;
            }};
}

/// Clicks an entry of the menu that is open.
Step Choose(const char* in_entry)
{
    return {QLatin1String("choose ") + QLatin1String(in_entry), [in_entry] {
                QMenu* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                if (!menu || !menu->windowHandle()->isExposed())
                    return false;
                for (QAction* const action : menu->actions())
                {
                    if (action->text() != QLatin1String(in_entry))
                        continue;
                    const QPoint point = menu->actionGeometry(action).center();
                    Do([=] { QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, Qt::NoModifier, point); });
                    return true;
                }
                return false;
            }};
}

/// Types a name instead of the one in the dialog that is open, and presses Enter.
Step Answer(const char* in_name)
{
    return {QLatin1String("answer ") + QLatin1String(in_name), [in_name] {
                const QWidget* const dialog = QApplication::activeModalWidget();
                const QLineEdit* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
                if (!dialog || !field || field->window() != dialog)
                    return false;
                Do([=] {
                    QWindow* const window = dialog->windowHandle();
                    QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
                    TypeInto(window, in_name);
                    QTest::keyClick(window, Qt::Key_Return);
                });
                return true;
            }};
}

/// Clicks the search field. Off screen there is no system that makes a clicked window the active one.
Step ClickTheSearchField()
{
    return {QLatin1String("click the search field"), [] {
                QLineEdit* const field = FindSearchField();
                QWidget* const window = field->window();
                const QPoint point = field->mapTo(window, field->rect().center());
                Do([=] {
                    window->activateWindow();
                    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, point);
                });
                return true;
            }};
}

/// Presses keys while the search field has the focus.
Step PressInTheSearchField(const QString& in_what, const std::function<void(QWindow*)>& in_press)
{
    return {in_what, [in_press] {
                QLineEdit* const field = FindSearchField();
                if (!field || QApplication::focusWidget() != field)
                    return false;
                Do([=] { in_press(field->window()->windowHandle()); });
                return true;
            }};
}

Step SeeInTheSearchField(const char* in_text)
{
    return {QLatin1String("see the search for ") + QLatin1String(in_text),
            [in_text] { return FindSearchField()->text() == QLatin1String(in_text); }};
}

Step Close()
{
    return {QLatin1String("close the window"), [] {
                QWidget* const window = FindBrowser()->window();
                Do([=] { window->close(); });
                return true;
            }};
}

QStringList Names(const char* in_names)
{
    return QString::fromLatin1(in_names).split(QLatin1Char(';'));
}

/// What there is to do in front of the example with the undo shortcut.
std::vector<Step> MakeUndoJourney()
{
    const Step undo = PressInTheSearchField(
        QLatin1String("undo"), [](QWindow* in_window) { QTest::keyClick(in_window, Qt::Key_Z, Qt::ControlModifier); });
    const Step redo = PressInTheSearchField(QLatin1String("redo"), [](QWindow* in_window) {
        QTest::keySequence(in_window, QKeySequence(QKeySequence::Redo));
    });
    return {See(Names("Blend;Noise")),
            Press(Qt::RightButton, 0),
            Choose("Rename Blend"),
            Answer("Mix"),
            See(Names("Mix;Noise")),
            ClickTheSearchField(),
            PressInTheSearchField(QLatin1String("type"), [](QWindow* in_window) { TypeInto(in_window, "mix"); }),
            See(Names("Mix")),
            undo,
            See(QStringList()),
            SeeInTheSearchField("mix"),
            redo,
            See(Names("Mix")),
            SeeInTheSearchField("mix"),
            undo,
            See(QStringList()),
            undo, // nothing is left to undo in the library: this one is for the field
            See(Names("Blend;Noise")),
            SeeInTheSearchField(""),
            Close()};
}

/// What there is to do in front of an example. Empty for one that is not known.
std::vector<Step> MakeJourney(const QString& in_example)
{
    if (in_example == QLatin1String("smallest"))
        return {See(Names("Blend")), Close()};
    if (in_example == QLatin1String("smallest-layer"))
        return {See(Names("Add;Blend;Noise")), Close()};
    if (in_example == QLatin1String("sqlite-host"))
        return {See(Names("Add;Brick wall;Marble;Noise")), Close()};
    if (in_example == QLatin1String("derived-browser"))
        return {See(Names("Blend;Brick wall;Marble")),
                Press(Qt::RightButton, 1),
                Choose("Delete"),
                See(Names("Blend;Marble")),
                Press(Qt::RightButton, 0),
                Choose("Rename..."),
                Answer("Noise"),
                See(Names("Marble;Noise")),
                Close()};
    if (in_example == QLatin1String("type-selector")) // the choice closes its window
        return {See(Names("color;float;vector")), Press(Qt::LeftButton, 1)};
    if (in_example == QLatin1String("undo-shortcut"))
        return MakeUndoJourney();
    return {};
}

class Person : public QObject
{
public:
    explicit Person(const QString& in_journey) : m_journey(in_journey), m_steps(MakeJourney(in_journey))
    {
        if (m_steps.empty())
            Fail(QLatin1String("there is no such journey"));
        m_clock.start();
        startTimer(gInterval);
    }

protected:
    void timerEvent(QTimerEvent* in_event) override
    {
        const Step& step = m_steps[m_next];
        if (!step.m_try())
        {
            if (m_clock.hasExpired(gLimit))
                Fail(QString::fromLatin1("cannot do step %1, %2: %3").arg(m_next + 1).arg(step.m_what, DescribeRows()));
            return;
        }
        m_clock.start();
        if (++m_next < m_steps.size())
            return;
        killTimer(in_event->timerId());
        std::printf("the person did all of %s\n", qPrintable(m_journey));
        std::fflush(stdout);
    }

private:
    [[noreturn]] void Fail(const QString& in_reason)
    {
        std::fprintf(stderr, "%s: %s\n", qPrintable(m_journey), qPrintable(in_reason));
        std::_Exit(3);
    }

    const QString m_journey;
    const std::vector<Step> m_steps;
    std::size_t m_next = 0;
    QElapsedTimer m_clock;
};

} // namespace

class PersonPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "person.json")

public:
    QObject* create(const QString&, const QString& in_journey) override { return new Person(in_journey); }
};

#include "person.moc"
