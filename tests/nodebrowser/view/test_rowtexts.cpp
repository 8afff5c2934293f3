// SPDX-License-Identifier: MIT
#include "nodebrowser/rowtexts.h"
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/nodebrowser/support/fakelayer.h"
#include "tests/support/testcompat.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QPainter>

using namespace nodebrowser;

namespace
{

const QRect gRect(35, gRowHeight, 200, 25);

/// Draws one text into a fresh picture.
class Canvas
{
public:
    QImage Draw(RowTexts& out_texts, const QString& in_text, const QRect& in_rect = gRect)
    {
        return Paint([&](QPainter& in_painter) {
            out_texts.BeginFrame(in_painter);
            out_texts.Draw(in_painter, in_rect, in_text);
        });
    }

    QImage DrawPlainly(const QString& in_text, const QRect& in_rect = gRect)
    {
        return Paint(
            [&](QPainter& in_painter) { in_painter.drawText(in_rect, Qt::AlignLeft | Qt::AlignVCenter, in_text); });
    }

    QFont m_font;
    Qt::LayoutDirection m_direction = Qt::LeftToRight;
    int m_dotsPerMeter = 0;

private:
    template <class Step> QImage Paint(Step in_step) const
    {
        QImage picture(300, 80, QImage::Format_RGB32);
        if (m_dotsPerMeter)
        {
            picture.setDotsPerMeterX(m_dotsPerMeter);
            picture.setDotsPerMeterY(m_dotsPerMeter);
        }
        picture.fill(QColor(Qt::white).rgb());
        QPainter painter(&picture);
        painter.setFont(m_font);
        painter.setLayoutDirection(m_direction);
        in_step(painter);
        return picture;
    }
};

/// A frame of names "Blend 1", "Blend 2" and so on, one below the other, as a list draws them.
QImage DrawFrame(RowTexts& out_texts, int in_first, int in_end)
{
    QImage picture(300, gRowHeight * (in_end - in_first), QImage::Format_RGB32);
    picture.fill(QColor(Qt::white).rgb());
    QPainter painter(&picture);
    out_texts.BeginFrame(painter);
    for (int row = in_first; row < in_end; ++row)
        out_texts.Draw(painter, QRect(10, gRowHeight * (row - in_first), 250, 25),
                       QString::fromLatin1("Blend %1").arg(row));
    return picture;
}

} // namespace

class TestRowTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsLookAsTheToolkitDrawsThem_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a name") << QString::fromLatin1("Blend Colour 2D");
        QTest::newRow("a dirty name") << QString::fromLatin1("Blend*");
        QTest::newRow("letters that would join or kern") << QString::fromLatin1("fi AV To. ffl");
        QTest::newRow("Latin-1 letters") << QString::fromLatin1("\xC4rger \xE9t\xE9 \xDF");
        QTest::newRow("an ampersand") << QString::fromLatin1("A & B &C");
        QTest::newRow("blanks at both ends") << QString::fromLatin1("  a  ");
        QTest::newRow("only blanks") << QString::fromLatin1("   ");
        QTest::newRow("nothing") << QString();
        QTest::newRow("a tab") << QString::fromLatin1("a\tb");
        QTest::newRow("two lines") << QString::fromLatin1("a\nb");
        QTest::newRow("control characters") << QString::fromLatin1("a\x01\x7F\x85z");
        QTest::newRow("a null character") << QString::fromLatin1("a\0b", 3);
        QTest::newRow("a no-break space and a soft hyphen") << QString::fromLatin1("a\xA0z\xADz");
        QTest::newRow("too long for the row") << QString(60, QLatin1Char('m'));
        QTest::newRow("far too long") << QString(4000, QLatin1Char('m'));
        QTest::newRow("many narrow letters") << QString(201, QLatin1Char('i'));
    }

    void textsLookAsTheToolkitDrawsThem()
    {
        QFETCH(QString, text);
        RowTexts texts;
        Canvas canvas;
        const Qt::LayoutDirection directions[] = {Qt::LeftToRight, Qt::LayoutDirectionAuto, Qt::RightToLeft};
        for (const Qt::LayoutDirection direction : directions)
        {
            canvas.m_direction = direction;
            for (int frame = 0; frame < 2; ++frame)
                QCOMPARE(canvas.Draw(texts, text), canvas.DrawPlainly(text));
        }
    }

    void everyHeightAndFontGivesTheSamePixels()
    {
        RowTexts texts;
        Canvas canvas;
        const QString text = QString::fromLatin1("Blend jgy 3D");
        for (int size = 6; size < 24; ++size)
            for (int height = 8; height < 40; height += 3)
            {
                canvas.m_font.setPointSize(size);
                canvas.m_font.setItalic(size % 2 == 1);
                const QRect rect(10, 20, 250, height);
                QCOMPARE(canvas.Draw(texts, text, rect), canvas.DrawPlainly(text, rect));
            }
    }

    void moreTextsThanAreKeptAreDrawnToo()
    {
        RowTexts texts;
        Canvas canvas;
        for (int round = 0; round < 2; ++round)
            for (int i = 0; i < 600; ++i)
            {
                const QString text = QString::fromLatin1("Blend %1").arg(i);
                QCOMPARE(canvas.Draw(texts, text), canvas.DrawPlainly(text));
            }
    }

    void aSecondFrameShapesNothing()
    {
        RowTexts texts;
        QCOMPARE(texts.GetShapings(), 0u);
        const QImage first = DrawFrame(texts, 0, 20);
        QCOMPARE(texts.GetShapings(), 20u);
        for (int frame = 0; frame < 5; ++frame)
            QCOMPARE(DrawFrame(texts, 0, 20), first);
        QCOMPARE(texts.GetShapings(), 20u);
    }

    void aScrolledFrameShapesTheNewNamesAlone()
    {
        RowTexts texts;
        DrawFrame(texts, 0, 20);
        for (int first = 3; first <= 300; first += 3)
        {
            const unsigned before = texts.GetShapings();
            DrawFrame(texts, first, first + 20);
            QCOMPARE(texts.GetShapings(), before + 3);
        }
    }

    void theSameNameInManyRowsIsShapedOnce()
    {
        RowTexts texts;
        QImage picture(300, 80, QImage::Format_RGB32);
        picture.fill(QColor(Qt::white).rgb());
        QPainter painter(&picture);
        texts.BeginFrame(painter);
        for (int row = 0; row < 3; ++row)
            texts.Draw(painter, QRect(10, gRowHeight * row, 200, 25), QString::fromLatin1("Blend"));
        QCOMPARE(texts.GetShapings(), 1u);
    }

    void textsThatAreDrawnNoMoreAreForgotten()
    {
        RowTexts texts;
        DrawFrame(texts, 0, 20);
        for (int first = 20; first < 620; first += 20)
            DrawFrame(texts, first, first + 20);
        const unsigned before = texts.GetShapings();
        DrawFrame(texts, 0, 20);
        QCOMPARE(texts.GetShapings(), before + 20);
    }

    void aChangeOfTheSystemsFontsShapesAllAgain()
    {
        RowTexts texts;
        const QImage before = DrawFrame(texts, 0, 20);
        if (!testcompat::AnnounceFontChange())
            TESTCOMPAT_SKIP("This toolkit does not announce that the fonts changed.");
        QCOMPARE(DrawFrame(texts, 0, 20), before);
        QCOMPARE(texts.GetShapings(), 40u);
        DrawFrame(texts, 0, 20);
        QCOMPARE(texts.GetShapings(), 40u);
    }

    void aChangeOfTheSystemsFontsRepaintsTheBrowser()
    {
        FakeLayer layer;
        layer.AddNodes(5);
        ProbedBrowser browser;
        ShowLibrary(browser, layer.GetAccessor());
        QCOMPARE(CountPaints(browser, [] {}), 0);
        layer.Forget();
        bool announced = false;
        const int paints = CountPaints(browser, [&announced] { announced = testcompat::AnnounceFontChange(); });
        if (!announced)
            TESTCOMPAT_SKIP("This toolkit does not announce that the fonts changed.");
        QVERIFY(paints > 0);
        // Each row is drawn once more, by its name, and nothing is built.
        QCOMPARE(layer.Count("name"), 5 * paints);
        QCOMPARE(layer.CountRebuilds(), 0);
    }

    void anotherFontIsShapedAnew()
    {
        RowTexts texts;
        Canvas canvas;
        const QString text = QString::fromLatin1("Blend");
        canvas.Draw(texts, text);
        canvas.m_font.setBold(true);
        canvas.Draw(texts, text);
        QCOMPARE(texts.GetShapings(), 2u);
        canvas.Draw(texts, text);
        QCOMPARE(texts.GetShapings(), 2u);
    }

    void anotherFontIsFollowed()
    {
        RowTexts texts;
        Canvas canvas;
        const QString text = QString::fromLatin1("Blend");
        const QImage before = canvas.Draw(texts, text);
        canvas.m_font.setBold(true);
        const QImage after = canvas.Draw(texts, text);
        QVERIFY(before != after);
        QCOMPARE(after, canvas.DrawPlainly(text));
    }

    void anotherResolutionIsFollowed()
    {
        RowTexts texts;
        Canvas canvas;
        const QString text = QString::fromLatin1("Blend");
        const QImage before = canvas.Draw(texts, text);
        canvas.m_dotsPerMeter = 7560;
        const QImage after = canvas.Draw(texts, text);
        QCOMPARE(after, canvas.DrawPlainly(text));
        canvas.m_dotsPerMeter = 0;
        QCOMPARE(canvas.Draw(texts, text), before);
    }

    void rightToLeftLayoutsAreFollowed()
    {
        RowTexts texts;
        Canvas canvas;
        const QString text = QString::fromLatin1("Blend");
        const QImage left = canvas.Draw(texts, text);
        canvas.m_direction = Qt::RightToLeft;
        const QImage right = canvas.Draw(texts, text);
        QVERIFY(left != right);
        QCOMPARE(right, canvas.DrawPlainly(text));
    }

    void theSameTextMayStandInManyRows()
    {
        RowTexts texts;
        QImage picture(300, 80, QImage::Format_RGB32);
        QImage expected = picture;
        picture.fill(QColor(Qt::white).rgb());
        expected.fill(QColor(Qt::white).rgb());
        const QString text = QString::fromLatin1("Blend");
        {
            QPainter painter(&picture);
            QPainter plain(&expected);
            for (int frame = 0; frame < 2; ++frame)
            {
                texts.BeginFrame(painter);
                for (int row = 0; row < 3; ++row)
                {
                    const QRect rect(10, gRowHeight * row, 200, 25);
                    texts.Draw(painter, rect, text);
                    plain.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, text);
                }
            }
        }
        QCOMPARE(picture, expected);
    }
};

NODEBROWSER_TEST_MAIN(TestRowTexts)
#include "test_rowtexts.moc"
