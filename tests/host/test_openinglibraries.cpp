// SPDX-License-Identifier: MIT
// Libraries on disk in the window: opening, what others change, saving, and what is remembered.

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/itemlibrarymodifier.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/system.h"
#include "host/aside.h"
#include "host/graphcanvas.h"
#include "host/mainwindow.h"
#include "host/newlibrary.h"
#include "host/openingbar.h"
#include "host/samplelibrary.h"
#include "host/theme.h"
#include "host/troublebar.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "workspace/files.h"
#include "workspace/journal.h"
#include "workspace/workspace.h"

#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTabBar>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <stdexcept>

using host::MainWindow;
using vireo::datamodel::ItemID;

namespace
{

const int gPatience = 20000; // milliseconds

QByteArray Document(const QByteArray& in_lines)
{
    return "<materialx version=\"1.39\">\n" + in_lines + "</materialx>\n";
}

} // namespace

class TestOpeningLibraries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("sky")));
        Write(QStringLiteral("sky/sky.mtlx"), Document("  <nodedef name=\"ND_sun\" node=\"sun\"/>\n"));
        Write(QStringLiteral("sky/air.mtlx"), Document("  <nodedef name=\"ND_wind\" node=\"wind\"/>\n"));
        m_window.reset(new MainWindow(m_layer, host::AddSampleLibrary(m_layer)));
        ShowMainWindow(*m_window);
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void theWindowAnswersUntilALibraryIsOpened()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        // Still the sample, which can be worked on.
        QVERIFY(m_window->GetLibrary().FindByName("Blend").IsValid());
        QVERIFY(Bar().isVisible());
        QVERIFY(WaitFor([&] { return !ended.isEmpty(); }, gPatience));
        QCOMPARE(ended.first().first().toBool(), true);
        QVERIFY(!Bar().isVisible());
        QVERIFY(m_window->GetLibrary().FindByName("sun").IsValid());
        QCOMPARE(Bar().findChild<QProgressBar*>()->value(), 2);
        QCOMPARE(Bar().findChild<QProgressBar*>()->maximum(), 2);
    }

    void cancellingKeepsThePresentLibrary()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        QTest::mouseClick(Bar().findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(ended.count(), 1);
        QCOMPARE(ended.first().first().toBool(), false);
        QVERIFY(!Bar().isVisible());
        // Nothing comes later, either.
        QVERIFY(m_window->Open(m_folder->filePath(QStringLiteral("sky/air.mtlx"))));
        QVERIFY(m_window->GetLibrary().FindByName("wind").IsValid());
        QVERIFY(!m_window->GetLibrary().FindByName("sun").IsValid());
        QCOMPARE(ended.count(), 2);
    }

    void whoOpensAnotherOneMeanwhileGetsThatOne()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        m_window->StartOpening(m_folder->filePath(QStringLiteral("sky/air.mtlx")));
        QVERIFY(WaitFor([&] { return ended.count() == 2; }, gPatience));
        QVERIFY(!m_window->GetLibrary().FindByName("sun").IsValid());
        QVERIFY(m_window->GetLibrary().FindByName("wind").IsValid());
    }

    void closingTheWindowEndsOpening()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        QVERIFY(m_window->close());
        QCOMPARE(ended.count(), 1);
    }

    void cancellingWhileItemsAreAddedTakesThemBack()
    {
        Write(QStringLiteral("sky/many.mtlx"), ManyNodes());
        const std::size_t before = CountSources();
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        QElapsedTimer clock;
        clock.start();
        while (CountSources() == before && ended.isEmpty() && !clock.hasExpired(gPatience))
            QCoreApplication::processEvents();
        QVERIFY(CountSources() > before); // the library is there
        QVERIFY(ended.isEmpty());         // and is not complete
        QTest::mouseClick(Bar().findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(ended.count(), 1);
        QCOMPARE(CountSources(), before);
        QTest::qWait(50);
        QCOMPARE(ended.count(), 1);
        QCOMPARE(CountSources(), before);
        QVERIFY(m_window->GetLibrary().FindByName("Blend").IsValid());
    }

    void readingLeavesTheThreadOfTheWindowAlone()
    {
        Write(QStringLiteral("sky/many.mtlx"), ManyNodes());
        QElapsedTimer clock;
        clock.start();
        workspace::Reading alone(m_folder->path());
        QVERIFY(alone.Run());
        const int needed = static_cast<int>(clock.elapsed());
        QVERIFY2(needed > 50, qPrintable(QString::number(needed)));
        int beats = 0;
        const memorymodel::Library* const sample = &m_window->GetLibrary();
        const std::size_t before = CountSources();
        QTimer heart;
        connect(&heart, &QTimer::timeout, &heart, [&] {
            const bool isBeingRead = &m_window->GetLibrary() == sample && CountSources() == before;
            beats += isBeingRead ? 1 : 0;
        });
        heart.start(1);
        QVERIFY(m_window->Open(m_folder->path()));
        QVERIFY2(beats > 10, qPrintable(QString::number(beats)));
    }

    void aQuestionIsNotDisturbed_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("isExchanged");
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << true;
        QTest::newRow("save") << int(QMessageBox::Save) << false;
    }

    /// A library that was being opened must not take the place of the one that a question is about.
    void aQuestionIsNotDisturbed()
    {
        QFETCH(int, answer);
        QFETCH(bool, isExchanged);
        QVERIFY(m_window->Open(m_folder->filePath(QStringLiteral("sky/air.mtlx"))));
        Rename("wind", "Storm");
        const memorymodel::Library* const present = &m_window->GetLibrary();
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->filePath(QStringLiteral("sky/sky.mtlx")));
        bool isAlone = false;
        ModalUser person;
        person.WhenDialogOpens("Unsaved changes", [&](QDialog& in_box) {
            WaitUntilRead();
            isAlone = QApplication::activeModalWidget() == &in_box && &m_window->GetLibrary() == present;
            // The innermost one first, should there be two.
            while (QApplication::activeModalWidget() && QApplication::activeModalWidget() != &in_box)
                QApplication::activeModalWidget()->close();
            if (isExchanged)
                person.WhenDialogOpens("Unsaved changes",
                                       [](QDialog& in_next) { Click(in_next, QMessageBox::Discard); });
            Click(in_box, answer);
        });
        const bool isClosed = m_window->close();
        QVERIFY(isAlone);
        QCOMPARE(isClosed, !isExchanged);
        QVERIFY(WaitFor([&] { return !ended.isEmpty(); }, gPatience));
        QVERIFY(person.IsDone());
        QCOMPARE(ended.first().first().toBool(), isExchanged);
        QCOMPARE(m_window->GetLibrary().FindByName("sun").IsValid(), isExchanged);
        QCOMPARE(Read(QStringLiteral("sky/air.mtlx")).contains("Storm"), !isExchanged);
    }

    void aMenuIsNotDisturbed()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        bool isAlone = false;
        ModalUser person;
        person.WhenMenuOpens([&](QMenu&) {
            WaitUntilRead();
            isAlone = ended.isEmpty() && m_window->GetLibrary().FindByName("Blend").IsValid();
            CloseMenus();
        });
        QTest::mouseClick(&m_window->GetBrowser(), Qt::RightButton, Qt::NoModifier, RowCentre(0));
        QVERIFY(person.IsDone());
        QVERIFY(isAlone);
        QVERIFY(WaitFor([&] { return !ended.isEmpty(); }, gPatience));
        QVERIFY(m_window->GetLibrary().FindByName("sun").IsValid());
    }

    void aSaveIsNotDisturbed()
    {
        QVERIFY(m_window->Open(m_folder->filePath(QStringLiteral("sky/air.mtlx"))));
        Rename("wind", "Storm");
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        QStringList asked;
        QTimer answer; // of a question that would come too early
        connect(&answer, &QTimer::timeout, &answer, [&] {
            if (QWidget* const box = QApplication::activeModalWidget())
            {
                asked << box->windowTitle();
                box->close();
            }
        });
        answer.start(5);
        m_window->GetWorkspace()->SetRunner([&](const std::function<void()>& in_function) {
            std::atomic<bool> mayGoOn{false};
            QTimer::singleShot(0, m_window.get(), [&] {
                m_window->StartOpening(m_folder->filePath(QStringLiteral("sky/sky.mtlx")));
                WaitUntilRead();
                mayGoOn = true;
            });
            host::RunAside([&] {
                while (!mayGoOn)
                    QThread::yieldCurrentThread();
                in_function();
            });
        });
        Save();
        QVERIFY(WaitFor([&] { return !ended.isEmpty(); }, gPatience));
        QCOMPARE(asked, QStringList());
        QVERIFY(m_window->GetLibrary().FindByName("sun").IsValid());
        QVERIFY(Read(QStringLiteral("sky/air.mtlx")).contains("Storm"));
    }

    void theSampleEndsOpening()
    {
        QSignalSpy ended(m_window.get(), SIGNAL(OpeningEnded(bool, QString)));
        m_window->StartOpening(m_folder->path());
        QVERIFY(Choose(QStringLiteral("&Sample")));
        QCOMPARE(ended.count(), 1);
        QVERIFY(!Bar().isVisible());
        QTest::qWait(200);
        QVERIFY(m_window->GetLibrary().FindByName("Blend").IsValid());
    }

    void theMenuOpensAFile()
    {
        ModalUser person;
        ChooseFile(person, m_folder->filePath(QStringLiteral("sky/sky.mtlx")));
        OpenByMenu(QStringLiteral("&Open library\u2026"));
        QVERIFY(person.IsDone());
        QVERIFY(WaitFor([this] { return m_window->GetLibrary().FindByName("sun").IsValid(); }, gPatience));
    }

    void theMenuOpensAFolder()
    {
        ModalUser person;
        ChooseFile(person, m_folder->path());
        OpenByMenu(QStringLiteral("Open &folder\u2026"));
        QVERIFY(person.IsDone());
        QVERIFY(WaitFor([this] { return m_window->GetLibrary().FindByName("sun").IsValid(); }, gPatience));
        QVERIFY(m_window->GetLibrary().FindByName("wind").IsValid());
    }

    void theMenuMakesALibrary()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("mine")));
        ModalUser person;
        ChooseFile(person, m_folder->filePath(QStringLiteral("mine")));
        OpenByMenu(QStringLiteral("&New library\u2026"));
        QVERIFY(person.IsDone());
        QVERIFY(WaitFor([this] { return m_window->GetWorkspace() != nullptr; }, gPatience));
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("mine/local/local.mtlx"))));
        // A folder with documents is none to begin in.
        QString text;
        ChooseFile(person, m_folder->path());
        person.WhenDialogOpens("New library", [&text](QDialog& in_box) {
            text = static_cast<QMessageBox&>(in_box).text();
            Press(in_box, Qt::Key_Return);
        });
        OpenByMenu(QStringLiteral("&New library\u2026"));
        QVERIFY(person.IsDone());
        QVERIFY2(text.contains(QStringLiteral("has MaterialX documents already")), qPrintable(text));
    }

    void reloadLooksAtTheFiles()
    {
        QAction* const reload = FindChoice(QStringLiteral("&Reload"));
        QVERIFY(reload && !reload->isEnabled()); // the sample is in no files
        QVERIFY(m_window->Open(m_folder->path()));
        QVERIFY(reload->isEnabled());
        int looks = 0;
        m_window->GetWorkspace()->SetRunner([&looks](const std::function<void()>& in_function) {
            ++looks;
            in_function();
        });
        // Nothing happens by itself.
        QTest::qWait(500);
        looks = 0;
        QTest::qWait(300);
        QCOMPARE(looks, 0);
        reload->trigger();
        QVERIFY(WaitFor([&] { return looks > 0; }));
        m_window->GetWorkspace()->SetRunner(host::RunAside);
    }

    void whatCannotBeReadIsSaid()
    {
        Write(QStringLiteral("sky/torn.mtlx"), "<materialx>\n<nodedef");
        QString error;
        QVERIFY(!m_window->Open(m_folder->path(), &error));
        QVERIFY2(error.startsWith(m_folder->filePath(QStringLiteral("sky/torn.mtlx")) + QStringLiteral(":2: ")),
                 qPrintable(error));
        QVERIFY(m_window->GetLibrary().FindByName("Blend").IsValid());
        ModalUser person;
        QString text;
        person.WhenWindowOpens([&](QWidget& in_box) {
            text = static_cast<QMessageBox&>(in_box).text();
            Press(in_box, Qt::Key_Return);
        });
        QVERIFY(!m_window->Open(m_folder->path()));
        QVERIFY(person.IsDone());
        QVERIFY2(text.contains(error), qPrintable(text));
    }

    void theStatusBarSaysWhatWasSaved()
    {
        Save();
        QCOMPARE(Message(), QStringLiteral("Sample is in memory only"));
        QVERIFY(m_window->Open(m_folder->path()));
        Save();
        QCOMPARE(Message(), QStringLiteral("Nothing to save"));
        Rename("sun", "Sun");
        Save();
        QCOMPARE(Message(), QStringLiteral("Saved 1 document: sky/sky.mtlx"));
        Rename("Sun", "Star");
        Rename("wind", "Storm");
        Save();
        QCOMPARE(Message(), QStringLiteral("Saved 2 documents: sky/air.mtlx, sky/sky.mtlx"));
    }

    void theStatusBarCountsTheRowsThatAreListed()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        m_window->GetBrowser().SelectTab(2);
        QVERIFY(WaitFor([this] { return HasLabel(QStringLiteral("2 listed")); }));
        m_window->GetBrowser().Search(QStringLiteral("sun"));
        QVERIFY(WaitFor([this] { return HasLabel(QStringLiteral("1 listed")); }));
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
        QVERIFY(HasLabelThatStarts(QStringLiteral("sun \u2013 ")));
        // A row that is gone is not selected.
        QVERIFY(m_window->GetLibrary().Remove(m_window->GetLibrary().FindByName("sun")));
        QVERIFY(WaitFor([this] { return HasLabel(QStringLiteral("0 listed")); }));
        QVERIFY(!HasLabelThatStarts(QStringLiteral("sun \u2013 ")));
    }

    void changesByOthersReachTheBrowser()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Do("sed 's/sun/moon/g' sky/sky.mtlx > sky/moon.mtlx");
        QVERIFY(WaitFor([this] { return m_window->GetLibrary().FindByName("moon").IsValid(); }, gPatience));
        QVERIFY(!Trouble().isVisible());
    }

    void aConflictIsShownAndDecided_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("inTheFile");
        QTest::addColumn<bool>("isBeside");
        QTest::newRow("theirs") << QStringLiteral("Take theirs") << QByteArray("tags=\"theirs\"") << false;
        QTest::newRow("mine") << QStringLiteral("Keep mine") << QByteArray("uiname=\"Sun\"") << false;
        QTest::newRow("beside") << QStringLiteral("Save mine beside it") << QByteArray("tags=\"theirs\"") << true;
    }

    void aConflictIsShownAndDecided()
    {
        QFETCH(QString, button);
        QFETCH(QByteArray, inTheFile);
        QFETCH(bool, isBeside);
        QVERIFY(m_window->Open(m_folder->path()));
        Rename("sun", "Sun");
        Do("sed -i 's/node=\"sun\"/node=\"sun\" tags=\"theirs\"/' sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        QVERIFY2(TroubleText().startsWith(QStringLiteral("sky/sky.mtlx has changes of yours")),
                 qPrintable(TroubleText()));
        // Saving does not overwrite it.
        Save();
        QCOMPARE(Message(), QStringLiteral("1 document could not be saved"));
        QVERIFY(Read(QStringLiteral("sky/sky.mtlx")).contains("tags=\"theirs\""));
        for (QPushButton* const one : Trouble().findChildren<QPushButton*>())
            if (one->text() == button)
                QTest::mouseClick(one, Qt::LeftButton);
        QVERIFY(!Trouble().isVisible());
        Save();
        QVERIFY2(Read(QStringLiteral("sky/sky.mtlx")).contains(inTheFile),
                 Read(QStringLiteral("sky/sky.mtlx")).constData());
        QCOMPARE(QFile::exists(m_folder->filePath(QStringLiteral("sky/sky.mtlx.ours"))), isBeside);
    }

    void whatCannotBeSavedIsNamedWithTheReason()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Rename("sun", "Sun");
        Do("sed -i 's/node=\"sun\"/node=\"sun\" tags=\"theirs\"/' sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        QString text;
        ModalUser person;
        person.WhenDialogOpens("Save library", [&text](QDialog& in_box) {
            text = static_cast<QMessageBox&>(in_box).informativeText();
            Press(in_box, Qt::Key_Return);
        });
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&Library"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, QStringLiteral("Save graph library")));
        QVERIFY(person.IsDone());
        QCOMPARE(text, QStringLiteral("sky/sky.mtlx: Another program has changed it"));
        QCOMPARE(m_window->GetWorkspace()->GetSaveMessages(), QStringList(text));
        QCOMPARE(Message(), QStringLiteral("1 document could not be saved"));
        // What is saved again has no message.
        m_layer.GetCommandManager().GetStack().undo();
        Save();
        QCOMPARE(m_window->GetWorkspace()->GetSaveMessages(), QStringList());
    }

    void aConflictEndsWithItsEdits()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Rename("sun", "Sun");
        Do("sed -i 's/node=\"sun\"/node=\"sun\" tags=\"theirs\"/' sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        m_layer.GetCommandManager().GetStack().undo();
        QVERIFY(WaitFor([this] { return !Trouble().isVisible(); }, gPatience));
        const memorymodel::Library& library = m_window->GetLibrary();
        QCOMPARE(library.GetAccessor().GetItemTags(library.FindByName("sun"), vireo::datamodel::gApplicationTagsKey),
                 std::string("theirs"));
    }

    void aDocumentThatCannotBeReadIsShownWithItsLine()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Do("printf '<materialx>\\n<<<<<<< ours\\n' > sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        QVERIFY2(TroubleText().startsWith(m_folder->filePath(QStringLiteral("sky/sky.mtlx")) + QStringLiteral(":2: ")),
                 qPrintable(TroubleText()));
        for (const QPushButton* const button : Trouble().findChildren<QPushButton*>())
            QVERIFY(!button->isVisible());
        QVERIFY(m_window->GetLibrary().FindByName("sun").IsValid());
        Write(QStringLiteral("sky/sky.mtlx"), Document("  <nodedef name=\"ND_moon\" node=\"moon\"/>\n"));
        QVERIFY(WaitFor([this] { return !Trouble().isVisible(); }, gPatience));
        QVERIFY(m_window->GetLibrary().FindByName("moon").IsValid());
    }

    /// Behind the one that nobody can do anything about waits one for the user.
    void aConflictComesFirst()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Rename("sun", "Sun");
        Do("echo '<!-- theirs -->' >> sky/sky.mtlx; printf '<materialx>\\n<<<<<<< ours\\n' > sky/air.mtlx");
        const auto isConflict = [this] { return TroubleText().startsWith(QStringLiteral("sky/sky.mtlx has changes")); };
        QVERIFY(WaitFor(isConflict, gPatience));
        QVERIFY(WaitFor([this] { return TroubleText().endsWith(QStringLiteral("One more document needs a look.")); },
                        gPatience));
        QVERIFY(TroubleButton("Take theirs")->isVisible());
        QVERIFY(!TroubleButton("Dismiss")->isVisible());
        QTest::mouseClick(TroubleButton("Take theirs"), Qt::LeftButton);
        QVERIFY(TroubleText().startsWith(m_folder->filePath(QStringLiteral("sky/air.mtlx:2: "))));
        QVERIFY(!TroubleButton("Take theirs")->isVisible());
    }

    /// As a merge leaves it.
    void aConflictThatCannotBeReadIsDecidedAsWell()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Do("printf '<materialx>\\n<<<<<<< ours\\n' > sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        QVERIFY(!TroubleButton("Keep mine")->isVisible());
        Rename("sun", "Sun");
        Do("printf '<materialx>\\n<<<<<<< ours, too\\n' > sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return TroubleButton("Keep mine")->isVisible(); }, gPatience));
        QTest::mouseClick(TroubleButton("Save mine beside it"), Qt::LeftButton);
        QVERIFY2(TroubleText().startsWith(m_folder->filePath(QStringLiteral("sky/sky.mtlx:2: "))),
                 qPrintable(TroubleText()));
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("sky/sky.mtlx.ours"))));
        QTest::mouseClick(TroubleButton("Keep mine"), Qt::LeftButton);
        QVERIFY(!Trouble().isVisible());
        Save();
        QVERIFY(Read(QStringLiteral("sky/sky.mtlx")).contains("uiname=\"Sun\""));
    }

    void whatGoesTheSameWayIsNamed()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        memorymodel::Library& library = m_window->GetLibrary();
        auto* const helper = hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        const auto sun = helper->FindObject(
            nexa4::DbObjectId(vireo::datamodel::ItemIDUnlock::GetItemIDUID(library.FindByName("sun"))));
        const std::shared_ptr<memorymodel::DataSource> local = library.GetDataSources().front();
        QVERIFY(nexa4::IHelper::GetHelper(sun.GetManager()->GetDatabase())
                    ->MoveToDataSource(sun, nexa4::NEXAPtr<nexa4::IDataSource>(local), true));
        Do("echo '<!-- theirs -->' >> sky/sky.mtlx");
        QVERIFY(WaitFor([this] { return Trouble().isVisible(); }, gPatience));
        QVERIFY2(TroubleText().endsWith(QStringLiteral("Your changes of local/local.mtlx go the same way: they belong "
                                                       "together.")),
                 qPrintable(TroubleText()));
    }

    void whatASaveCouldNotPutInPlaceIsTold()
    {
        Write(QStringLiteral("sky/.nodebrowser-save-1"), "<materialx/>");
        workspace::Journal journal;
        journal.m_isComplete = true;
        journal.m_entries = {
            {"sky/sky.mtlx", "sky/.nodebrowser-save-1", workspace::HashOf("other"), workspace::HashOf("<materialx/>")}};
        Write(QString::fromLatin1(workspace::gJournalName), workspace::WriteJournal(journal));
        QVERIFY(m_window->Open(m_folder->path()));
        QVERIFY(Trouble().isVisible());
        const QString path = m_folder->filePath(QStringLiteral("sky/sky.mtlx"));
        QCOMPARE(TroubleText(), path + QStringLiteral(": Another program has changed it; what was saved is in ") +
                                    path + QStringLiteral(".saved"));
        QTest::mouseClick(TroubleButton("Dismiss"), Qt::LeftButton);
        QVERIFY(!Trouble().isVisible());
    }

    void leavingAsksByDocuments()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        // An item that was made, saved, and taken back leaves no dirty item, but a changed document.
        vireo::datamodel::CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(m_window->GetLibrary().GetAccessor(), "Made", true, nullptr, nullptr,
                                             &m_layer.GetCommandManager());
        Save();
        m_layer.GetCommandManager().GetStack().undo();
        ModalUser person;
        QStringList said;
        person.WhenWindowOpens([&](QWidget& in_box) {
            said << static_cast<QMessageBox&>(in_box).text() << static_cast<QMessageBox&>(in_box).informativeText();
            Press(in_box, Qt::Key_Escape);
        });
        QVERIFY(!m_window->close());
        QVERIFY(person.IsDone());
        QCOMPARE(said.value(1), QStringLiteral("local/local.mtlx"));
        QVERIFY2(said.value(0).startsWith(QStringLiteral("A document of the library ")), qPrintable(said.value(0)));
        Save();
        QVERIFY(m_window->close());
    }

    void noEditIsMadeWhileALibraryIsSaved()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        Rename("sun", "Sun");
        const std::shared_ptr<workspace::Workspace> workspace = m_window->GetWorkspace();
        int beats = 0;
        bool isRefused = false;
        workspace->SetRunner([&](const std::function<void()>& in_function) {
            std::atomic<bool> mayGoOn{false};
            QTimer heart;
            connect(&heart, &QTimer::timeout, &heart, [&] {
                isRefused = !m_window->GetLibrary().Rename(m_window->GetLibrary().FindByName("wind"), "Storm");
                mayGoOn = ++beats >= 3;
            });
            heart.start(0);
            host::RunAside([&] {
                while (!mayGoOn)
                    QThread::yieldCurrentThread();
                in_function();
            });
        });
        Save();
        QCOMPARE(Message(), QStringLiteral("Saved 1 document: sky/sky.mtlx"));
        QVERIFY(beats >= 3);
        QVERIFY(isRefused);
        QVERIFY(m_window->GetLibrary().FindByName("wind").IsValid());
        workspace->SetRunner(host::RunAside);
    }

    void aNewLibraryTakesItems()
    {
        const QString folder = m_folder->filePath(QStringLiteral("mine"));
        QVERIFY(QDir().mkdir(folder));
        QCOMPARE(host::MakeLibrary(folder), QString());
        QVERIFY(m_window->Open(folder));
        QCOMPARE(m_window->GetLibrary().GetItemCount(), std::size_t(0));
        vireo::datamodel::CompoundModifierAccessor compound;
        compound.CreateAndSetFromNewCompound(m_window->GetLibrary().GetAccessor(), "Mine", true, nullptr, nullptr,
                                             &m_layer.GetCommandManager());
        Save();
        QCOMPARE(Message(), QStringLiteral("Saved 1 document: local/local.mtlx"));
        const QByteArray before = Read(QStringLiteral("mine/local/local.mtlx"));
        QVERIFY(before.contains("Mine"));
        QVERIFY(!host::MakeLibrary(folder).isEmpty());
        QCOMPARE(Read(QStringLiteral("mine/local/local.mtlx")), before);
    }

    void theSampleComesBack()
    {
        QVERIFY(m_window->Open(m_folder->path()));
        QVERIFY(Choose(QStringLiteral("&Sample")));
        QVERIFY(m_window->GetLibrary().FindByName("Blend").IsValid());
        QVERIFY(!m_window->GetWorkspace());
    }

    void layoutAndTabAreRemembered()
    {
        const QSize size(677, 455); // fits on the smallest screen
        m_window->resize(size);
        m_window->addDockWidget(Qt::RightDockWidgetArea, m_window->findChild<QDockWidget*>());
        m_window->GetBrowser().SelectTab(1);
        QVERIFY(m_window->close());
        RemoveMainWindow(m_window, m_layer);
        m_window.reset(new MainWindow(m_layer, host::AddSampleLibrary(m_layer)));
        QDockWidget* const dock = m_window->findChild<QDockWidget*>();
        QCOMPARE(m_window->dockWidgetArea(dock), Qt::LeftDockWidgetArea);
        m_window->RestoreLayout();
        m_window->show();
        QCOMPARE(m_window->dockWidgetArea(dock), Qt::RightDockWidgetArea);
        QCOMPARE(m_window->findChild<QTabBar*>()->currentIndex(), 1);
        QCOMPARE(m_window->size(), size);
        QVERIFY(Choose(QStringLiteral("&Reset layout")));
        QCOMPARE(m_window->dockWidgetArea(dock), Qt::LeftDockWidgetArea);
    }

    void theThemeIsRemembered()
    {
        QCOMPARE(host::GetTheme(), host::eTheme::eSystem);
        const QColor before = CanvasColour();
        QVERIFY(Choose(QStringLiteral("&Dark")));
        QCOMPARE(host::GetTheme(), host::eTheme::eDark);
        QCOMPARE(CanvasColour(), host::DarkPalette().color(QPalette::Base));
        QVERIFY(Choose(QStringLiteral("&Light")));
        QCOMPARE(host::GetTheme(), host::eTheme::eLight);
        QVERIFY(CanvasColour().lightness() > 200);
        // The next start applies it.
        QApplication::setPalette(host::DarkPalette());
        host::ApplyTheme();
        QVERIFY(CanvasColour().lightness() > 200);
        QVERIFY(Choose(QStringLiteral("&System")));
        QCOMPARE(host::GetTheme(), host::eTheme::eSystem);
        QCOMPARE(CanvasColour(), before);
    }

