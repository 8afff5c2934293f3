// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "host/breadcrumb.h"
#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/librarybrowser.h"
#include "host/samplelibrary.h"
#include "memorymodel/datalayer.h"
#include "tests/host/dropping.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"

#include <QDockWidget>
#include <QFile>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QToolTip>

using host::GraphCanvas;
using host::MainWindow;
using memorymodel::Library;
using vireo::datamodel::ItemID;

namespace
{

void WriteFile(const QString& in_path, const QByteArray& in_content)
{
    QFile file(in_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(in_content), in_content.size());
}

const QByteArray gTwoTypes = "<?xml version=\"1.0\"?>\n"
                             "<materialx version=\"1.38\">\n"
                             "  <typedef name=\"warmth\"/>\n"
                             "  <typedef name=\"wetness\"/>\n"
                             "</materialx>\n";

QByteArrayList NamesOf(MainWindow& in_window)
{
    in_window.grab();
    QByteArrayList names;
    for (const host::Row& row : in_window.GetBrowser().GetRows(in_window.GetLibrary()))
        names << row.m_name.toUtf8();
    return names;
}

/// Saves what a test has changed, so that nothing is asked when the library is left.
void Commit(const Library& in_library)
{
    bool written = false;
    QVERIFY(vireo::datamodel::ItemLibraryModifierAccessor(in_library.GetAccessor())
                .CommitToDisk(written, nullptr, false, nexa4::UID_Null()));
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window.reset(new MainWindow(m_layer, host::AddSampleLibrary(m_layer)));
        ShowMainWindow(*m_window, 1100, 720);
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void theBrowserIsInADockBesideTheGraph()
    {
        const QDockWidget* const dock = m_window->findChild<QDockWidget*>();
        QVERIFY(dock);
        QCOMPARE(dock->windowTitle(), QStringLiteral("Node library"));
        QCOMPARE(dock->widget(), static_cast<QWidget*>(&m_window->GetBrowser()));
        const int width = m_window->GetBrowser().width();
        QVERIFY2(width >= 280 && width <= 320, qPrintable(QString::number(width)));
        QVERIFY(m_window->centralWidget()->isAncestorOf(Canvas()));
        QVERIFY(Canvas()->width() > 700);
    }

    void tabAndSearchAreSetAsAPersonSetsThem()
    {
        m_window->GetBrowser().SelectTab(1);
        m_window->GetBrowser().Search(QStringLiteral("Matrix"));
        QCOMPARE(m_window->findChild<QTabBar*>()->currentIndex(), 1);
        QCOMPARE(m_window->findChild<QLineEdit*>()->text(), QStringLiteral("Matrix"));
        QCOMPARE(NamesOf(*m_window), QByteArrayList() << "Matrix 3"
                                                      << "Matrix 4");
    }

    void aSelectedRowIsNamedInTheStatusBar_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("status");
        QTest::newRow("Blend") << 0 << QStringLiteral("Blend \u2013 compound, Studio");
        QTest::newRow("Turbulence") << 0 << QStringLiteral("Turbulence \u2013 looping compound, Factory");
        QTest::newRow("Moir") << 0 << QStringLiteral("Moir\u00e9 \u2013 compound, Studio");
        QTest::newRow("Clamp") << 0 << QStringLiteral("Clamp \u2013 polymorphic solver, Factory");
        QTest::newRow("Tangent") << 0 << QStringLiteral("Tangent \u2013 solver, Factory");
        QTest::newRow("Predicate") << 2 << QStringLiteral("Predicate \u2013 signature, Factory");
        QTest::newRow("Pi") << 2 << QStringLiteral("Pi \u2013 global constant, Factory");
        QTest::newRow("Light") << 1 << QStringLiteral("Light \u2013 type, Archive");
    }

    void aSelectedRowIsNamedInTheStatusBar()
    {
        QFETCH(int, tab);
        QFETCH(QString, status);
        QCOMPARE(SelectionText(), QString());
        ClickFirstRowOf(QLatin1String(QTest::currentDataTag()), tab);
        QCOMPARE(SelectionText(), status);
    }

    void enterWithoutRowsClearsTheStatusBar()
    {
        ClickFirstRowOf(QStringLiteral("Blend"), 0);
        QVERIFY(!SelectionText().isEmpty());
        m_window->GetBrowser().Search(QStringLiteral("qqq"));
        m_window->grab();
        QTest::keyClick(m_window->findChild<QLineEdit*>(), Qt::Key_Return);
        QCOMPARE(SelectionText(), QString());
    }

