// SPDX-License-Identifier: MIT
// What is told about an item: in the pane, in tool tips, in the status bar, and on its box.

#include "host/itemhelp.h"

#include "datamodel/helpers.h"
#include "host/breadcrumb.h"
#include "host/fileswindow.h"
#include "host/graphbox.h"
#include "host/graphcanvas.h"
#include "host/samplelibrary.h"
#include "tests/host/windowfixture.h"
#include "tests/materialx/documents.h"
#include "tests/support/testmain.h"

#include <QHelpEvent>
#include <QLabel>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolTip>

using host::GetItemHelp;
using host::ItemHelp;
using memorymodel::Library;
using memorymodel::NewItem;
using vireo::datamodel::ItemID;

namespace
{

const char gDocument[] = u8"<materialx version=\"1.39\">\n"
                         u8"  <nodedef name=\"ND_haze\" node=\"haze\" nodegroup=\"air\" uiname=\"H\u0101ze\"\n"
                         u8"           doc=\"Softens what is &lt;far&gt;\">\n"
                         u8"    <input name=\"depth\" type=\"float\" value=\"10\"/>\n"
                         u8"    <input name=\"tint\" type=\"color3\" value=\"1, 1, 1\"/>\n"
                         u8"    <output name=\"out\" type=\"color3\"/>\n"
                         u8"  </nodedef>\n"
                         u8"  <nodegraph name=\"NG_haze\" nodedef=\"ND_haze\"/>\n"
                         u8"</materialx>\n";

QString Plain(const QString& in_html)
{
    QTextDocument document;
    document.setHtml(in_html);
    return document.toPlainText();
}

} // namespace