private:
    host::OpeningBar& Bar() { return *m_window->findChild<host::OpeningBar*>(); }
    host::TroubleBar& Trouble() { return *m_window->findChild<host::TroubleBar*>(); }
    QPushButton* TroubleButton(const char* in_text)
    {
        for (QPushButton* const button : Trouble().findChildren<QPushButton*>())
            if (button->text() == QLatin1String(in_text))
                return button;
        throw std::runtime_error(std::string("There is no button ") + in_text);
    }
    QString TroubleText() { return Trouble().findChild<QLabel*>()->text(); }
    QString Message() { return m_window->statusBar()->currentMessage(); }

    void Write(const QString& in_path, const QByteArray& in_content)
    {
        QFile file(m_folder->filePath(in_path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(in_content), in_content.size());
    }

    QByteArray Read(const QString& in_path)
    {
        QFile file(m_folder->filePath(in_path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Lets a shell do something in the folder.
    void Do(const QByteArray& in_commands)
    {
        QProcess shell;
        shell.setWorkingDirectory(m_folder->path());
        shell.start(QStringLiteral("sh"), {QStringLiteral("-ec"), QString::fromLatin1(in_commands)});
        QVERIFY(shell.waitForFinished(gPatience));
        QVERIFY2(shell.exitCode() == 0, shell.readAllStandardError().constData());
    }

    void Rename(const char* in_from, const char* in_to)
    {
        memorymodel::Library& library = m_window->GetLibrary();
        QVERIFY(library.Rename(library.FindByName(in_from), in_to, &m_layer.GetCommandManager()));
    }

    void Save()
    {
        bool isWritten = false;
        vireo::datamodel::ItemLibraryModifierAccessor(m_window->GetLibrary().GetAccessor())
            .CommitToDisk(isWritten, nullptr, false, nexa4::UID_Null());
    }

    /// An entry of any menu.
    QAction* FindChoice(const QString& in_text)
    {
        for (QAction* const action : m_window->findChildren<QAction*>())
            if (action->text() == in_text)
                return action;
        return nullptr;
    }

    bool Choose(const QString& in_text)
    {
        QAction* const action = FindChoice(in_text);
        if (action)
            action->trigger();
        return action != nullptr;
    }

    void OpenByMenu(const QString& in_entry)
    {
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&File"));
        QVERIFY(menu);
        QVERIFY(ClickEntry(*menu, in_entry));
    }

    /// Types a path into the next dialog for files.
    static void ChooseFile(ModalUser& io_person, const QString& in_path)
    {
        io_person.WhenWindowOpens([in_path](QWidget& in_dialog) {
            QLineEdit* const name = in_dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            QVERIFY(qobject_cast<QFileDialog*>(&in_dialog) && name);
            name->setText(in_path);
            QTest::keyClick(name, Qt::Key_Return);
        });
    }

    static void Click(QDialog& in_box, int in_button)
    {
        QTest::mouseClick(static_cast<QMessageBox&>(in_box).button(static_cast<QMessageBox::StandardButton>(in_button)),
                          Qt::LeftButton);
    }

    /// Waits until all documents were read, and for what would come at once then.
    void WaitUntilRead()
    {
        const QProgressBar& progress = *Bar().findChild<QProgressBar*>();
        QVERIFY(WaitFor([&] { return progress.maximum() > 0 && progress.value() == progress.maximum(); }, gPatience));
        QTest::qWait(150);
    }

    QColor CanvasColour()
    {
        QCoreApplication::processEvents(); // widgets are told of a palette by events
        const host::GraphCanvas& canvas = *m_window->findChild<host::GraphCanvas*>();
        return m_window->grab().toImage().pixelColor(canvas.mapTo(m_window.get(), QPoint(3, 3)));
    }

    /// Takes long to read, and to add.
    static QByteArray ManyNodes()
    {
        QByteArray lines;
        for (int i = 0; i < 20000; ++i)
        {
            const QByteArray name = QByteArray::number(i);
            lines += "  <nodedef name=\"ND_n" + name + "\" node=\"n" + name + "\"/>\n";
        }
        return Document(lines);
    }

    /// The sources of all libraries that there are.
    std::size_t CountSources()
    {
        auto* const helper = hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        const ItemID blend = m_window->GetLibrary().FindByName("Blend");
        const nexa4::NEXAHandle<nexa4::IDbObject> object =
            helper->FindObject(nexa4::DbObjectId(vireo::datamodel::ItemIDUnlock::GetItemIDUID(blend)));
        const std::string resources =
            "select object where IS_OF_TYPE_VERSION( {" + nexa4::UID_Resource().GetStr() + " } )";
        return object.GetManager()->GetDatabase()->Query(resources, true).size();
    }

    bool HasLabel(const QString& in_text)
    {
        m_window->grab();
        for (const QLabel* const label : m_window->statusBar()->findChildren<QLabel*>())
            if (label->text() == in_text)
                return true;
        return false;
    }

    bool HasLabelThatStarts(const QString& in_text)
    {
        for (const QLabel* const label : m_window->statusBar()->findChildren<QLabel*>())
            if (label->text().startsWith(in_text))
                return true;
        return false;
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestOpeningLibraries)
#include "test_openinglibraries.moc"
