// SPDX-License-Identifier: MIT
#include "host/recentlibraries.h"

#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"

#include <QDir>
#include <QFile>

using host::AddRecentLibrary;
using host::GetRecentLibraries;
using host::MainWindow;

class TestRecentLibraries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QSettings(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("nodebrowser"),
                  QStringLiteral("nodebrowser"))
            .clear();
    }

    void theyAreKeptUnderTheProgramsName()
    {
        AddRecentLibrary(QStringLiteral("/a.mtlx"));
        QVERIFY(QFile::exists(m_settings.GetFolder().filePath(QStringLiteral("nodebrowser/nodebrowser.ini"))));
    }

    void theLastOneIsTheFirst()
    {
        QVERIFY(GetRecentLibraries().isEmpty());
        for (const char* const name : {"a", "b", "a"})
            AddRecentLibrary(QDir::tempPath() + QLatin1Char('/') + QLatin1String(name));
        QCOMPARE(GetRecentLibraries(), QStringList() << QDir::cleanPath(QDir::tempPath() + QStringLiteral("/a"))
                                                     << QDir::cleanPath(QDir::tempPath() + QStringLiteral("/b")));
    }

    void aPathIsKeptWhole()
    {
        AddRecentLibrary(QStringLiteral("folder/../nodes/"));
        QCOMPARE(GetRecentLibraries(), QStringList() << QDir::currentPath() + QStringLiteral("/nodes"));
    }

    void thereAreEightAtMost()
    {
        for (int i = 0; i < 10; ++i)
            AddRecentLibrary(QStringLiteral("/library%1").arg(i));
        QCOMPARE(GetRecentLibraries().size(), 8);
        QVERIFY(GetRecentLibraries().first().endsWith(QStringLiteral("/library9")));
        QVERIFY(GetRecentLibraries().last().endsWith(QStringLiteral("/library2")));
    }

    void anOpenedLibraryIsOfferedAgain()
    {
        const QString path = WriteLibrary(QStringLiteral("here & now.mtlx"));
        memorymodel::DataLayer layer;
        MainWindow window(layer, layer.AddLibrary("Nodes"));
        ShowMainWindow(window);

        QMenu* recent = OpenRecent(window);
        QVERIFY(recent);
        QCOMPARE(recent->actions().size(), 1);
        QCOMPARE(recent->actions().first()->text(), QStringLiteral("None yet"));
        QVERIFY(!recent->actions().first()->isEnabled());
        CloseMenus();

        QVERIFY(window.Open(path));
        QCOMPARE(GetRecentLibraries(), QStringList() << path);
        AddRecentLibrary(QStringLiteral("/gone/away.mtlx"));
        QVERIFY(window.Open(WriteLibrary(QStringLiteral("other.mtlx"))));
        QCOMPARE(window.GetLibrary().GetName(), std::string("other.mtlx"));

        recent = OpenRecent(window);
        QVERIFY(recent);
        QCOMPARE(recent->actions().size(), 3);
        QAction* const missing = recent->actions().at(1);
        QVERIFY2(missing->text().startsWith(QStringLiteral("&2  away.mtlx")) &&
                     missing->text().endsWith(QStringLiteral("(missing)")),
                 qPrintable(missing->text()));
        QVERIFY(!missing->isEnabled());
        QAction* const found = recent->actions().at(2);
        QVERIFY2(found->text().startsWith(QStringLiteral("&3  here && now.mtlx \u2013 ")), qPrintable(found->text()));
        QVERIFY(!found->text().contains(QStringLiteral("missing")));
        QTest::keyClick(recent, Qt::Key_3);
        QVERIFY(WaitFor([&window] { return window.GetLibrary().GetName() == "here & now.mtlx"; }));
        QCOMPARE(GetRecentLibraries().first(), path);
    }

    void whatCannotBeOpenedIsNotOfferedAgain()
    {
        memorymodel::DataLayer layer;
        MainWindow window(layer, layer.AddLibrary("Nodes"));
        ModalUser person;
        person.WhenWindowOpens([](QWidget& in_box) { Press(in_box, Qt::Key_Return); });
        QVERIFY(!window.Open(QStringLiteral("/gone/away.mtlx")));
        QVERIFY(person.IsDone());
        QVERIFY(GetRecentLibraries().isEmpty());
    }

    void aLongFolderIsShortened()
    {
        QDir(m_settings.GetFolder().path()).mkpath(QString(200, QLatin1Char('x')));
        AddRecentLibrary(m_settings.GetFolder().filePath(QString(200, QLatin1Char('x')) + QStringLiteral("/n.mtlx")));
        host::RecentMenu menu(nullptr);
        QVERIFY(QMetaObject::invokeMethod(&menu, "aboutToShow"));
        QCOMPARE(menu.actions().size(), 1);
        QVERIFY(menu.actions().first()->text().size() < 90);
        QCOMPARE(QDir::fromNativeSeparators(menu.actions().first()->toolTip()), GetRecentLibraries().first());
    }

private:
    QString WriteLibrary(const QString& in_name)
    {
        const QString path = m_settings.GetFolder().filePath(in_name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return QString();
        file.write("<?xml version=\"1.0\"?>\n<materialx version=\"1.38\"><typedef name=\"warmth\"/></materialx>\n");
        return path;
    }

    static QMenu* OpenRecent(MainWindow& in_window)
    {
        QMenu* const file = OpenMenu(in_window, QStringLiteral("&File"));
        return file ? OpenSubmenu(*file, QStringLiteral("Re&cent libraries")) : nullptr;
    }

    OwnSettings m_settings;
};

NODEBROWSER_TEST_MAIN(TestRecentLibraries)
#include "test_recentlibraries.moc"
