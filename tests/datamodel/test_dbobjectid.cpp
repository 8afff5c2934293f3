// SPDX-License-Identifier: MIT
// The identity of database objects: text in, text out.

#include "datamodel/dbobjectid.h"
#include "tests/support/testmain.h"

#include <string>

using nexa4::DbObjectId;

class TestDbObjectId : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsAUID_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("expected");
        QTest::newRow("upper case") << QByteArray("D2BA853A-8668-704A-A121-1F7DE917B664") << true;
        QTest::newRow("lower case") << QByteArray("d2ba853a-8668-704a-a121-1f7de917b664") << true;
        QTest::newRow("null identity") << QByteArray("00000000-0000-0000-0000-000000000000") << true;
        QTest::newRow("empty") << QByteArray("") << false;
        QTest::newRow("one digit less") << QByteArray("D2BA853A-8668-704A-A121-1F7DE917B66") << false;
        QTest::newRow("one digit more") << QByteArray("D2BA853A-8668-704A-A121-1F7DE917B6640") << false;
        QTest::newRow("no digit") << QByteArray("D2BA853A-8668-704A-A121-1F7DE917B66G") << false;
        QTest::newRow("hyphen at the wrong place") << QByteArray("D2BA853-A8668-704A-A121-1F7DE917B664") << false;
        QTest::newRow("blank for a hyphen") << QByteArray("D2BA853A 8668-704A-A121-1F7DE917B664") << false;
        QTest::newRow("in braces") << QByteArray("{D2BA853A-8668-704A-A121-1F7DE917B6}") << false;
    }

    void textIsAUID()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, expected);
        QCOMPARE(DbObjectId::IsUID(text.constData()), expected);
        if (!expected)
            QVERIFY(DbObjectId(text.constData()) == nexa4::UID_Null());
    }

    void nullIsNoUID()
    {
        QVERIFY(!DbObjectId::IsUID(nullptr));
        QVERIFY(DbObjectId(static_cast<const char*>(nullptr)) == nexa4::UID_Null());
    }

    void textComesBackInUpperCase()
    {
        QCOMPARE(DbObjectId("d2ba853a-8668-704a-a121-1f7de917b664").GetStr(),
                 std::string("D2BA853A-8668-704A-A121-1F7DE917B664"));
        QCOMPARE(nexa4::UID_Null().GetStr(), std::string("00000000-0000-0000-0000-000000000000"));
    }

    void bytesAreInTheOrderOfTheText()
    {
        const DbObjectId id("00010203-0405-0607-0809-0A0B0C0D0E0F");
        for (std::size_t i = 0; i < 16; ++i)
            QCOMPARE(int(id.GetBytes()[i]), int(i));
        QVERIFY(DbObjectId(id.GetBytes()) == id);
    }

    void caseDoesNotTellIdentitiesApart()
    {
        QVERIFY(DbObjectId("abcdefab-0000-0000-0000-000000000000") ==
                DbObjectId("ABCDEFAB-0000-0000-0000-000000000000"));
    }

    void orderIsThatOfTheBytes()
    {
        const DbObjectId low("00000000-0000-0000-0000-0000000000FF");
        const DbObjectId high("01000000-0000-0000-0000-000000000000");
        QVERIFY(low < high);
        QVERIFY(!(high < low));
        QVERIFY(!(low < low));
        QVERIFY(low != high);
    }
};

NODEBROWSER_TEST_MAIN(TestDbObjectId)
#include "test_dbobjectid.moc"
