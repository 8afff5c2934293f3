// SPDX-License-Identifier: MIT
#include "host/mainwindow.h"
#include "memorymodel/datalayer.h"
#include "tests/host/windowfixture.h"
#include "tests/support/itemwriter.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>

using host::MainWindow;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

/// A person who presses a button of each message that comes.
class Presser : public ModalUser
{
public:
    void Expect(QMessageBox::StandardButton in_button)
    {
        WhenWindowOpens([this, in_button](QWidget& in_box) {
            const QMessageBox* const box = qobject_cast<QMessageBox*>(&in_box);
            QVERIFY(box);
            m_texts << box->text();
            m_details << box->informativeText();
            QTest::mouseClick(box->button(in_button), Qt::LeftButton);
        });
    }

    QStringList m_texts;
    QStringList m_details;
};

} // namespace

class TestLeaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_other = m_settings.GetFolder().filePath(QStringLiteral("other.mtlx"));
        QFile file(m_other);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(
                    "<?xml version=\"1.0\"?>\n<materialx version=\"1.38\"><typedef name=\"warmth\"/></materialx>\n") >
                0);
    }

    void init()
    {
        m_saved.clear();
        Library& library = m_layer.AddLibrary("Nodes");
        m_blend = library.Add(NewItem::Compound("Blend"));
        m_mix = library.Add(NewItem::Compound("<b>Mix"));
        SetWriter(library, [this](const ItemID& in_item) {
            m_saved.push_back(in_item);
            return std::string();
        });
        m_window.reset(new MainWindow(m_layer, library));
        ShowMainWindow(*m_window);
    }

    void cleanup() { RemoveMainWindow(m_window, m_layer); }

    void nothingIsAskedWithoutChanges_data() { AddWays(); }

    void nothingIsAskedWithoutChanges()
    {
        Presser person;
        QVERIFY(Leave());
        QVERIFY(person.IsDone());
        QVERIFY(m_saved.empty());
    }

    void cancelKeepsEverything_data() { AddWays(); }

    void cancelKeepsEverything()
    {
        Change();
        Presser person;
        person.Expect(QMessageBox::Cancel);
        QVERIFY(!Leave());
        QVERIFY(person.IsDone());
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->GetLibrary().GetAccessor().ItemIsDirty(m_blend));
        QVERIFY(m_layer.GetCommandManager().GetStack().canUndo());
        QVERIFY(m_saved.empty());
    }

    void discardLeavesWithoutSaving_data() { AddWays(); }

    void discardLeavesWithoutSaving()
    {
        Change();
        Presser person;
        person.Expect(QMessageBox::Discard);
        QVERIFY(Leave());
        QVERIFY(person.IsDone());
        QVERIFY(m_saved.empty());
    }

    void saveSavesOnceAndLeaves_data() { AddWays(); }

    void saveSavesOnceAndLeaves()
    {
        Change();
        Presser person;
        person.Expect(QMessageBox::Save);
        QVERIFY(Leave());
        QVERIFY(person.IsDone());
        QCOMPARE(m_saved.size(), std::size_t(1));
        QVERIFY(m_saved.front() == m_blend);
    }

    void whatCannotBeSavedIsNotLeft_data() { AddWays(); }

    void whatCannotBeSavedIsNotLeft()
    {
        Change();
        SetWriter(m_window->GetLibrary(), [](const ItemID&) { return std::string("The disk is full."); });
        Presser person;
        person.Expect(QMessageBox::Save);
        person.Expect(QMessageBox::Ok);
        QVERIFY(!Leave());
        QVERIFY(person.IsDone());
        QCOMPARE(person.m_texts.last(), QStringLiteral("The library could not be saved."));
        QCOMPARE(person.m_details.last(), QStringLiteral("The disk is full."));
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->GetLibrary().GetAccessor().ItemIsDirty(m_blend));
    }

    void theChangesAreNamed()
    {
        Change();
        Presser person;
        person.Expect(QMessageBox::Cancel);
        QVERIFY(!m_window->close());
        person.Expect(QMessageBox::Cancel);
        m_window->GetLibrary().Rename(m_mix, "<i>Mix", nullptr);
        QVERIFY(!m_window->close());
        QCOMPARE(person.m_texts,
                 QStringList() << QStringLiteral("An item of the library Nodes has changes that are not saved.")
                               << QStringLiteral("2 items of the library Nodes have changes that are not saved."));
        QCOMPARE(person.m_details, QStringList() << QStringLiteral("Blend 2") << QStringLiteral("<i>Mix, Blend 2"));
    }

    void ofManyChangesFiveAreNamed()
    {
        for (const char* const name : {"C", "B", "A", "D", "G", "E", "F"})
            m_window->GetLibrary().SetTags(m_window->GetLibrary().Add(NewItem::Compound(name)), "changed");
        Presser person;
        person.Expect(QMessageBox::Cancel);
        QVERIFY(!m_window->close());
        QCOMPARE(person.m_details, QStringList() << QStringLiteral("A, B, C, D, E, and 2 more"));
    }

    void keysAnswer_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("left");
        QTest::newRow("Return saves") << int(Qt::Key_Return) << true;
        QTest::newRow("Escape cancels") << int(Qt::Key_Escape) << false;
    }

    void keysAnswer()
    {
        QFETCH(int, key);
        QFETCH(bool, left);
        Change();
        ModalUser person;
        person.WhenWindowOpens([key](QWidget& in_box) { Press(in_box, static_cast<Qt::Key>(key)); });
        QCOMPARE(m_window->close(), left);
        QVERIFY(person.IsDone());
        QCOMPARE(m_saved.size(), std::size_t(left ? 1 : 0));
    }

private:
    static void AddWays()
    {
        QTest::addColumn<QString>("way");
        for (const char* const way : {"close", "quit", "open"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void Change() { m_window->GetLibrary().Rename(m_blend, "Blend 2", &m_layer.GetCommandManager()); }

    /// \return whether the library was left
    bool Leave()
    {
        QFETCH(QString, way);
        if (way == QStringLiteral("close"))
            return m_window->close();
        if (way == QStringLiteral("open"))
            return m_window->Open(m_other);
        QMenu* const menu = OpenMenu(*m_window, QStringLiteral("&File"));
        return menu && ClickEntry(*menu, QStringLiteral("&Quit")) && !m_window->isVisible();
    }

    OwnSettings m_settings;
    memorymodel::DataLayer m_layer;
    std::unique_ptr<MainWindow> m_window;
    std::vector<ItemID> m_saved;
    ItemID m_blend;
    ItemID m_mix;
    QString m_other;
};

NODEBROWSER_TEST_MAIN(TestLeaving)
#include "test_leaving.moc"