    void theLibraryIsCountedInTheStatusBar()
    {
        const int count = static_cast<int>(m_window->GetLibrary().GetItemCount());
        QVERIFY(HasStatusLabel(QStringLiteral("Sample: %1 items").arg(count)));
        vireo::datamodel::CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(m_window->GetLibrary().GetAccessor(), "My Node", false, nullptr, nullptr,
                                             m_window->GetBrowser().GetCommandManager());
        QVERIFY(HasStatusLabel(QStringLiteral("Sample: %1 items").arg(count + 1)));
        m_layer.GetCommandManager().GetStack().undo();
        QVERIFY(HasStatusLabel(QStringLiteral("Sample: %1 items").arg(count)));
    }

    void theTitleNamesTheCompoundThatIsEdited()
    {
        QCOMPARE(m_window->windowTitle(), QStringLiteral("nodebrowser"));
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Blend \u2013 nodebrowser"));
        DoubleClickFirstRowOf(QStringLiteral("Moir"));
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Moir\u00e9 \u2013 nodebrowser"));
        vireo::datamodel::Helpers::SetGlobalVireoCompoundTarget(vireo::datamodel::CompoundAccessor(),
                                                                vireo::datamodel::CompoundAccessor());
        QCOMPARE(m_window->windowTitle(), QStringLiteral("nodebrowser"));
    }

