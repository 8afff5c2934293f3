// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/systeminput.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QChildEvent>
#include <QDataStream>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTimer>

using memorymodel::DataLayer;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;
using vireo::datamodel::LibType;

namespace
{

const QString gFormat = QString::fromLatin1("vireo/toc.key");

/// A window that takes what is dropped on it, like a graph.
class DropTarget : public QWidget
{
public:
    DropTarget()
    {
        setAcceptDrops(true);
        move(500, 50);
        resize(200, 200);
        show();
        Settle();
    }

    int m_enters = 0;
    int m_drops = 0;
    QStringList m_formats;
    QByteArray m_payload;
    QObject* m_source = nullptr;
    Qt::DropActions m_possibleActions;
    Qt::DropAction m_proposedAction = Qt::IgnoreAction;

protected:
    void dragEnterEvent(QDragEnterEvent* in_event) override
    {
        ++m_enters;
        if (in_event->mimeData()->hasFormat(gFormat))
            in_event->acceptProposedAction();
    }

    void dropEvent(QDropEvent* in_event) override
    {
        ++m_drops;
        m_formats = in_event->mimeData()->formats();
        m_payload = in_event->mimeData()->data(gFormat);
        m_source = in_event->source();
        m_possibleActions = in_event->possibleActions();
        m_proposedAction = in_event->proposedAction();
        in_event->acceptProposedAction();
    }
};

/// The text of a payload; fails when there is anything else in it.
QString Decode(const QByteArray& in_payload)
{
    QDataStream stream(in_payload);
    QString text;
    stream >> text;
    return stream.status() == QDataStream::Ok && stream.atEnd() ? text : QString::fromLatin1("not one text");
}

QString SerializedText(const ItemID& in_item)
{
    return QString::fromLatin1(in_item.Serialize().c_str());
}

void SendMouse(QObject& in_receiver, QEvent::Type in_type, const QPoint& in_position, const QPoint& in_global,
               Qt::MouseButton in_button, Qt::MouseButtons in_buttons)
{
    QMouseEvent event(in_type, in_position, in_global, in_button, in_buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&in_receiver, &event);
}

} // namespace

/// The hand that goes on with a drag once it has started, from inside the loop that the drag runs.
class Hand : public QObject
{
    Q_OBJECT

public:
    enum eEnd
    {
        eDrop,  ///< let go over the target
        eEscape ///< press Escape over the target
    };

    Hand(ProbedBrowser& in_browser, DropTarget& in_target, eEnd in_end = eDrop)
        : m_browser(in_browser), m_target(in_target), m_end(in_end)
    {
        m_browser.installEventFilter(this);
        connect(&m_timer, SIGNAL(timeout()), this, SLOT(GoOn()));
    }

    /// Presses the left button on a row, which selects it, and keeps it down.
    void PressRow(int in_row)
    {
        m_start = m_browser.RowCentre(in_row);
        QTest::mousePress(&m_browser, Qt::LeftButton, Qt::NoModifier, m_start);
    }

    /// Moves the pointer away from where it was pressed. Returns when the drag that this starts is over.
    void Move(const QPoint& in_way, Qt::MouseButtons in_buttons = Qt::LeftButton)
    {
        if (testcompat::DragsInSystemLoop())
            HoldSystemButton();
        m_timer.start(10);
        SendMouse(m_browser, QEvent::MouseMove, m_start + in_way, m_browser.mapToGlobal(m_start + in_way), Qt::NoButton,
                  in_buttons);
        m_timer.stop();
        if (testcompat::DragsInSystemLoop())
            systeminput::ReleaseLeftButton();
    }

    void DragRow(int in_row, const QPoint& in_way, Qt::MouseButtons in_buttons = Qt::LeftButton)
    {
        PressRow(in_row);
        Move(in_way, in_buttons);
    }

    /// Lets go without a drag.
    void Release() { QTest::mouseRelease(&m_browser, Qt::LeftButton, Qt::NoModifier, m_start); }