class TestItemHelp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new DocumentFolder);
        m_folder->Write(QStringLiteral("far/weather.mtlx"), gDocument);
        m_window.reset(new host::MainWindow(m_layer, host::AddSampleLibrary(m_layer)));
        ShowMainWindow(*m_window);
    }

    void cleanup()
    {
        HideToolTip();
        RemoveMainWindow(m_window, m_layer);
    }

    void documentsAreQuoted()
    {
        QVERIFY(m_window->Open(m_folder->GetPath()));
        const ItemHelp help = GetItemHelp(m_window->GetLibrary(), m_window->GetLibrary().FindByName("H?ze"));
        QCOMPARE(help.m_name, QString::fromUtf8(u8"H\u0101ze"));
        QCOMPARE(help.m_kind, QStringLiteral("compound"));
        QCOMPARE(help.m_source, QStringLiteral("far"));
        QCOMPARE(help.m_tags, QStringList() << QStringLiteral("air") << QStringLiteral("far"));
        QCOMPARE(help.m_doc, QStringLiteral("Softens what is <far>"));
        QCOMPARE(help.m_group, QStringLiteral("air"));
        QCOMPARE(help.m_document, QStringLiteral("far/weather.mtlx"));
        QCOMPARE(help.m_line, 2);
        const QString text = Plain(GetLongHelp(help));
        for (const char* const part : {u8"H\u0101ze", "Softens what is <far>", "Kind: compound", "Group: air",
                                       "Tags: air, far", "Document: far/weather.mtlx, line 2", "depth", "1, 1, 1"})
            QVERIFY2(text.contains(QString::fromUtf8(part)), part);
    }

    void theSampleSaysWhatItHas()
    {
        const Library& sample = m_window->GetLibrary();
        const QString text = Plain(GetLongHelp(GetItemHelp(sample, sample.FindByName("Blend"))));
        QVERIFY(text.contains(QStringLiteral("Tags: colour, mix, layer, opacity")));
        QVERIFY(text.contains(QStringLiteral("Source: Studio")));
        QVERIFY(!text.contains(QStringLiteral("Inputs")));
        QVERIFY(!text.contains(QStringLiteral("Document")));
    }

    void anUnknownItemHasNoHelp()
    {
        const ItemHelp help = GetItemHelp(m_window->GetLibrary(), ItemID());
        QCOMPARE(GetHeadline(help), QString());
        QCOMPARE(GetShortHelp(help), QString());
        QCOMPARE(Plain(GetLongHelp(help)), QStringLiteral("Select an item to read about it."));
    }

    void manyPortsAreCountedInTheShortForm()
    {
        ItemHelp help;
        help.m_name = QStringLiteral("Many");
        for (int i = 0; i < 9; ++i)
            help.m_inputs.push_back({QStringLiteral("in%1").arg(i), QString(), QString()});
        const QString text = Plain(GetShortHelp(help));
        QVERIFY2(text.contains(QStringLiteral("in5, 3 more")), qPrintable(text));
        QVERIFY(!text.contains(QStringLiteral("in6")));
    }

    void thePaneFollowsRowsAndBoxes()
    {
        QVERIFY(Pane().contains(QStringLiteral("Select an item")));
        Select("tangent");
        QVERIFY(Pane().startsWith(QStringLiteral("Tangent")));
        host::GraphCanvas& canvas = *m_window->findChild<host::GraphCanvas*>();
        canvas.PlaceInSight(m_window->GetLibrary().FindByName("Blend"));
        QVERIFY(Pane().startsWith(QStringLiteral("Blend")));
        m_window->GetLibrary().Rename(m_window->GetLibrary().FindByName("Blend"), "Mix Layers");
        QVERIFY(Pane().startsWith(QStringLiteral("Mix Layers")));
    }

    void namesThatLatin1LacksAreShownInFull()
    {
        QVERIFY(m_window->Open(m_folder->GetPath()));
        Select("h");
        const QString name = QString::fromUtf8(u8"H\u0101ze");
        QCOMPARE(Status(), name + QString::fromUtf8(u8" \u2013 compound, far"));
        Hover(RowCentre(0));
        QVERIFY2(QToolTip::text().contains(name), qPrintable(QToolTip::text()));
        QVERIFY(Pane().startsWith(name));
        host::GraphCanvas& canvas = *m_window->findChild<host::GraphCanvas*>();
        canvas.PlaceInSight(m_window->GetBrowser().GetSelection());
        QCOMPARE(canvas.GetBoxes().first()->GetName(), name);
        QTest::mouseDClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
        QCOMPARE(m_window->windowTitle(), name + QString::fromUtf8(u8" \u2013 nodebrowser"));
        QCOMPARE(m_window->findChild<host::Breadcrumb*>()->GetNames().last(), name);
        host::FilesWindow::Open(m_window->GetLibrary(), m_window->GetBrowser().GetSelection(), *m_window);
        QCOMPARE(m_window->findChild<host::FilesWindow*>()->windowTitle(), QStringLiteral("Files of ") + name);
    }

    void aCompoundNamesItsSignature()
    {
        Library& sample = m_window->GetLibrary();
        const char* const uid = vireo::datamodel::ItemIDUnlock::GetItemIDUID(sample.FindByName("Predicate"));
        const ItemID made = sample.Add(NewItem::Compound("Made").BaseClass(uid));
        m_window->findChild<host::GraphCanvas*>()->PlaceInSight(made);
        QVERIFY2(Pane().contains(QStringLiteral("Signature: Predicate")), qPrintable(Pane()));
    }

    void aBoxShowsInputsAndOutputs()
    {
        QVERIFY(m_window->Open(m_folder->GetPath()));
        host::GraphCanvas& canvas = *m_window->findChild<host::GraphCanvas*>();
        canvas.PlaceInSight(m_window->GetLibrary().FindByName("H?ze"));
        const host::GraphBox& box = *canvas.GetBoxes().first();
        QCOMPARE(box.GetDrawnInputs(), QStringList() << QStringLiteral("depth float") << QStringLiteral("tint color3"));
        QCOMPARE(box.GetDrawnOutputs(), QStringList(QStringLiteral("out color3")));
        QVERIFY(box.boundingRect().height() >= 36 + 2 * 20);

        m_window->findChild<QTextBrowser*>()->setFocus(); // the canvas paints no frame
        const QImage picture = canvas.viewport()->grab().toImage();
        const double dot = 4.5;
        const QRectF place = box.sceneBoundingRect().adjusted(dot, 0.0, -dot, 0.0);
        const double first = place.top() + 36 + 10; // the middle of the first port's row
        const auto pixel = [&](double in_x, double in_y) {
            return picture.pixelColor(canvas.mapFromScene(QPointF(in_x, in_y)));
        };
        // "depth" and "tint" are of two types, "tint" and "out" of one.
        const QColor depth = pixel(place.left(), first);
        const QColor tint = pixel(place.left(), first + 20);
        QVERIFY(depth.hslSaturation() > 100 && tint.hslSaturation() > 100);
        QVERIFY(depth != tint);
        QCOMPARE(pixel(place.right(), first), tint);
        QVERIFY(pixel(place.right(), first + 20).hslSaturation() < 50);
        int written = 0;
        for (int x = 14; x < 60; ++x)
            for (int y = -6; y <= 6; ++y)
                written += pixel(place.left() + x, first + y) != pixel(place.left() + 10, first - 8) ? 1 : 0;
        QVERIFY2(written > 20, qPrintable(QString::number(written)));
    }

    void rowsWithoutSourceControlHaveToolTips()
    {
        Select("tangent");
        Hover(RowCentre(0));
        QVERIFY2(QToolTip::text().contains(QStringLiteral("<b>Tangent</b>")), qPrintable(QToolTip::text()));
        Select("blend");
        Hover(RowCentre(0));
        QVERIFY2(QToolTip::text().startsWith(QStringLiteral("<b>Blend</b>")), qPrintable(QToolTip::text()));
        m_layer.GetSourceControl().SetVersionControlActive(true);
        Hover(RowCentre(0));
        m_layer.GetSourceControl().SetVersionControlActive(false);
        QVERIFY2(!QToolTip::text().contains(QStringLiteral("<b>")), qPrintable(QToolTip::text()));
        QVERIFY(QToolTip::text().startsWith(QStringLiteral("Blend\n")));
    }

private:
    void Select(const char* in_search)
    {
        m_window->GetBrowser().Search(QLatin1String(in_search));
        m_window->grab();
        QTest::mouseClick(&m_window->GetBrowser(), Qt::LeftButton, Qt::NoModifier, RowCentre(0));
    }

    void Hover(const QPoint& in_position)
    {
        host::LibraryBrowser& browser = m_window->GetBrowser();
        QHelpEvent help(QEvent::ToolTip, in_position, browser.mapToGlobal(in_position));
        QApplication::sendEvent(&browser, &help);
    }

    QString Pane() { return m_window->findChild<QTextBrowser*>()->toPlainText(); }
    QString Status() { return m_window->statusBar()->findChildren<QLabel*>().first()->text(); }

    OwnSettings m_settings;
    // The browser looks the factory objects up once in a process, so one layer serves all tests.
    memorymodel::DataLayer m_layer;
    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<host::MainWindow> m_window;
};

NODEBROWSER_TEST_MAIN(TestItemHelp)
#include "test_itemhelp.moc"
