// SPDX-License-Identifier: MIT
#include "host/fileswindow.h"

#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "host/versionfollower.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/gitfolder.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using host::FilesWindow;
using host::MainWindow;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

const char* const gRain = "<?xml version=\"1.0\"?>\n"
                          "<materialx version=\"1.38\"><nodedef name=\"ND_rain\" node=\"rain\"/></materialx>\n";

/// The documents, each with its state and what stands below it.
QStringList DocumentsIn(const FilesWindow& in_window)
{
    const QTreeWidget* const list = in_window.findChild<QTreeWidget*>();
    QStringList documents;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
    {
        const QTreeWidgetItem* const document = list->topLevelItem(i);
        documents << QDir::fromNativeSeparators(document->text(0)) + QStringLiteral(": ") + document->text(1);
        for (int j = 0; j < document->childCount(); ++j)
            documents << document->child(j)->text(0).section(QStringLiteral("Ann"), 1);
    }
    return documents;
}

QString LabelOf(const FilesWindow& in_window)
{
    return in_window.findChild<QLabel*>()->text();
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

    void anItemInMemoryHasNoFiles()
    {
        ShowFilesOf("Blend");
        QCOMPARE(Windows().size(), 1);
        const FilesWindow& window = *Windows().first();
        QVERIFY(window.isVisible());
        QVERIFY(!window.isModal());
        QCOMPARE(window.windowTitle(), QStringLiteral("Files of Blend"));
        QCOMPARE(LabelOf(window), QStringLiteral("Blend is in the data source Studio, in memory only."));
        QVERIFY(!window.findChild<QTreeWidget*>()->isVisible());
        for (const QPushButton* const button : window.findChildren<QPushButton*>())
            QCOMPARE(button->isVisible(), !button->text().contains(QStringLiteral("folder")));
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
        QCOMPARE(LabelOf(*Windows().first()),
                 QStringLiteral("Blend Layers is in the data source Studio, in memory only."));
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

    void aDocumentOutsideARepositoryHasNoState()
    {
        const QString path = m_settings.GetFolder().filePath(QStringLiteral("weather.mtlx"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(gRain) > 0);
        file.close();
        ShowFilesOf("Blend");
        QVERIFY(m_window->Open(path));
        QVERIFY(Windows().isEmpty());
        host::WaitForStates(m_window->GetLibrary());
        Show("rain");
        QCOMPARE(Windows().size(), 1);
        QVERIFY(LabelOf(*Windows().first()).contains(QStringLiteral("not under version control")));
        QCOMPARE(DocumentsIn(*Windows().first()), QStringList() << QStringLiteral("weather.mtlx: "));
    }

    void aDocumentInARepositoryHasItsStateAndItsCommits()
    {
        const GitFolder folder;
        folder.Write("sky/weather.mtlx", gRain);
        folder.Commit("Rain");
        folder.Write("sky/weather.mtlx", QByteArray(gRain) + "<!-- more -->\n");
        folder.Commit("More");
        QVERIFY(m_window->Open(folder.GetPath()));
        Show("rain");
        // What is not known yet is filled in.
        host::WaitForStates(m_window->GetLibrary());
        host::WaitForStates(m_window->GetLibrary());
        QCOMPARE(DocumentsIn(*Windows().first()), QStringList() << QStringLiteral("sky/weather.mtlx: Unchanged")
                                                                << QStringLiteral(" Author: More")
                                                                << QStringLiteral(" Author: Rain"));
        folder.Write("sky/weather.mtlx", QByteArray(gRain) + "<!-- and more -->\n");
        folder.Git("add --all");
        QVERIFY(WaitFor([&] { return DocumentsIn(*Windows().first()).value(0).endsWith(QStringLiteral("Staged")); },
                        20000));
    }

private:
    void Show(const char* in_name)
    {
        FilesWindow::Open(m_window->GetLibrary(), m_window->GetLibrary().FindByName(in_name), *m_window);
    }

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
