// SPDX-License-Identifier: MIT
#include "host/graphcanvas.h"

#include "host/graphbox.h"
#include "memorymodel/datalayer.h"
#include "tests/host/dropping.h"
#include "tests/support/testmain.h"

#include <QMetaType>
#include <QScrollBar>
#include <QSignalSpy>

using host::GraphBox;
using host::GraphCanvas;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

const QRect gHint(150, 180, 300, 40);

QList<GraphBox*> BoxesOf(const GraphCanvas& in_canvas)
{
    return in_canvas.GetBoxes();
}

/// The middle of a box's title, in the pixels of the canvas.
QPoint TitleOf(const GraphCanvas& in_canvas, const GraphBox& in_box)
{
    return in_canvas.mapFromScene(in_box.scenePos());
}

void SendMove(GraphCanvas& in_canvas, const QPoint& in_position, Qt::MouseButton in_held)
{
    QMouseEvent move(QEvent::MouseMove, in_position, in_canvas.viewport()->mapToGlobal(in_position), Qt::NoButton,
                     in_held, Qt::NoModifier);
    QApplication::sendEvent(in_canvas.viewport(), &move);
}

/// Presses a button, moves the pointer, and releases.
void Pull(GraphCanvas& in_canvas, const QPoint& in_from, const QPoint& in_way,
          Qt::MouseButton in_button = Qt::LeftButton)
{
    QTest::mousePress(in_canvas.viewport(), in_button, Qt::NoModifier, in_from);
    SendMove(in_canvas, in_from + in_way / 2, in_button);
    SendMove(in_canvas, in_from + in_way, in_button);
    QTest::mouseRelease(in_canvas.viewport(), in_button, Qt::NoModifier, in_from + in_way);
}

void Turn(GraphCanvas& in_canvas, const QPoint& in_position, const QPoint& in_angle, Qt::KeyboardModifiers in_keys)
{
    QWheelEvent wheel(in_position, in_canvas.viewport()->mapToGlobal(in_position), QPoint(), in_angle, Qt::NoButton,
                      in_keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(in_canvas.viewport(), &wheel);
}

/// Whether all of a box is in sight.
bool IsInSight(const GraphCanvas& in_canvas, const GraphBox& in_box)
{
    return in_canvas.viewport()->rect().contains(in_canvas.mapFromScene(in_box.sceneBoundingRect()).boundingRect());
}

/// How many pixels of a picture differ from those of another one of its size.
int CountDifferences(const QImage& in_one, const QImage& in_other)
{
    int count = 0;
    for (int y = 0; y < in_one.height(); ++y)
        for (int x = 0; x < in_one.width(); ++x)
            count += in_one.pixel(x, y) != in_other.pixel(x, y) ? 1 : 0;
    return count;
}

} // namespace

