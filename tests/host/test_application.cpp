// SPDX-License-Identifier: MIT
#include "host/application.h"

#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QStatusBar>
#include <QTimer>

#include <new>
#include <stdexcept>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using host::MainWindow;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

class TestApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        memorymodel::Library& library = m_layer.AddLibrary("Nodes");
        library.AddDataSource("Studio");
        library.AddDataSource("Archive");
        m_blend = library.Add(NewItem::Compound("Blend"));
        library.Add(NewItem::Compound("Mix"));
        m_window.reset(new MainWindow(m_layer, library));
        ShowMainWindow(*m_window);
    }

    void cleanup()
    {
        CloseMenus();
        RemoveMainWindow(m_window, m_layer);
    }

    void anItemThatGoesWhileItsMenuIsOpenEndsNothing()
    {
        const nexa4::DisableErrorReportingGuard quiet;
#ifdef __SANITIZE_ADDRESS__
        const __lsan::ScopedDisabler toolkit; // it does not give back what it holds when an exception passes
#endif
        bool isClicked = false;
        ModalUser person;
        person.WhenMenuOpens([&](QMenu& in_menu) {
            QMenu* const sources = OpenSubmenu(in_menu, QStringLiteral("Compound source"));
            m_window->GetLibrary().Drop(m_blend);
            isClicked = sources && ClickEntry(*sources, QStringLiteral("Archive"));
        });
        QTest::mouseClick(&m_window->GetBrowser(), Qt::RightButton, Qt::NoModifier, RowCentre(0));
        QVERIFY(person.IsDone());
        QVERIFY(isClicked);
        QVERIFY(!QApplication::activePopupWidget());
        QCoreApplication::processEvents();
        QCOMPARE(m_window->statusBar()->currentMessage(),
                 QStringLiteral("That could not be done: the item is not there any more"));
        // The window goes on.
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
        QVERIFY(m_window->GetBrowser().GetSelection() == m_window->GetLibrary().FindByName("Mix"));
    }

    void whatElseGoesWrongIsSaid_data()
    {
        QTest::addColumn<bool>("isMemory");
        QTest::newRow("memory") << true;
        QTest::newRow("another reason") << false;
    }

    void whatElseGoesWrongIsSaid()
    {
        QFETCH(bool, isMemory);
        QSignalSpy failed(qApp, SIGNAL(Failed(QString)));
        QTimer::singleShot(0, this, [isMemory] {
            if (isMemory)
                throw std::bad_alloc();
            throw std::runtime_error("The cable is cut");
        });
        QVERIFY(WaitFor([&] { return !failed.isEmpty(); }));
        const QString reason =
            isMemory ? QString::fromLocal8Bit(std::bad_alloc().what()) : QStringLiteral("The cable is cut");
        QCoreApplication::processEvents();
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("That could not be done: ") + reason);
    }

private:
    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<MainWindow> m_window;
    ItemID m_blend;
};

int main(int argc, char** argv)
{
    return RunTest<TestApplication, host::Application>(argc, argv);
}
#include "test_application.moc"