    bool eventFilter(QObject*, QEvent* in_event) override
    {
        // Some platforms need a widget for a drag, which becomes a child too.
        if (in_event->type() == QEvent::ChildAdded && !static_cast<QChildEvent*>(in_event)->child()->isWidgetType())
            ++m_drags;
        return false;
    }

    int m_drags = 0; ///< how many drags were started: nothing else becomes a child of a shown browser

public Q_SLOTS:
    void GoOn()
    {
        if (testcompat::DragsInSystemLoop())
        {
            GoOnInSystemLoop();
            return;
        }
        QObject& receiver = *testcompat::DragEventReceiver(m_target);
        const QPoint position = m_target.rect().center() + QPoint(m_steps % 2, 0);
        const QPoint global = m_target.mapToGlobal(position);
        ++m_steps;
        if (m_target.m_enters == 0 && m_steps < 500)
            SendMouse(receiver, QEvent::MouseMove, position, global, Qt::NoButton, Qt::LeftButton);
        else if (m_end == eEscape && m_steps < 500)
            QTest::sendKeyEvent(QTest::Click, &m_target, Qt::Key_Escape, QString(), Qt::NoModifier);
        else
            SendMouse(receiver, QEvent::MouseButtonRelease, position, global, Qt::LeftButton, Qt::NoButton);
    }

private:
    /// A drag in the system's loop lasts as long as the button of the mouse itself is down. It is pressed over the
    /// target, which does not mind.
    void HoldSystemButton()
    {
        systeminput::MovePointer(m_target.mapToGlobal(m_target.rect().center()));
        systeminput::PressLeftButton();
        Settle();
    }

    void GoOnInSystemLoop()
    {
        ++m_steps;
        systeminput::MovePointer(m_target.mapToGlobal(m_target.rect().center() + QPoint(m_steps % 2, 0)));
        if (m_target.m_enters == 0 && m_steps < 500)
            return;
        if (m_end == eEscape && m_steps < 500)
            systeminput::ClickEscape();
        else
            systeminput::ReleaseLeftButton();
    }

    ProbedBrowser& m_browser;
    DropTarget& m_target;
    eEnd m_end;
    QTimer m_timer;
    QPoint m_start;
    int m_steps = 0;
};

/// A hand on a browser of some nodes, with a window beside it to drop on.
struct Scene
{
    explicit Scene(Hand::eEnd in_end = Hand::eDrop) : m_hand(m_browser, m_target, in_end)
    {
        m_library.AddNodes(5);
        ShowLibrary(m_browser, m_library.GetAccessor());
    }

    /// The text that stands for the item of a row.
    QString RowText(int in_row) const { return SerializedText(m_library.GetItem(in_row).m_id); }

    FakeLayer m_library;
    ProbedBrowser m_browser;
    DropTarget m_target;
    Hand m_hand;
};

