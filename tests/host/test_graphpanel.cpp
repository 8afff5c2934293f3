// SPDX-License-Identifier: MIT
// The way into compounds and back out of them.

#include "host/graphpanel.h"

#include "datamodel/helpers.h"
#include "host/breadcrumb.h"
#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

using host::GraphCanvas;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

class TestGraphPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_library = &m_layer.AddLibrary("Nodes");
        m_outer = m_library->Add(NewItem::Compound("Outer"));
        m_inner = m_library->Add(NewItem::Compound("Inner"));
        m_other = m_library->Add(NewItem::Compound("Other"));
        m_window.reset(new host::MainWindow(m_layer, *m_library));
        ShowMainWindow(*m_window);
        testcompat::DeclareActive(*m_window);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void aDoubleClickEntersAndTheBreadcrumbLeadsBack()
    {
        QCOMPARE(Way(), QStringLiteral("Main graph"));
        Enter(m_outer);
        QCOMPARE(Way(), QStringLiteral("Main graph/Outer"));
        QVERIFY(m_layer.GetCompoundTarget() == m_outer);
        QVERIFY(!m_layer.GetCompoundTargetRoot().IsValid());
        QVERIFY(Canvas().GetBoxes().isEmpty());
        Enter(m_inner);
        QCOMPARE(Way(), QStringLiteral("Main graph/Outer/Inner"));
        QVERIFY(m_layer.GetCompoundTarget() == m_inner);
        QVERIFY(m_layer.GetCompoundTargetRoot() == m_outer);

        Q_EMIT Crumbs().linkActivated(QStringLiteral("1"));
        QCOMPARE(Way(), QStringLiteral("Main graph/Outer"));
        QVERIFY(m_layer.GetCompoundTarget() == m_outer);
        QVERIFY(Canvas().GetBoxes().first()->GetItem() == m_inner);
        Q_EMIT Crumbs().linkActivated(QStringLiteral("0"));
        QCOMPARE(Way(), QStringLiteral("Main graph"));
        QVERIFY(!m_layer.GetCompoundTarget().IsValid());
        QVERIFY(Canvas().GetBoxes().first()->GetItem() == m_outer);
    }

    void aLinkIsClickedWithTheMouse()
    {
        Enter(m_outer);
        QCoreApplication::processEvents();
        const QPoint place(Crumbs().contentsRect().left() + 10, Crumbs().rect().center().y());
        QTest::mouseMove(&Crumbs(), place);
        QTest::mouseClick(&Crumbs(), Qt::LeftButton, Qt::NoModifier, place);
        QCOMPARE(Way(), QStringLiteral("Main graph"));
    }

    void altUpLeavesOneCompound()
    {
        Enter(m_outer);
        Enter(m_inner);
        Canvas().setFocus();
        QTest::keyClick(&Canvas(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(Way(), QStringLiteral("Main graph/Outer"));
        QTest::keyClick(&Canvas(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(Way(), QStringLiteral("Main graph"));
        QTest::keyClick(&Canvas(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(Way(), QStringLiteral("Main graph"));
    }

    void aCompoundFromElsewhereBeginsAnew()
    {
        Enter(m_outer);
        Enter(m_inner);
        vireo::datamodel::Helpers::SetGlobalVireoCompoundTarget(
            vireo::datamodel::CompoundAccessor(m_library->GetAccessor().GetModel(m_other, nullptr)),
            vireo::datamodel::CompoundAccessor());
        QCOMPARE(Way(), QStringLiteral("Main graph/Other"));
    }

    void aCompoundInsideOfItselfGoesBackToIt()
    {
        Enter(m_outer);
        Enter(m_inner);
        Enter(m_outer);
        QCOMPARE(Way(), QStringLiteral("Main graph/Outer"));
    }

    void namesAndRemovalsAreFollowed()
    {
        Enter(m_outer);
        Enter(m_inner);
        m_library->Rename(m_outer, "<b>Bold</b>");
        QCOMPARE(Way(), QStringLiteral("Main graph/<b>Bold</b>/Inner"));
        QVERIFY(Crumbs().text().contains(QStringLiteral("&lt;b&gt;Bold&lt;/b&gt;")));
        m_library->Remove(m_outer);
        QCOMPARE(Way(), QStringLiteral("Main graph/Inner"));
        m_library->Remove(m_inner);
        QCOMPARE(Way(), QStringLiteral("Main graph"));
    }

    void longNamesDoNotWidenTheWindow()
    {
        const int before = m_window->minimumSizeHint().width();
        m_library->Rename(m_outer, std::string(500, 'w'));
        Enter(m_outer);
        Enter(m_inner);
        QVERIFY2(m_window->minimumSizeHint().width() < before + 200,
                 qPrintable(QString::number(m_window->minimumSizeHint().width())));
    }

private:
    GraphCanvas& Canvas() { return *m_window->findChild<GraphCanvas*>(); }
    host::Breadcrumb& Crumbs() { return *m_window->findChild<host::Breadcrumb*>(); }
    QString Way() { return Crumbs().GetNames().join(QLatin1Char('/')); }

    /// Puts a compound into the graph and double-clicks its box.
    void Enter(const ItemID& in_compound)
    {
        Canvas().Place(in_compound, QPointF(100, 100));
        QTest::mouseDClick(Canvas().viewport(), Qt::LeftButton, Qt::NoModifier,
                           Canvas().mapFromScene(QPointF(100, 100)));
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
    ItemID m_outer;
    ItemID m_inner;
    ItemID m_other;
    std::unique_ptr<host::MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestGraphPanel)
#include "test_graphpanel.moc"