class TestGraphCanvas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Some toolkits' spies know only registered types.
    void initTestCase() { qRegisterMetaType<ItemID>("vireo::datamodel::ItemID"); }

    void init()
    {
        m_library = &m_layer.AddLibrary("Graph");
        m_canvas.reset(new GraphCanvas(m_layer.GetCommandManager().GetStack()));
        m_canvas->resize(600, 400);
        m_canvas->SetLibrary(m_library);
        m_canvas->show();
        QCoreApplication::processEvents(); // scroll bars come and go from the event loop
    }

    void cleanup()
    {
        m_canvas.reset();
        Stack().clear();
        m_layer.RemoveLibrary(*m_library);
    }

    void aDroppedNodeIsShownWhereItWasDropped()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Moir\xe9"));
        QVERIFY(Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item)));
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(box.GetItem() == item);
        QCOMPARE(box.GetName(), QString::fromLatin1("Moir\xe9"));
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(200, 150));
        QVERIFY(box.isVisible());
        QVERIFY(box.isSelected());
    }

    void whatIsDropped_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("taken");
        QTest::newRow("compound") << 0 << true;
        QTest::newRow("loop compound") << 1 << true;
        QTest::newRow("signature") << 2 << true;
        QTest::newRow("solver") << 3 << true;
        QTest::newRow("polymorphic solver") << 4 << true;
        QTest::newRow("global constant") << 5 << true;
        QTest::newRow("type") << 6 << false;
    }

    void whatIsDropped()
    {
        QFETCH(int, kind);
        QFETCH(bool, taken);
        const NewItem kinds[] = {NewItem::Compound("A"), NewItem::LoopCompound("A"),      NewItem::Signature("A"),
                                 NewItem::Solver("A"),   NewItem::PolymorphicSolver("A"), NewItem::GlobalConstant("A"),
                                 NewItem::Type("A")};
        const ItemID item = m_library->Add(kinds[kind]);
        QCOMPARE(Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item)), taken);
        QCOMPARE(BoxesOf(*m_canvas).size(), taken ? 1 : 0);
    }

    void invalidPayloadsDoNothing_data()
    {
        QTest::addColumn<QByteArray>("payload");
        Library& closed = m_layer.AddLibrary("Closed");
        const ItemID item = closed.Add(NewItem::Solver("Blend"));
        const QByteArray good = PayloadOf(item);
        m_layer.RemoveLibrary(closed);
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("empty text") << PayloadOf(QString());
        QTest::newRow("unknown item") << PayloadOf(QStringLiteral("Solver:0000000000000000-0000000000000000"));
        QTest::newRow("any text") << PayloadOf(QStringLiteral("Blend"));
        QTest::newRow("cut short") << good.left(good.size() - 1);
        QTest::newRow("length only") << good.left(4);
        QTest::newRow("a length that is a lie") << QByteArray("\x7f\xff\xff\xfe\x00\x41", 6);
        QTest::newRow("plain characters") << QByteArray(item.Serialize().c_str());
        QTest::newRow("of a library that is closed") << good;
    }

    void invalidPayloadsDoNothing()
    {
        QFETCH(QByteArray, payload);
        m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), payload));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void textBehindThePayloadIsRefused()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item) + "x"));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void otherFormatsAreRefused()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item), QStringLiteral("text/plain")));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void onlyCopyingIsAccepted()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item), QStringLiteral("vireo/toc.key"),
                      Qt::MoveAction));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void anItemThatIsRemovedDuringTheDragIsNotShown()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QMimeData data;
        data.setData(QStringLiteral("vireo/toc.key"), PayloadOf(item));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_canvas->viewport(), &enter);
        QVERIFY(enter.isAccepted());
        m_library->Remove(item);
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_canvas->viewport(), &drop);
        QVERIFY(!drop.isAccepted());
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void placingMovingAndDeletingCanBeUndone()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        QCOMPARE(Stack().undoText(), QStringLiteral("Add Blend"));
        Pull(*m_canvas, QPoint(200, 150), QPoint(31, 20));
        QCOMPARE(Stack().undoText(), QStringLiteral("Move Blend"));
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(231, 170));
        m_canvas->DeleteSelected();
        QCOMPARE(Stack().undoText(), QStringLiteral("Delete Blend"));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QCOMPARE(Stack().count(), 3);

        Stack().undo();
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(231, 170));
        Stack().undo();
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(200, 150));
        Stack().undo();
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        while (Stack().canRedo())
            Stack().redo();
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        Stack().undo();
        QVERIFY(BoxesOf(*m_canvas).first()->GetItem() == item);
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(231, 170));
    }

    void aClickMovesNothing()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        QTest::mouseClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(205, 155));
        QCOMPARE(Stack().count(), 1);
    }

    void severalBoxesAreMovedAndDeletedInOneStep()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        for (const QPoint& place : {QPoint(100, 100), QPoint(300, 100), QPoint(300, 300)})
            Drop(*m_canvas->viewport(), place, PayloadOf(item));
        Pull(*m_canvas, QPoint(20, 40), QPoint(400, 100)); // a frame around the upper two
        const QList<GraphBox*> boxes = BoxesOf(*m_canvas);
        QVERIFY(boxes.at(0)->isSelected() && boxes.at(1)->isSelected() && !boxes.at(2)->isSelected());
        QCOMPARE(Stack().count(), 3);

        Pull(*m_canvas, QPoint(100, 100), QPoint(10, 30));
        QCOMPARE(Stack().undoText(), QStringLiteral("Move 2 nodes"));
        QCOMPARE(TitleOf(*m_canvas, *boxes.at(1)), QPoint(310, 130));
        QCOMPARE(TitleOf(*m_canvas, *boxes.at(2)), QPoint(300, 300));
        m_canvas->SelectAll();
        m_canvas->DeleteSelected();
        QCOMPARE(Stack().undoText(), QStringLiteral("Delete 3 nodes"));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QCOMPARE(Stack().count(), 5);
        Stack().undo();
        QCOMPARE(BoxesOf(*m_canvas).size(), 3);
    }

    void deletingNothingIsNoStep()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        QTest::mouseClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        m_canvas->DeleteSelected();
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        QCOMPARE(Stack().count(), 1);
    }

    void stepsOfAGraphThatIsGoneDoNothing()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        m_canvas->SetLibrary(m_library);
        Stack().undo();
        Stack().redo();
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        m_canvas.reset();
        Stack().undo();
        QCOMPARE(Stack().index(), 0);
    }

    void aBoxThatIsSelectedIsTold()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QSignalSpy spy(m_canvas.get(), SIGNAL(NodeSelected(vireo::datamodel::ItemID)));
        QVERIFY(spy.isValid());
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        QCOMPARE(spy.count(), 1);
        QTest::mouseClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        QCOMPARE(spy.count(), 1);
        QTest::mouseClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(200, 150));
        QCOMPARE(spy.count(), 2);
    }

    void aCompoundIsEnteredByADoubleClick_data()
    {
        QTest::addColumn<bool>("isCompound");
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<int>("entered");
        QTest::newRow("compound") << true << true << 1;
        QTest::newRow("solver") << false << true << 0;
        QTest::newRow("compound that is gone") << true << false << 0;
    }

    void aCompoundIsEnteredByADoubleClick()
    {
        QFETCH(bool, isCompound);
        QFETCH(bool, isThere);
        QFETCH(int, entered);
        const ItemID item = m_library->Add(isCompound ? NewItem::Compound("Blend") : NewItem::Solver("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        if (!isThere)
        {
            m_library->Remove(item);
            m_canvas->Refresh();
        }
        QSignalSpy spy(m_canvas.get(), SIGNAL(CompoundEntered(vireo::datamodel::ItemID)));
        QVERIFY(spy.isValid());
        QTest::mouseDClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
        QCOMPARE(spy.count(), 0);
        QTest::mouseDClick(m_canvas->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(200, 150));
        QCOMPARE(spy.count(), entered);
    }

    void theMiddleButtonMovesTheView()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        GraphBox& box = *BoxesOf(*m_canvas).first();
        Pull(*m_canvas, QPoint(400, 300), QPoint(-50, 70), Qt::MiddleButton);
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(150, 220));
        Pull(*m_canvas, QPoint(10, 10), QPoint(50, -70), Qt::MiddleButton);
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(200, 150));
        QCOMPARE(box.scenePos(), QPointF(200, 150));
        QCOMPARE(Stack().count(), 1);
    }

    void theWheelMovesTheView()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        Turn(*m_canvas, QPoint(10, 10), QPoint(0, 120), Qt::NoModifier);
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(200, 210));
        Turn(*m_canvas, QPoint(10, 10), QPoint(0, -120), Qt::ShiftModifier);
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(140, 210));
    }

    void theWheelZoomsAroundThePointer()
    {
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        Turn(*m_canvas, QPoint(200, 150), QPoint(0, 240), Qt::ControlModifier);
        QVERIFY(m_canvas->transform().m11() > 1.5);
        QVERIFY((TitleOf(*m_canvas, box) - QPoint(200, 150)).manhattanLength() <= 2);
        for (int i = 0; i < 40; ++i)
            m_canvas->ZoomIn();
        QCOMPARE(m_canvas->transform().m11(), 4.0);
        for (int i = 0; i < 80; ++i)
            m_canvas->ZoomOut();
        QCOMPARE(m_canvas->transform().m11(), 0.1);
        m_canvas->ZoomToFullSize();
        QCOMPARE(m_canvas->transform().m11(), 1.0);
    }

    void allIsFittedIntoSight()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        for (const QPoint& place : {QPoint(100, 100), QPoint(500, 300)})
            Drop(*m_canvas->viewport(), place, PayloadOf(item));
        Pull(*m_canvas, QPoint(500, 300), QPoint(900, 700)); // out of the window
        QCoreApplication::processEvents();
        GraphBox& far = *BoxesOf(*m_canvas).last();
        QVERIFY(!IsInSight(*m_canvas, far));
        QVERIFY(m_canvas->horizontalScrollBar()->isVisible() && m_canvas->verticalScrollBar()->isVisible());
        m_canvas->FitAll();
        QCoreApplication::processEvents();
        QVERIFY(IsInSight(*m_canvas, far));
        QVERIFY(IsInSight(*m_canvas, *BoxesOf(*m_canvas).first()));
        QVERIFY(m_canvas->transform().m11() < 1.0);
        QVERIFY(!m_canvas->horizontalScrollBar()->isVisible() && !m_canvas->verticalScrollBar()->isVisible());
    }

    void nothingIsOutOfReachInASmallWindow()
    {
        Drop(*m_canvas->viewport(), QPoint(500, 350), PayloadOf(m_library->Add(NewItem::Solver("Blend"))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QCoreApplication::processEvents();
        QVERIFY(!m_canvas->horizontalScrollBar()->isVisible() && !m_canvas->verticalScrollBar()->isVisible());
        m_canvas->resize(200, 150);
        QCoreApplication::processEvents();
        QVERIFY(!IsInSight(*m_canvas, box));
        QVERIFY(m_canvas->horizontalScrollBar()->isVisible() && m_canvas->verticalScrollBar()->isVisible());
        QCOMPARE(TitleOf(*m_canvas, box), QPoint(500, 350)); // what is in sight has not moved
        m_canvas->horizontalScrollBar()->setValue(m_canvas->horizontalScrollBar()->maximum());
        m_canvas->verticalScrollBar()->setValue(m_canvas->verticalScrollBar()->maximum());
        QCoreApplication::processEvents();
        QVERIFY(IsInSight(*m_canvas, box));
    }

    void placedNodesDoNotCoverEachOther()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        m_canvas->PlaceInSight(item);
        m_canvas->PlaceInSight(item);
        const QList<GraphBox*> boxes = BoxesOf(*m_canvas);
        QCOMPARE(TitleOf(*m_canvas, *boxes.at(0)), m_canvas->viewport()->rect().center());
        QCOMPARE(boxes.at(1)->pos() - boxes.at(0)->pos(), QPointF(24, 24));
        m_canvas->PlaceInSight(m_library->Add(NewItem::Type("Float")));
        m_canvas->PlaceInSight(ItemID());
        QCOMPARE(BoxesOf(*m_canvas).size(), 2);
        QCOMPARE(Stack().count(), 2);
    }

    void theHintIsThereWhileTheGraphIsEmpty()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        const QImage empty = m_canvas->grab().toImage();
        Drop(*m_canvas->viewport(), QPoint(200, 50), PayloadOf(item));
        QImage filled = m_canvas->grab().toImage();
        QVERIFY(CountDifferences(empty.copy(gHint), filled.copy(gHint)) > 100);
        m_canvas->DeleteSelected();
        QCOMPARE(CountDifferences(empty, m_canvas->grab().toImage()), 0);
    }

    void aNameIsDrawnInFull_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* const name : {"Absolute", "Add", "Any Of", "i", "Value Noise 3D"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aNameIsDrawnInFull()
    {
        QFETCH(QString, name);
        Drop(*m_canvas->viewport(), QPoint(300, 200),
             PayloadOf(m_library->Add(NewItem::Solver(name.toLatin1().constData()))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QCOMPARE(box.GetDrawnName(), name);
        QVERIFY(box.boundingRect().width() >= 38 + m_canvas->fontMetrics().horizontalAdvance(name));
    }

    void aLongNameIsDrawnShortened()
    {
        const std::string name(300, 'w');
        Drop(*m_canvas->viewport(), QPoint(300, 200), PayloadOf(m_library->Add(NewItem::Solver(name))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(box.boundingRect().width() < 330);
        QVERIFY(box.GetDrawnName().endsWith(QChar(0x2026)));
        QVERIFY(box.toolTip().contains(QString::fromLatin1(name.c_str())));
    }

    void boxesAreRenamedWithTheirItems()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        m_library->Rename(item, "Mix Layers");
        m_canvas->Refresh();
        QCOMPARE(BoxesOf(*m_canvas).first()->GetName(), QStringLiteral("Mix Layers"));
    }

    void theBoxOfAnItemThatIsGoneIsGreyUntilItComesBack()
    {
        memorymodel::CommandManager& commands = m_layer.GetCommandManager();
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(!box.IsMissing());
        m_canvas->SelectAll(); // so that both pictures show it selected
        const QImage before = m_canvas->grab().toImage();
        const QRectF rect = box.boundingRect();

        m_library->Remove(item, &commands);
        m_canvas->Refresh();
        QVERIFY(box.IsMissing());
        QCOMPARE(box.GetName(), QStringLiteral("Blend"));
        QCOMPARE(box.toolTip(), QStringLiteral("Blend is not in the library any more"));
        QCOMPARE(box.boundingRect(), rect);
        QVERIFY(CountDifferences(before, m_canvas->grab().toImage()) > 100);

        commands.GetStack().undo();
        m_canvas->Refresh();
        QVERIFY(!box.IsMissing());
        QVERIFY(box.toolTip().startsWith(QStringLiteral("<b>Blend</b>")));
        QCOMPARE(CountDifferences(before, m_canvas->grab().toImage()), 0);
    }

    void aBoxThatGoesIsNotSelectedAnyMore()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        QSignalSpy selected(m_canvas.get(), SIGNAL(NodeSelected(vireo::datamodel::ItemID)));
        QVERIFY(selected.isValid());
        m_canvas->DeleteSelected();
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QCOMPARE(selected.count(), 0);
        Stack().undo();
        m_canvas->SelectAll();
        QCOMPARE(selected.count(), 1);
    }

    void eachCompoundKeepsItsBoxes()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Add"));
        const ItemID one = m_library->Add(NewItem::Compound("One"));
        const ItemID other = m_library->Add(NewItem::Compound("Other"));
        m_canvas->SetCompound(one);
        const QImage empty = m_canvas->grab(gHint).toImage();
        Drop(*m_canvas->viewport(), QPoint(200, 50), PayloadOf(item));
        QVERIFY(CountDifferences(empty, m_canvas->grab(gHint).toImage()) > 100);
        Pull(*m_canvas, QPoint(10, 10), QPoint(15, 25), Qt::MiddleButton);

        m_canvas->SetCompound(other);
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QCOMPARE(CountDifferences(empty, m_canvas->grab(gHint).toImage()), 0);
        Drop(*m_canvas->viewport(), QPoint(100, 80), PayloadOf(item));
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(100, 80));

        m_canvas->SetCompound(one);
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        QCOMPARE(TitleOf(*m_canvas, *BoxesOf(*m_canvas).first()), QPoint(215, 75)); // as it was last looked at
        m_canvas->SetCompound(ItemID());
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        Stack().undo();
        m_canvas->SetCompound(other);
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void anotherLibraryEmptiesTheGraph()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas->viewport(), QPoint(200, 150), PayloadOf(item));
        Library& other = m_layer.AddLibrary("Other");
        m_canvas->SetLibrary(&other);
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item)));
        m_canvas->SetLibrary(nullptr);
        QVERIFY(!Drop(*m_canvas->viewport(), QPoint(50, 50), PayloadOf(item)));
        m_layer.RemoveLibrary(other);
    }

private:
    QUndoStack& Stack() { return m_layer.GetCommandManager().GetStack(); }

    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
    std::unique_ptr<GraphCanvas> m_canvas;
};

NODEBROWSER_TEST_MAIN(TestGraphCanvas)
#include "test_graphcanvas.moc"