    void aRenameIsFollowedByTitleAndGraphAndCanBeUndone()
    {
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        const ItemID item = m_window->GetLibrary().FindByName("Blend");
        Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(item));
        m_window->GetLibrary().Rename(item, "Mix Layers", &m_layer.GetCommandManager());
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Mix Layers \u2013 nodebrowser"));
        QCOMPARE(Canvas()->GetBoxes().first()->GetName(), QStringLiteral("Mix Layers"));
        QAction* const undo = FindAction("&Edit", "&Undo");
        QVERIFY(undo);
        QVERIFY(undo->isEnabled());
        undo->trigger();
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Blend \u2013 nodebrowser"));
        QCOMPARE(Canvas()->GetBoxes().first()->GetName(), QStringLiteral("Blend"));
    }

    void theFileMenuOpensAndQuits()
    {
        QVERIFY(FindAction("&File", "&Open library"));
        QVERIFY(FindAction("&File", "Open &folder"));
        QAction* const quit = FindAction("&File", "&Quit");
        QVERIFY(quit);
        QVERIFY(m_window->isVisible());
        quit->trigger();
        QVERIFY(!m_window->isVisible());
    }

    void anOpenedFileTakesThePlaceOfTheLibrary()
    {
        QTemporaryDir folder;
        WriteFile(folder.filePath(QStringLiteral("weather.mtlx")), gTwoTypes);
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        const ItemID old = m_window->GetLibrary().FindByName("Blend");
        const vireo::datamodel::ItemLibraryAccessor sample = m_window->GetLibrary().GetAccessor();
        Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(old));
        m_window->GetLibrary().Rename(old, "Mix Layers", &m_layer.GetCommandManager());
        Commit(m_window->GetLibrary());

        QVERIFY(m_window->Open(folder.filePath(QStringLiteral("weather.mtlx"))));
        QSignalSpy painted(&m_window->GetBrowser(), SIGNAL(Painted()));
        m_window->GetBrowser().Search(QString());
        m_window->GetBrowser().SelectTab(2);
        QCOMPARE(NamesOf(*m_window), QByteArrayList() << "warmth"
                                                      << "wetness");
        QVERIFY(WaitFor([&] { return !painted.isEmpty(); }));
        QVERIFY(HasStatusLabel(QStringLiteral("weather.mtlx: 2 items")));
        QCOMPARE(SelectionText(), QString());
        QCOMPARE(m_window->windowTitle(), QStringLiteral("nodebrowser"));
        QVERIFY(Canvas()->GetBoxes().isEmpty());
        QVERIFY(!m_layer.GetCommandManager().GetStack().canUndo());
        QVERIFY(!sample.IsValid());
        QVERIFY(!m_layer.GetCompoundTarget().IsValid());
    }

    void anotherLibraryBeginsWithoutASelectedRow()
    {
        QTemporaryDir folder;
        WriteFile(folder.filePath(QStringLiteral("weather.mtlx")), gTwoTypes);
        ClickFirstRowOf(QString(), 2);
        QVERIFY(m_window->GetBrowser().GetSelection().IsValid());
        QVERIFY(m_window->Open(folder.filePath(QStringLiteral("weather.mtlx"))));
        QSignalSpy painted(&m_window->GetBrowser(), SIGNAL(Painted()));
        QVERIFY(WaitFor([&] {
            m_window->grab();
            return !painted.isEmpty();
        }));
        QCOMPARE(m_window->GetBrowser().GetRowCount(), std::size_t(2));
        QVERIFY(!m_window->GetBrowser().GetSelection().IsValid());
        QCOMPARE(SelectionText(), QString());
    }

    void aMessageMakesRoomForTheNextSelection()
    {
        ClickFirstRowOf(QStringLiteral("Blend"), 0);
        QLabel* const label = m_window->statusBar()->findChildren<QLabel*>().first();
        QVERIFY(label->isVisible());
        m_window->statusBar()->showMessage(QStringLiteral("Saved"));
        QVERIFY(!label->isVisible());
        // The same row again says nothing new.
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Saved"));
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(1));
        QCOMPARE(m_window->statusBar()->currentMessage(), QString());
        QVERIFY(label->isVisible());
    }

    void aNameThatDoesNotFitIsInTheToolTip()
    {
        const std::string name(2000, 'w');
        m_window->GetLibrary().Rename(m_window->GetLibrary().FindByName("Blend"), name);
        ClickFirstRowOf(QStringLiteral("wwww"), 0);
        QCoreApplication::processEvents(); // layouts are told of their parts' sizes by events
        QLabel* const label = m_window->statusBar()->findChildren<QLabel*>().first();
        QVERIFY(label->text().startsWith(QStringLiteral("wwww")));
        QHelpEvent help(QEvent::ToolTip, QPoint(10, 5), label->mapToGlobal(QPoint(10, 5)));
        QApplication::sendEvent(label, &help);
        QVERIFY(QToolTip::text().contains(QString::fromStdString(name)));
        HideToolTip();
        // What fits needs none.
        ClickFirstRowOf(QStringLiteral("Tangent"), 0);
        QCoreApplication::processEvents();
        QApplication::sendEvent(label, &help);
        QCOMPARE(QToolTip::text(), QString());
        QVERIFY(CountColours(label->grab().toImage()) > 2);
    }

    void aLongLibraryNameLeavesRoomForTheOthers()
    {
        std::unique_ptr<MainWindow> window(new MainWindow(m_layer, m_layer.AddLibrary(std::string(2000, 'w'))));
        ShowMainWindow(*window);
        QCoreApplication::processEvents();
        const QStatusBar& bar = *window->statusBar();
        const int selection = bar.findChildren<QLabel*>().first()->width();
        RemoveMainWindow(window, m_layer);
        QVERIFY2(selection > 300, qPrintable(QString::number(selection)));
    }

    void undoSaysWhatItUndid()
    {
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(m_window->GetLibrary().FindByName("Tangent")));
        DoubleClickFirstRowOf(QStringLiteral("Moir"));
        FindAction("&Edit", "&Undo")->trigger();
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Undone: Add Tangent"));
        FindAction("&Edit", "&Redo")->trigger();
        QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Done again: Add Tangent"));
    }

    void viewShowsAndHidesTheDocks()
    {
        for (QDockWidget* const dock : m_window->findChildren<QDockWidget*>())
        {
            QAction* const entry = FindAction("&View", dock->windowTitle().toLatin1().constData());
            QVERIFY(entry);
            QVERIFY(dock->isVisible() && entry->isChecked());
            entry->trigger();
            QVERIFY(!dock->isVisible() && !entry->isChecked());
            entry->trigger();
            QVERIFY(dock->isVisible() && entry->isChecked());
        }
    }

    void theBandIsPaintedBeforeItsMenuOpens()
    {
        class Watcher : public QObject
        {
        public:
            explicit Watcher(QObject& in_browser) : m_browser(in_browser) {}
            bool m_isPainted = false;
            bool m_wasPaintedBefore = false;

        protected:
            bool eventFilter(QObject* in_object, QEvent* in_event) override
            {
                m_isPainted = m_isPainted || (in_object == &m_browser && in_event->type() == QEvent::Paint);
                if (in_event->type() == QEvent::Show && qobject_cast<QMenu*>(in_object))
                    m_wasPaintedBefore = m_isPainted;
                return false;
            }

        private:
            QObject& m_browser;
        };
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_window->grab();
        QCoreApplication::processEvents();
        Watcher watcher(m_window->GetBrowser());
        qApp->installEventFilter(&watcher);
        ModalUser person;
        person.WhenMenuOpens([](QMenu&) { CloseMenus(); });
        QTest::mouseClick(&m_window->GetBrowser(), Qt::RightButton, Qt::NoModifier, RowCentre(1));
        QVERIFY(person.IsDone());
        QVERIFY(watcher.m_wasPaintedBefore);
    }

    void whatCannotBeOpenedLeavesTheLibraryAttached()
    {
        QTemporaryDir folder;
        WriteFile(folder.filePath(QStringLiteral("a.mtlx")), gTwoTypes);
        WriteFile(folder.filePath(QStringLiteral("b.mtlx")), "<materialx>\n<typedef name=\"half\"/>\n</material>\n");
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        const QByteArrayList before = NamesOf(*m_window);
        Library* const library = &m_window->GetLibrary();

        QString message;
        ModalUser person;
        person.WhenWindowOpens([&message](QWidget& in_box) {
            message = in_box.property("text").toString();
            Press(in_box, Qt::Key_Return);
        });
        QVERIFY(!m_window->Open(folder.path()));
        QVERIFY(person.IsDone());
        QVERIFY2(message.contains(folder.filePath(QStringLiteral("b.mtlx")) + QStringLiteral(":3: ")),
                 qPrintable(message));
        QCOMPARE(&m_window->GetLibrary(), library);
        QVERIFY(library->GetAccessor().IsValid());
        QCOMPARE(NamesOf(*m_window), before);
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Blend \u2013 nodebrowser"));
        QVERIFY(Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(library->FindByName("Blend"))));
    }

    void theFactoryMarkIsThereInEveryLibrary()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("stdlib")));
        WriteFile(folder.filePath(QStringLiteral("stdlib/types.mtlx")), gTwoTypes);
        m_window->GetBrowser().SelectTab(1);
        const QImage sample = MarkOfFirstRow();
        QVERIFY(m_window->Open(folder.path()));
        QCOMPARE(MarkOfFirstRow(), sample);
        m_window->GetBrowser().Search(QStringLiteral("qqq"));
        QVERIFY(MarkOfFirstRow() != sample);
    }

    void aChangeThatCannotBeUndoneIsFollowedToo()
    {
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        const ItemID item = m_window->GetLibrary().FindByName("Blend");
        Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(item));
        m_window->GetLibrary().Rename(item, "Mix Layers");
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Mix Layers \u2013 nodebrowser"));
        QCOMPARE(Way(), QStringList() << QStringLiteral("Main graph") << QStringLiteral("Mix Layers"));
        QCOMPARE(Canvas()->GetBoxes().first()->GetName(), QStringLiteral("Mix Layers"));
        QCOMPARE(SelectionText(), QStringLiteral("Mix Layers \u2013 compound, Studio"));
        const int count = static_cast<int>(m_window->GetLibrary().GetItemCount());
        m_window->GetLibrary().Remove(item);
        QCOMPARE(m_window->windowTitle(), QStringLiteral("nodebrowser"));
        QCOMPARE(Way(), QStringList(QStringLiteral("Main graph")));
        QCOMPARE(SelectionText(), QString());
        QVERIFY(HasStatusLabel(QStringLiteral("Sample: %1 items").arg(count - 1)));
    }

    void eachCompoundHasAGraphOfItsOwn()
    {
        const ItemID item = m_window->GetLibrary().FindByName("Moir\xe9");
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        Drop(*Canvas()->viewport(), QPoint(100, 100), PayloadOf(item));
        QCOMPARE(Canvas()->GetBoxes().size(), 1);
        DoubleClickFirstRowOf(QStringLiteral("Moir"));
        QCOMPARE(Canvas()->GetBoxes().size(), 0);
        DoubleClickFirstRowOf(QStringLiteral("Blend"));
        QCOMPARE(Canvas()->GetBoxes().size(), 1);
    }

