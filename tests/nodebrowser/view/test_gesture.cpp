// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testmain.h"

#include <QWheelEvent>

using memorymodel::NewItem;

namespace
{

void Swipe(QWidget& in_widget, int in_delta, Qt::ScrollPhase in_phase)
{
    const QPoint position(100, 200);
    QWheelEvent wheel(QPointF(position), QPointF(in_widget.mapToGlobal(position)), QPoint(), QPoint(0, in_delta),
                      Qt::NoButton, Qt::NoModifier, in_phase, false);
    QCoreApplication::sendEvent(&in_widget, &wheel);
}

} // namespace

/// Touch pads, which report where a gesture begins and ends by turns of 0.
class TestGesture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginningAndEndOfAGestureDoNotScroll()
    {
        memorymodel::DataLayer layer;
        memorymodel::Library& library = layer.AddLibrary("Long");
        for (int i = 0; i < 100; ++i)
            library.Add(NewItem::Solver("Solver " + std::to_string(i)));
        ProbedBrowser browser;
        ShowLibrary(browser, library.GetAccessor());
        browser.ScrollBar().setValue(300);
        Swipe(browser, 0, Qt::ScrollBegin);
        QCOMPARE(browser.ScrollBar().value(), 300);
        Swipe(browser, 15, Qt::ScrollUpdate);
        QCOMPARE(browser.ScrollBar().value(), 300 - 3 * gRowHeight);
        Swipe(browser, 0, Qt::ScrollEnd);
        QCOMPARE(browser.ScrollBar().value(), 300 - 3 * gRowHeight);
        Swipe(browser, 0, Qt::NoScrollPhase);
        QCOMPARE(browser.ScrollBar().value(), 300);
    }
};

NODEBROWSER_TEST_MAIN(TestGesture)
#include "test_gesture.moc"
