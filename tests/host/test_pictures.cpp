// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

namespace
{

/// More than so many bytes make a page slow to read.
const qint64 gLargestFile = 100 * 1024;

/// The file names of the pictures that the pages and the read-me show.
QStringList ShownPictures()
{
    const QDir folder(QStringLiteral(SOURCE_FOLDER));
    QStringList pages = {folder.filePath(QStringLiteral("README.md"))};
    for (const QFileInfo& page : QDir(folder.filePath(QStringLiteral("docs"))).entryInfoList({QStringLiteral("*.md")}))
        pages << page.filePath();
    QSet<QString> shown;
    for (const QString& page : pages)
    {
        QFile file(page);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        static const QRegularExpression picture(QStringLiteral("!\\[[^\\]]+\\]\\((?:docs/)?([a-z]+\\.png)\\)"));
        for (auto match = picture.globalMatch(QString::fromUtf8(file.readAll())); match.hasNext();)
            shown << match.next().captured(1);
    }
    QStringList names(shown.begin(), shown.end());
    names.sort();
    return names;
}

int CountColours(const QImage& in_picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < in_picture.height(); ++y)
        for (int x = 0; x < in_picture.width(); ++x)
            colours << in_picture.pixel(x, y);
    return static_cast<int>(colours.size());
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(TakeInto(m_first)); }

    void thePagesShowWhatIsTakenAndNothingElse()
    {
        QCOMPARE(ShownPictures(), QDir(m_first.path()).entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name));
    }

    void eachPictureIsKeptInTheManual()
    {
        for (const QString& name : ShownPictures())
        {
            const QFileInfo kept(QDir(QStringLiteral(SOURCE_FOLDER "/docs")).filePath(name));
            QVERIFY2(kept.exists(), qPrintable(name));
            QVERIFY2(kept.size() < gLargestFile, qPrintable(name));
        }
    }

    void eachPictureShowsSomething()
    {
        for (const QString& name : ShownPictures())
        {
            const QImage picture(m_first.filePath(name));
            QVERIFY2(picture.width() > 100 && picture.height() > 50, qPrintable(name));
            QVERIFY2(CountColours(picture) > 20, qPrintable(name));
        }
    }

    void thePicturesAreTheSameEachTime()
    {
        QTemporaryDir second;
        QVERIFY(TakeInto(second));
        for (const QString& name : ShownPictures())
            QVERIFY2(QImage(m_first.filePath(name)) == QImage(second.filePath(name)), qPrintable(name));
    }

private:
    static bool TakeInto(const QTemporaryDir& in_folder)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(PICTURES_PROGRAM),
                      {in_folder.path(), QStringLiteral(OBSERVATORY_FOLDER), QStringLiteral("l"),
                       QStringLiteral("lens"), QStringLiteral("mix")});
        return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    QTemporaryDir m_first;
};

NODEBROWSER_TEST_MAIN(TestPictures)
#include "test_pictures.moc"
