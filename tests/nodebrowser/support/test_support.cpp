// SPDX-License-Identifier: MIT
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/modaluser.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QMenu>

/// Tests that cannot fail are worse than none, so what all of them rest on has tests of its own.
class TestSupport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBrowserThatIsNotPaintedFailsTheTest()
    {
        QWidget hidden;
        ProbedBrowser browser;
        browser.setParent(&hidden);
        QEXPECT_FAIL("", "what is inside a hidden window is never painted", Continue);
        ShowBrowser(browser);
        QCOMPARE(browser.m_paints, 0);
    }

    void remarksOfThePlatformAreDropped_data()
    {
        QTest::addColumn<QByteArray>("remark");
        QTest::newRow("in front") << QByteArray("This plugin does not support raise()");
        QTest::newRow("size") << QByteArray("This plugin does not support propagateSizeHints()");
        QTest::newRow("keyboard") << QByteArray("This plugin does not support grabbing the keyboard");
    }

    void remarksOfThePlatformAreDropped()
    {
        QFETCH(QByteArray, remark);
        // One that was announced and does not come fails the test, and so does one that comes unannounced.
        if (testcompat::HasWindowSystem())
            QTest::ignoreMessage(QtWarningMsg, remark.constData());
        qWarning("%s", remark.constData());
    }

    void otherWarningsReachTheTest_data()
    {
        QTest::addColumn<QByteArray>("warning");
        QTest::newRow("another one") << QByteArray("QObject::connect: No such slot");
        QTest::newRow("another wish") << QByteArray("This plugin does not support anything");
        QTest::newRow("longer") << QByteArray("This plugin does not support raise() twice");
    }

    void otherWarningsReachTheTest()
    {
        QFETCH(QByteArray, warning);
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
        qWarning("%s", warning.constData());
    }

    void aMenuThatDoesNotOpenIsMissed()
    {
        ModalUser user;
        user.WhenMenuOpens([](QMenu&) {});
        QVERIFY(!user.IsDone());
    }

    void aMenuThatMayStayClosedIsNotMissed()
    {
        ModalUser user;
        user.IfMenuOpens([](QMenu&) {});
        QVERIFY(user.IsDone());
        user.WhenMenuOpens([](QMenu&) {});
        QVERIFY(!user.IsDone());
    }

    void aClickChoosesAnEntry()
    {
        QMenu menu;
        QAction* const entry = menu.addAction(QString::fromLatin1("Save"));
        bool clicked = false;
        ModalUser user;
        user.WhenMenuOpens([&clicked](QMenu& in_menu) { clicked = ClickEntry(in_menu, "Save"); });
        QVERIFY(menu.exec(QPoint(20, 20)) == entry);
        QVERIFY(clicked);
        QVERIFY(user.IsDone());
    }
};

NODEBROWSER_TEST_MAIN(TestSupport)
#include "test_support.moc"
