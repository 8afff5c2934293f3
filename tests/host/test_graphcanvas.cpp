// SPDX-License-Identifier: MIT
#include "host/graphcanvas.h"

#include "host/graphbox.h"
#include "memorymodel/datalayer.h"
#include "tests/host/dropping.h"
#include "tests/support/testmain.h"

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
    return in_canvas.findChildren<GraphBox*>();
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
    void init()
    {
        m_library = &m_layer.AddLibrary("Graph");
        m_canvas.reset(new GraphCanvas);
        m_canvas->resize(600, 400);
        m_canvas->SetLibrary(m_library);
    }

    void cleanup()
    {
        m_canvas.reset();
        m_layer.RemoveLibrary(*m_library);
    }

    void aDroppedNodeIsShownWhereItWasDropped()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Moir\xe9"));
        QVERIFY(Drop(*m_canvas, QPoint(200, 150), PayloadOf(item)));
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(box.GetItem() == item);
        QCOMPARE(box.GetName(), QString::fromLatin1("Moir\xe9"));
        QCOMPARE(box.geometry().center(), QPoint(200, 150));
        QVERIFY(!box.isHidden());
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
        QCOMPARE(Drop(*m_canvas, QPoint(50, 50), PayloadOf(item)), taken);
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
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), payload));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void textBehindThePayloadIsRefused()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), PayloadOf(item) + "x"));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void otherFormatsAreRefused()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), PayloadOf(item), QStringLiteral("text/plain")));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void onlyCopyingIsAccepted()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), PayloadOf(item), QStringLiteral("vireo/toc.key"), Qt::MoveAction));
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void anItemThatIsRemovedDuringTheDragIsNotShown()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        QMimeData data;
        data.setData(QStringLiteral("vireo/toc.key"), PayloadOf(item));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_canvas.get(), &enter);
        QVERIFY(enter.isAccepted());
        m_library->Remove(item);
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_canvas.get(), &drop);
        QVERIFY(!drop.isAccepted());
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
    }

    void aBoxStaysInsideOfTheCanvas()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        Drop(*m_canvas, QPoint(0, 0), PayloadOf(item));
        GraphBox& box = *BoxesOf(*m_canvas).first();
        QCOMPARE(box.pos(), QPoint(0, 0));
        box.MoveCentreTo(QPoint(10000, 10000));
        QCOMPARE(box.geometry().bottomRight(), m_canvas->rect().bottomRight());
    }

    void theLeftButtonMovesABox()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        Drop(*m_canvas, QPoint(200, 150), PayloadOf(item));
        m_canvas->show();
        GraphBox& box = *BoxesOf(*m_canvas).first();
        const QPoint before = box.pos();
        const QPoint grip(10, 10);
        QTest::mousePress(&box, Qt::LeftButton, Qt::NoModifier, grip);
        QMouseEvent move(QEvent::MouseMove, QPointF(grip + QPoint(30, 20)), box.mapToGlobal(grip + QPoint(30, 20)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&box, &move);
        QTest::mouseRelease(&box, Qt::LeftButton, Qt::NoModifier, grip);
        QCOMPARE(box.pos(), before + QPoint(30, 20));
    }

    void deleteTakesABoxAway()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        Drop(*m_canvas, QPoint(200, 150), PayloadOf(item));
        Drop(*m_canvas, QPoint(300, 250), PayloadOf(item));
        QTest::keyClick(BoxesOf(*m_canvas).first(), Qt::Key_A);
        QTest::keyClick(BoxesOf(*m_canvas).first(), Qt::Key_Delete);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(BoxesOf(*m_canvas).size(), 1);
        QCOMPARE(BoxesOf(*m_canvas).first()->geometry().center(), QPoint(300, 250));
    }

    void theHintIsThereWhileTheGraphIsEmpty()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        const QImage empty = m_canvas->grab().toImage();
        Drop(*m_canvas, QPoint(200, 50), PayloadOf(item));
        QImage filled = m_canvas->grab().toImage();
        QVERIFY(CountDifferences(empty.copy(gHint), filled.copy(gHint)) > 100);
        QTest::keyClick(BoxesOf(*m_canvas).first(), Qt::Key_Delete);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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
        Drop(*m_canvas, QPoint(300, 200), PayloadOf(m_library->Add(NewItem::Solver(name.toLatin1().constData()))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QCOMPARE(box.GetDrawnName(), name);
        QVERIFY(box.width() >= 38 + box.fontMetrics().horizontalAdvance(name));
    }

    void aLongNameIsDrawnShortened()
    {
        const std::string name(300, 'w');
        Drop(*m_canvas, QPoint(300, 200), PayloadOf(m_library->Add(NewItem::Solver(name))));
        const GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(box.width() < 320);
        QVERIFY(box.GetDrawnName().endsWith(QChar(0x2026)));
        QCOMPARE(box.toolTip(), QString::fromLatin1(name.c_str()));
    }

    void boxesAreRenamedWithTheirItems()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas, QPoint(200, 150), PayloadOf(item));
        m_library->Rename(item, "Mix Layers");
        m_canvas->Refresh();
        QCOMPARE(BoxesOf(*m_canvas).first()->GetName(), QStringLiteral("Mix Layers"));
    }

    void theBoxOfAnItemThatIsGoneIsGreyUntilItComesBack()
    {
        memorymodel::CommandManager& commands = m_layer.GetCommandManager();
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas, QPoint(200, 150), PayloadOf(item));
        GraphBox& box = *BoxesOf(*m_canvas).first();
        QVERIFY(!box.IsMissing());
        const QImage before = box.grab().toImage();

        m_library->Remove(item, &commands);
        m_canvas->Refresh();
        QVERIFY(box.IsMissing());
        QCOMPARE(box.GetName(), QStringLiteral("Blend"));
        QCOMPARE(box.toolTip(), QStringLiteral("Blend is not in the library any more"));
        QCOMPARE(box.size(), before.size());
        QVERIFY(CountDifferences(before, box.grab().toImage()) > 100);

        commands.GetStack().undo();
        m_canvas->Refresh();
        QVERIFY(!box.IsMissing());
        QCOMPARE(box.toolTip(), QStringLiteral("Blend"));
        QCOMPARE(CountDifferences(before, box.grab().toImage()), 0);
        commands.GetStack().clear();
    }

    void theCaptionNamesTheCompound()
    {
        const QRect place(0, 0, 300, 40);
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        QCOMPARE(m_canvas->GetCaption(), QString());
        const QImage without = m_canvas->grab(place).toImage();
        m_canvas->SetCompound(item);
        QCOMPARE(m_canvas->GetCaption(), QStringLiteral("Editing Blend"));
        QVERIFY(CountDifferences(without, m_canvas->grab(place).toImage()) > 100);
        m_library->Rename(item, "Mix");
        m_canvas->Refresh();
        QCOMPARE(m_canvas->GetCaption(), QStringLiteral("Editing Mix"));
        m_library->Remove(item);
        m_canvas->Refresh();
        QCOMPARE(m_canvas->GetCaption(), QString());
        QCOMPARE(CountDifferences(without, m_canvas->grab(place).toImage()), 0);
    }

    void aCaptionThatIsTooLongStaysInside()
    {
        m_canvas->SetCompound(m_library->Add(NewItem::Compound(std::string(500, 'w'))));
        const QImage picture = m_canvas->grab(QRect(588, 0, 12, 40)).toImage();
        m_canvas->SetCompound(ItemID());
        QCOMPARE(CountDifferences(picture, m_canvas->grab(QRect(588, 0, 12, 40)).toImage()), 0);
    }

    void eachCompoundKeepsItsBoxes()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Add"));
        const ItemID one = m_library->Add(NewItem::Compound("One"));
        const ItemID other = m_library->Add(NewItem::Compound("Other"));
        m_canvas->SetCompound(one);
        const QImage empty = m_canvas->grab(gHint).toImage();
        Drop(*m_canvas, QPoint(200, 50), PayloadOf(item));
        GraphBox* const box = BoxesOf(*m_canvas).first();
        QVERIFY(CountDifferences(empty, m_canvas->grab(gHint).toImage()) > 100);

        m_canvas->SetCompound(other);
        QVERIFY(box->isHidden());
        QCOMPARE(CountDifferences(empty, m_canvas->grab(gHint).toImage()), 0);
        Drop(*m_canvas, QPoint(200, 50), PayloadOf(item));
        QCOMPARE(BoxesOf(*m_canvas).size(), 2);

        m_canvas->SetCompound(one);
        QVERIFY(!box->isHidden());
        QVERIFY(BoxesOf(*m_canvas).last()->isHidden());
        m_canvas->SetCompound(ItemID());
        QVERIFY(box->isHidden());
        QVERIFY(BoxesOf(*m_canvas).last()->isHidden());
    }

    void anotherLibraryEmptiesTheGraph()
    {
        const ItemID item = m_library->Add(NewItem::Compound("Blend"));
        Drop(*m_canvas, QPoint(200, 150), PayloadOf(item));
        Library& other = m_layer.AddLibrary("Other");
        m_canvas->SetLibrary(&other);
        QVERIFY(BoxesOf(*m_canvas).isEmpty());
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), PayloadOf(item)));
        m_canvas->SetLibrary(nullptr);
        QVERIFY(!Drop(*m_canvas, QPoint(50, 50), PayloadOf(item)));
        m_layer.RemoveLibrary(other);
    }

private:
    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
    std::unique_ptr<GraphCanvas> m_canvas;
};

NODEBROWSER_TEST_MAIN(TestGraphCanvas)
#include "test_graphcanvas.moc"