private:
    GraphCanvas* Canvas() { return m_window->findChild<GraphCanvas*>(); }
    QStringList Way() { return m_window->findChild<host::Breadcrumb*>()->GetNames(); }

    void ClickFirstRowOf(const QString& in_search, int in_tab)
    {
        m_window->GetBrowser().SelectTab(in_tab);
        m_window->GetBrowser().Search(in_search);
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
    }

    void DoubleClickFirstRowOf(const QString& in_search)
    {
        ClickFirstRowOf(in_search, 0);
        QTest::mouseDClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
    }

    /// The pixels to the left of the type icon.
    QImage MarkOfFirstRow()
    {
        m_window->grab();
        return m_window->GetBrowser().grab().toImage().copy(0, gListTop + 2, 9, 20);
    }

    bool HasStatusLabel(const QString& in_text)
    {
        for (const QLabel* const label : m_window->statusBar()->findChildren<QLabel*>())
            if (label->text() == in_text)
                return true;
        return false;
    }

    /// The text of the first label of the status bar.
    QString SelectionText() { return m_window->statusBar()->findChildren<QLabel*>().first()->text(); }

    static int CountColours(const QImage& in_picture)
    {
        QSet<QRgb> colours;
        for (int y = 0; y < in_picture.height(); ++y)
            for (int x = 0; x < in_picture.width(); ++x)
                colours << in_picture.pixel(x, y);
        return static_cast<int>(colours.size());
    }

    QAction* FindAction(const char* in_menu, const char* in_text)
    {
        for (const QAction* const menu : m_window->menuBar()->actions())
            for (QAction* const action : menu->menu()->actions())
                if (menu->text() == QLatin1String(in_menu) && action->text().startsWith(QLatin1String(in_text)))
                    return action;
        return nullptr;
    }

    OwnSettings m_settings;
    // The browser looks the factory objects up once in a process, so one layer serves all tests.
    memorymodel::DataLayer m_layer;
    std::unique_ptr<MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