class TestDrag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theItemArrivesWhereItIsDropped_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("compound") << 0;
        QTest::newRow("solver") << 1;
        QTest::newRow("global constant") << 2;
        QTest::newRow("type") << 3;
    }

    void theItemArrivesWhereItIsDropped()
    {
        QFETCH(int, row);
        DataLayer layer;
        Library& library = layer.AddLibrary("Nodes");
        std::vector<ItemID> items;
        items.push_back(library.Add(NewItem::Compound("1")));
        items.push_back(library.Add(NewItem::Solver("2")));
        items.push_back(library.Add(NewItem::GlobalConstant("3")));
        items.push_back(library.Add(NewItem::Type("4")));
        ProbedBrowser browser;
        ShowAll(browser, library.GetAccessor());
        DropTarget target;
        Hand hand(browser, target);
        hand.DragRow(row, QPoint(50, 0));
        QCOMPARE(hand.m_drags, 1);
        QCOMPARE(target.m_drops, 1);
        const ItemID item = items[static_cast<std::size_t>(row)];
        const QString text = Decode(target.m_payload);
        QCOMPARE(text, SerializedText(item));
        QVERIFY(library.FindBySerialized(text.toLatin1().constData()) == item);
    }

    void theDragOffersACopyOfOneFormatAndNothingElse()
    {
        Scene scene;
        scene.m_hand.DragRow(1, QPoint(0, 30));
        QCOMPARE(scene.m_target.m_drops, 1);
        QCOMPARE(scene.m_target.m_formats, QStringList(gFormat));
        QCOMPARE(int(scene.m_target.m_possibleActions), int(Qt::CopyAction));
        QCOMPARE(int(scene.m_target.m_proposedAction), int(Qt::CopyAction));
        QCOMPARE(scene.m_target.m_source, static_cast<QObject*>(&scene.m_browser));
    }

    void theDragIsTheBrowsersOwnAndHasNoPicture()
    {
        Scene scene;
        scene.m_hand.DragRow(1, QPoint(0, 30));
        const QDrag* const drag = scene.m_browser.findChild<QDrag*>();
        QVERIFY(drag);
        QVERIFY(drag->pixmap().isNull());
        const QDrag untouched(&scene.m_target);
        QCOMPARE(drag->hotSpot(), untouched.hotSpot());
        QVERIFY(drag->source() == &scene.m_browser);
        QCOMPARE(drag->mimeData()->formats(), QStringList(gFormat));
        QCOMPARE(drag->parent(), static_cast<QObject*>(&scene.m_browser));
    }

    void thePayloadIsOneTextInBigEndianUtf16()
    {
        Scene scene;
        scene.m_hand.DragRow(0, QPoint(50, 0));
        const std::string text = scene.m_library.GetItem(0).m_id.Serialize();
        QVERIFY(!text.empty());
        QByteArray expected;
        const unsigned bytes = static_cast<unsigned>(text.size()) * 2;
        for (int shift = gRowHeight; shift >= 0; shift -= 8)
            expected.append(static_cast<char>((bytes >> shift) & 0xFFu));
        for (char character : text)
        {
            expected.append('\0');
            expected.append(character);
        }
        QCOMPARE(scene.m_target.m_payload, expected);
    }

    void theSelectionIsAsItWasAfterTheDrop()
    {
        Scene scene;
        QSignalSpy spy(&scene.m_browser, SIGNAL(SelectionChanged()));
        scene.m_hand.DragRow(3, QPoint(50, 0));
        QCOMPARE(scene.m_target.m_drops, 1);
        QVERIFY(scene.m_browser.GetSelection() == scene.m_library.GetItem(3).m_id);
        QCOMPARE(static_cast<int>(spy.count()), 1);
    }

    void aDragThatIsGivenUpDropsNothing()
    {
        Scene scene(Hand::eEscape);
        scene.m_hand.DragRow(3, QPoint(50, 0));
        QCOMPARE(scene.m_hand.m_drags, 1);
        QCOMPARE(scene.m_target.m_drops, 0);
        QVERIFY(scene.m_browser.GetSelection() == scene.m_library.GetItem(3).m_id);
    }

    void aSecondDragCarriesTheRowThatIsSelectedThen()
    {
        Scene scene;
        for (int row = 4; row >= 3; --row)
        {
            Settle();
            scene.m_target.m_enters = 0;
            Hand hand(scene.m_browser, scene.m_target);
            hand.DragRow(row, QPoint(50, 0));
            QCOMPARE(hand.m_drags, 1);
            QCOMPARE(scene.m_target.m_enters, 1);
            QCOMPARE(scene.m_target.m_drops, 5 - row);
            QCOMPARE(Decode(scene.m_target.m_payload), scene.RowText(row));
        }
        QCOMPARE(scene.m_target.m_drops, 2);
    }

    void aTypeSelectorCanBeDraggedFromToo()
    {
        FakeLayer library;
        library.Add(LibType::gType, "Colour");
        ProbedBrowser browser(eConfigTypeSelector);
        ShowLibrary(browser, library.GetAccessor());
        DropTarget target;
        Hand hand(browser, target);
        hand.DragRow(0, QPoint(50, 0));
        QCOMPARE(Decode(target.m_payload), SerializedText(library.GetItem(0).m_id));
    }

    void theWayDecidesWhetherADragStarts_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("starts");
        const int distance = QApplication::startDragDistance();
        QTest::newRow("not moved") << 0 << 0 << false;
        QTest::newRow("one pixel too little, right") << distance - 1 << 0 << false;
        QTest::newRow("just enough, right") << distance << 0 << true;
        QTest::newRow("one pixel too little, up") << 0 << 1 - distance << false;
        QTest::newRow("just enough, up") << 0 << -distance << true;
        QTest::newRow("one pixel too little, both ways together") << distance - 3 << -2 << false;
        QTest::newRow("just enough, both ways together") << distance - 2 << -2 << true;
        QTest::newRow("out of the browser") << -1000 << 1000 << true;
    }

    void theWayDecidesWhetherADragStarts()
    {
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(bool, starts);
        Scene scene;
        scene.m_hand.DragRow(3, QPoint(x, y));
        QCOMPARE(scene.m_hand.m_drags, starts ? 1 : 0);
        QCOMPARE(scene.m_target.m_drops, starts ? 1 : 0);
        scene.m_hand.Release();
    }

    void theStartDragDistanceIsThatOfTheApplication()
    {
        const int distance = QApplication::startDragDistance();
        QApplication::setStartDragDistance(60);
        Scene scene;
        scene.m_hand.DragRow(3, QPoint(59, 0));
        QCOMPARE(scene.m_hand.m_drags, 0);
        scene.m_hand.Move(QPoint(60, 0));
        QApplication::setStartDragDistance(distance);
        QCOMPARE(scene.m_hand.m_drags, 1);
        QCOMPARE(scene.m_target.m_drops, 1);
    }

    void theWayIsMeasuredFromThePressAndNotFromTheLastMove()
    {
        Scene scene;
        scene.m_hand.PressRow(3);
        const int distance = QApplication::startDragDistance();
        for (int way = 1; way < distance; ++way)
            scene.m_hand.Move(QPoint(way, 0));
        QCOMPARE(scene.m_hand.m_drags, 0);
        scene.m_hand.Move(QPoint(distance, 0));
        QCOMPARE(scene.m_hand.m_drags, 1);
    }

    void theWayIsMeasuredFromTheLastPressOnARowWithTheLeftButton()
    {
        Scene scene;
        scene.m_hand.PressRow(0);
        scene.m_hand.Release();
        // Presses elsewhere clear the selection and leave the start point alone; Enter selects the first row again.
        QTest::mouseClick(&scene.m_browser, Qt::LeftButton, Qt::NoModifier, QPoint(100, 390));
        QTest::mouseClick(&scene.m_browser, Qt::MiddleButton, Qt::NoModifier, scene.m_browser.RowCentre(4));
        QTest::keyClick(&scene.m_browser.SearchField(), Qt::Key_Return);
        QVERIFY(scene.m_browser.GetSelection() == scene.m_library.GetItem(0).m_id);
        scene.m_hand.Move(QPoint(1, 1));
        QCOMPARE(scene.m_hand.m_drags, 0);
        scene.m_hand.Move(QPoint(0, 4 * gRowHeight));
        QCOMPARE(scene.m_hand.m_drags, 1);
    }

    void beforeAnyPressTheWayIsMeasuredFromTheCorner()
    {
        Scene scene;
        QTest::keyClick(&scene.m_browser.SearchField(), Qt::Key_Return);
        QVERIFY(scene.m_browser.GetSelection().IsValid());
        scene.m_hand.Move(QPoint(QApplication::startDragDistance() - 1, 0));
        QCOMPARE(scene.m_hand.m_drags, 0);
        scene.m_hand.Move(QPoint(QApplication::startDragDistance(), 0));
        QCOMPARE(scene.m_hand.m_drags, 1);
        QCOMPARE(Decode(scene.m_target.m_payload), scene.RowText(0));
    }

    void onlyTheLeftButtonDrags_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<bool>("starts");
        QTest::newRow("none") << int(Qt::NoButton) << false;
        QTest::newRow("right") << int(Qt::RightButton) << false;
        QTest::newRow("middle") << int(Qt::MiddleButton) << false;
        QTest::newRow("right and middle") << int(Qt::RightButton | Qt::MiddleButton) << false;
        QTest::newRow("left") << int(Qt::LeftButton) << true;
        QTest::newRow("left and right") << int(Qt::LeftButton | Qt::RightButton) << true;
    }

    void onlyTheLeftButtonDrags()
    {
        QFETCH(int, buttons);
        QFETCH(bool, starts);
        Scene scene;
        scene.m_hand.DragRow(3, QPoint(50, 0), Qt::MouseButtons(QFlag(buttons)));
        QCOMPARE(scene.m_hand.m_drags, starts ? 1 : 0);
        QCOMPARE(scene.m_target.m_drops, starts ? 1 : 0);
        scene.m_hand.Release();
    }

    void aSelectionThatWasClearedSilentlyCannotBeDragged_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<QPoint>("position");
        QTest::newRow("middle button on a row") << int(Qt::MiddleButton) << QPoint(100, gBrowserTop + gRowHeight / 2);
        QTest::newRow("left button below the rows") << int(Qt::LeftButton) << QPoint(100, 390);
        QTest::newRow("left button in the header") << int(Qt::LeftButton) << QPoint(290, 42);
    }

    void aSelectionThatWasClearedSilentlyCannotBeDragged()
    {
        QFETCH(int, button);
        QFETCH(QPoint, position);
        Scene scene;
        scene.m_hand.PressRow(3);
        QTest::mousePress(&scene.m_browser, static_cast<Qt::MouseButton>(button), Qt::NoModifier, position);
        scene.m_hand.Move(QPoint(80, 0));
        QCOMPARE(scene.m_hand.m_drags, 0);
        QTest::mouseRelease(&scene.m_browser, static_cast<Qt::MouseButton>(button), Qt::NoModifier, position);
        scene.m_hand.Release();
    }

    void aSelectionThatTheFilterTookAwayCannotBeDragged()
    {
        Scene scene;
        scene.m_hand.PressRow(3);
        scene.m_browser.SearchField().setText(QString::fromLatin1("001"));
        Settle();
        scene.m_hand.Move(QPoint(80, 0));
        QCOMPARE(scene.m_hand.m_drags, 0);
        scene.m_hand.Release();
    }

    void aSelectionThatTheLibraryTookAwayCannotBeDragged()
    {
        DataLayer layer;
        Library& library = layer.AddLibrary("Large");
        for (int i = 0; i < 10; ++i)
            library.Add(NewItem::Solver("Mix"));
        Library& smaller = layer.AddLibrary("Small");
        smaller.Add(NewItem::Solver("Mix"));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        DropTarget target;
        Hand hand(browser, target);
        hand.PressRow(7);
        browser.SetItemLibrary(smaller.GetAccessor());
        hand.Move(QPoint(80, 0));
        QCOMPARE(hand.m_drags, 0);
        Settle();
        hand.Move(QPoint(80, 0));
        QCOMPARE(hand.m_drags, 0);
        hand.Release();
    }

    void withoutASelectionNothingIsDragged()
    {
        Scene scene;
        scene.m_hand.Move(QPoint(100, 100));
        QCOMPARE(scene.m_hand.m_drags, 0);
        QCOMPARE(scene.m_target.m_drops, 0);
    }

    void theMouseIsNotTrackedWithoutAButton()
    {
        const ProbedBrowser browser;
        QVERIFY(!browser.hasMouseTracking());
    }
};

NODEBROWSER_TEST_MAIN(TestDrag)
#include "test_drag.moc"
