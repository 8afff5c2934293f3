// SPDX-License-Identifier: MIT
#include "host/versionfollower.h"

#include "contract/support.h"
#include "datamodel/helpers.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "tests/host/windowfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/waiting.h"
#include "tests/workspace/gitfolder.h"

#include <QAction>
#include <QMessageBox>
#include <QSet>
#include <QStatusBar>
#include <QTimer>

#include <sys/stat.h>

using host::MainWindow;
using vireo::datamodel::ItemID;
using vireo::datamodel::ItemIDUnlock;

namespace
{

const char* const gSky = "<materialx version=\"1.39\">\n"
                         "  <nodedef name=\"ND_moon\" node=\"moon\"/>\n"
                         "  <nodedef name=\"ND_sun\" node=\"sun\"/>\n"
                         "</materialx>\n";

nexa4::IRevisionControlUIHelper& Helper()
{
    return *hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

} // namespace

class TestVersionFollower : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new GitFolder);
        m_folder->Write("sky/sky.mtlx", gSky);
        m_window.reset(new MainWindow(m_layer, m_layer.AddLibrary("Nodes")));
        ShowMainWindow(*m_window);
        const int allTab = 2; // signatures are on this one only
        m_window->GetBrowser().SelectTab(allTab);
    }

    void cleanup()
    {
        RemoveMainWindow(m_window, m_layer);
        m_folder.reset();
    }

    void badgesStayAfterChangesThatBuildTheListAnew()
    {
        m_folder->Commit();
        QVERIFY(m_window->Open(m_folder->GetPath()));
        const QImage before = PaintBadges();
        QVERIFY(CountColours(before) > 1);
        contract::Rename(m_window->GetLibrary().GetAccessor(), m_window->GetLibrary().FindByName("sun"), "sunny",
                         nullptr);
        QCOMPARE(PaintBadges(), before);
        // Also after changes of which nothing is seen in between.
        m_window->hide();
        contract::Rename(m_window->GetLibrary().GetAccessor(), m_window->GetLibrary().FindByName("sunny"), "sun",
                         nullptr);
        host::WaitForStates(m_window->GetLibrary());
        m_window->show();
        QCOMPARE(PaintBadges(), before);
    }

    void badgesStayHiddenAfterAChange()
    {
        m_folder->Commit();
        QVERIFY(m_window->Open(m_folder->GetPath()));
        PaintBadges();
        m_layer.GetSourceControl().SetEnabled(false);
        contract::Rename(m_window->GetLibrary().GetAccessor(), m_window->GetLibrary().FindByName("sun"), "sunny",
                         nullptr);
        bool isEnabled = true;
        hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr")
            ->GetSourceControlEnabled(&isEnabled);
        QVERIFY(!isEnabled);
    }

    void whatCannotBeCheckedOutIsSaid()
    {
        m_folder->Commit();
        const QString file = m_folder->Write("sky/sky.mtlx", QByteArray(gSky) + "<!-- more -->\n");
        chmod(file.toLocal8Bit().constData(), 0444);
        QVERIFY(m_window->Open(m_folder->GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        const char* const uid = ItemIDUnlock::GetItemIDUID(m_window->GetLibrary().FindByName("sun"));
        QString text;
        ModalUser person;
        person.WhenWindowOpens([&text](QWidget& in_message) {
            text = static_cast<QMessageBox&>(in_message).text();
            Press(in_message, Qt::Key_Escape);
        });
        Helper().CheckOut(Helper().FindObject(nexa4::DbObjectId(uid)), nullptr, true);
        QVERIFY(WaitFor([&] { return person.IsDone(); }, 20000));
        QVERIFY2(text.contains(QStringLiteral("sky.mtlx is not as git has it")), qPrintable(text));
    }

    void theShownLibrarySaysWhetherThereIsVersionControl()
    {
        m_folder->Commit();
        const GitFolder second;
        second.Write("sea/sea.mtlx", "<materialx version=\"1.39\"/>\n");
        second.Commit();
        const DocumentFolder third;
        third.Write(QStringLiteral("air/air.mtlx"), "<materialx version=\"1.39\"/>\n");
        QVERIFY(m_window->Open(m_folder->GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        QVERIFY(ScsUtils::IsFileVersionControlActive());
        QVERIFY(m_window->Open(second.GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        QVERIFY(ScsUtils::IsFileVersionControlActive());
        QVERIFY(m_window->Open(third.GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        QVERIFY(m_window->Open(m_folder->GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        QVERIFY(ScsUtils::IsFileVersionControlActive());
        for (QAction* const action : m_window->findChildren<QAction*>())
            if (action->text() == QStringLiteral("&Sample"))
                action->trigger();
        QCOMPARE(m_window->GetWorkspace(), nullptr);
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }

    void whyARepositoryCannotBeReadIsSaid()
    {
        m_folder->Git("init --quiet --bare");
        QVERIFY(m_window->Open(m_folder->GetPath()));
        host::WaitForStates(m_window->GetLibrary());
        QVERIFY2(m_window->statusBar()->currentMessage().contains(QStringLiteral("bare")),
                 qPrintable(m_window->statusBar()->currentMessage()));
        // It does not stay in front of the selected item.
        const QTimer* const timer = m_window->statusBar()->findChild<QTimer*>();
        QVERIFY(timer && timer->isActive());
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
        QCOMPARE(m_window->statusBar()->currentMessage(), QString());
    }

private:
    /// The column of the badges, once the states are known.
    QImage PaintBadges()
    {
        for (int round = 0; round < 2; ++round)
        {
            host::WaitForStates(m_window->GetLibrary());
            m_window->grab();
        }
        host::WaitForStates(m_window->GetLibrary());
        const int badgeLeft = 2;
        const int badgeWidth = 7;
        const int rows = 2;
        return m_window->GetBrowser()
            .grab(QRect(badgeLeft, gListTop, badgeWidth, rows * gRowHeight))
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }

    static int CountColours(const QImage& in_picture)
    {
        QSet<QRgb> colours;
        for (int y = 0; y < in_picture.height(); ++y)
            for (int x = 0; x < in_picture.width(); ++x)
                colours << in_picture.pixel(x, y);
        return int(colours.size());
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<GitFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestVersionFollower)
#include "test_versionfollower.moc"
