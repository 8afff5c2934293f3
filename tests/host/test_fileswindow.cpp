// SPDX-License-Identifier: MIT
#include "host/fileswindow.h"

#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>

using host::FilesWindow;
using host::MainWindow;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

QStringList FilesIn(const FilesWindow& in_window)
{
    const QListWidget* const list = in_window.findChild<QListWidget*>();
    QStringList files;
    for (int i = 0; i < list->count(); ++i)
        files << QDir::fromNativeSeparators(list->item(i)->text());
    return files;
}

} // namespace

class TestFilesWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Library& library = m_layer.AddLibrary("Nodes");
        library.AddDataSource("Studio");
        m_blend = library.Add(NewItem::Compound("Blend"));
        m_mix = library.Add(NewItem::Compound("Mix"));
        m_window.reset(new MainWindow(m_layer, library));
        ShowMainWindow(*m_window);
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void theFilesOfAnItemAreListed()
    {
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 1);
        const FilesWindow& window = *Windows().first();
        QVERIFY(window.isVisible());
        QVERIFY(!window.isModal());
        QCOMPARE(window.windowTitle(), QStringLiteral("Files of Blend"));
        QCOMPARE(window.findChild<QLabel*>()->text(), QStringLiteral("Blend is stored in the data source Studio:"));
        QCOMPARE(FilesIn(window), QStringList()
                                      << QStringLiteral("Nodes/Studio") << QStringLiteral("Nodes/Studio/Blend"));
    }

    void anItemHasOneWindow()
    {
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 1);
        const FilesWindow* const first = Windows().first();
        ShowFilesOf("Mix");
        QCOMPARE(Windows().size(), 2);
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 2);
        QVERIFY(Windows().contains(const_cast<FilesWindow*>(first)));
    }

    void escapeClosesIt()
    {
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 1);
        QTest::keyClick(Windows().first(), Qt::Key_Escape);
        QVERIFY(!Windows().first()->isVisible());
        ShowFilesOf("Blend");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(Windows().size(), 1);
        QVERIFY(Windows().first()->isVisible());
    }

    void itFollowsARename()
    {
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 1);
        m_window->GetLibrary().Rename(m_blend, "Blend Layers");
        QCOMPARE(Windows().first()->windowTitle(), QStringLiteral("Files of Blend Layers"));
        QCOMPARE(FilesIn(*Windows().first()).last(), QStringLiteral("Nodes/Studio/Blend Layers"));
    }

    void itClosesWithItsItem()
    {
        ShowFilesOf("Blend");
        ShowFilesOf("Mix");
        m_window->GetLibrary().Remove(m_blend);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(Windows().size(), 1);
        QCOMPARE(Windows().first()->windowTitle(), QStringLiteral("Files of Mix"));
        FilesWindow::Open(m_window->GetLibrary(), m_blend, *m_window);
        QCOMPARE(Windows().size(), 1);
    }

    void aSourceThatIsAFileIsListedAlone()
    {
        const QString path = m_settings.GetFolder().filePath(QStringLiteral("weather.mtlx"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("<?xml version=\"1.0\"?>\n"
                           "<materialx version=\"1.38\"><nodedef name=\"ND_rain\" node=\"rain\"/></materialx>\n") > 0);
        file.close();
        ShowFilesOf("Blend");
        QVERIFY(m_window->Open(path));
        QVERIFY(Windows().isEmpty());
        const ItemID item = m_window->GetLibrary().FindByName("rain");
        QVERIFY(item.IsValid());
        FilesWindow::Open(m_window->GetLibrary(), item, *m_window);
        QCOMPARE(Windows().size(), 1);
        QCOMPARE(FilesIn(*Windows().first()).size(), 1);
        QVERIFY2(path.startsWith(FilesIn(*Windows().first()).first()), qPrintable(FilesIn(*Windows().first()).first()));
    }

private:
    QList<FilesWindow*> Windows() { return m_window->findChildren<FilesWindow*>(); }

    /// Chooses the entry from the context menu of the item's row.
    void ShowFilesOf(const char* in_name)
    {
        m_window->GetBrowser().Search(QLatin1String(in_name));
        m_window->grab();
        const QString entry = QStringLiteral("Show Files for ") + QLatin1String(in_name);
        bool clicked = false;
        ModalUser person;
        person.WhenMenuOpens([&clicked, &entry](QMenu& in_menu) {
            clicked = ClickEntry(in_menu, entry);
            CloseMenus();
        });
        QTest::mouseClick(&m_window->GetBrowser(), Qt::RightButton, Qt::NoModifier, RowCentre(0));
        QVERIFY(person.IsDone());
        QVERIFY(clicked);
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<MainWindow> m_window;
    ItemID m_blend;
    ItemID m_mix;
};

NODEBROWSER_TEST_MAIN(TestFilesWindow)
#include "test_fileswindow.moc"
