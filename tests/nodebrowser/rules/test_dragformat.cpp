// SPDX-License-Identifier: MIT
#include "nodebrowser/dragformat.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace nodebrowser;
using vireo::datamodel::ItemID;

namespace
{

/// Bytes written as two hexadecimal digits each; blanks between them are for the eye.
QByteArray Bytes(const char* in_hex)
{
    return QByteArray::fromHex(QByteArray(in_hex));
}

} // namespace

/// The bytes are spelled out: they cross from one program to another, which may be built with another toolkit version.
class TestDragFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFormatHasItsName() { QCOMPARE(GetDragFormat(), QString::fromLatin1("vireo/toc.key")); }

    void anIdentityIsWrittenAsTheseBytes_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("payload");
        // The number of bytes, then the type, a colon, sixteen digits, a hyphen, sixteen digits.
        const QByteArray digits =
            Bytes("003A" // the colon
                  "0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0031"
                  "002D" // the hyphen
                  "0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0030 0031 0030");
        QTest::newRow("one letter") << QByteArray("S") << Bytes("00000046 0053") + digits;
        QTest::newRow("two letters") << QByteArray("So") << Bytes("00000048 0053 006F") + digits;
        QTest::newRow("beyond ASCII") << QByteArray("\xC4\xFF") << Bytes("00000048 00C4 00FF") + digits;
        // More than 255 bytes: the number takes two of its own four.
        QByteArray longPayload = Bytes("000001D4");
        for (int i = 0; i < 200; ++i)
            longPayload += Bytes("0054");
        QTest::newRow("long") << QByteArray(200, 'T') << longPayload + digits;
    }

    void anIdentityIsWrittenAsTheseBytes()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, payload);
        const ItemID item(type.constData(), 1, 16);
        QCOMPARE(EncodeDrag(item).toHex(), payload.toHex());
        QVERIFY(DecodeDrag(payload) == item.Serialize());
    }

    void theInvalidIdentityIsAnEmptyText() { QCOMPARE(EncodeDrag(ItemID()).toHex(), QByteArray("00000000")); }

    void aPayloadIsReadAsThisText_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("a text") << Bytes("00000004 0041 0062") << QByteArray("Ab");
        QTest::newRow("beyond ASCII") << Bytes("00000004 00C4 00FF") << QByteArray("\xC4\xFF");
        QTest::newRow("beyond Latin-1") << Bytes("00000006 0041 20AC 0042") << QByteArray("A?B");
        QTest::newRow("a null character") << Bytes("00000006 0041 0000 0042") << QByteArray("A\0B", 3);
        QTest::newRow("a text of no length") << Bytes("00000000") << QByteArray();
        QTest::newRow("the null text") << Bytes("FFFFFFFF") << QByteArray();
        // What is no whole text and nothing else is no text.
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("half a count") << Bytes("0000") << QByteArray();
        QTest::newRow("only the count") << Bytes("00000004") << QByteArray();
        QTest::newRow("cut short by a byte") << Bytes("00000004 0041 00") << QByteArray();
        QTest::newRow("cut short by a character") << Bytes("00000004 0041") << QByteArray();
        QTest::newRow("a byte behind it") << Bytes("00000004 0041 0062 00") << QByteArray();
        QTest::newRow("a second text behind it") << Bytes("00000002 0041 00000002 0042") << QByteArray();
        QTest::newRow("a byte behind the null text") << Bytes("FFFFFFFF 00") << QByteArray();
        QTest::newRow("a byte behind no length") << Bytes("00000000 00") << QByteArray();
        QTest::newRow("an odd count") << Bytes("00000003 0041 00") << QByteArray();
        QTest::newRow("a count of two gigabytes") << Bytes("7FFFFFFE 0041") << QByteArray();
        QTest::newRow("a count of four gigabytes") << Bytes("FFFFFFFC 0041") << QByteArray();
        QTest::newRow("the other byte order") << Bytes("04000000 4100 6200") << QByteArray();
    }

    void aPayloadIsReadAsThisText()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QByteArray, text);
        const std::string read = DecodeDrag(payload);
        QCOMPARE(QByteArray(read.data(), static_cast<int>(read.size())), text);
    }

    void everyCutOfAPayloadIsRefused()
    {
        const QByteArray payload = EncodeDrag(ItemID(vireo::datamodel::VireoType::gSolver, 2, 3));
        QVERIFY(!DecodeDrag(payload).empty());
        for (int length = 0; length < payload.size(); ++length)
            QVERIFY(DecodeDrag(payload.left(length)).empty());
    }
};

NODEBROWSER_TEST_MAIN(TestDragFormat)
#include "test_dragformat.moc"
