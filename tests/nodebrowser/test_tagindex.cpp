#include "memorymodel/datalayer.h"
#include "nodebrowser/tagindex.h"
#include "tests/support/testmain.h"

using memorymodel::NewItem;
using vireo::datamodel::gApplicationTagsKey;
using vireo::datamodel::ItemID;

namespace
{

QString Joined(const TagIndex::Tags* in_tags)
{
    if (!in_tags)
        return QString::fromLatin1("(none)");
    QStringList tags;
    for (const std::string& tag : *in_tags)
        tags << QString::fromLatin1(tag.c_str());
    return tags.join(QLatin1String("|"));
}

} // namespace

class TestTagIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_library = &m_layer.AddLibrary("Tags");
        m_index = TagIndex();
        m_index.SetLibrary(m_library->GetAccessor());
    }

    void cleanup() { m_layer.RemoveLibrary(*m_library); }

    void tagsAreSplitAtSemicolonsIntoASet_data()
    {
        QTest::addColumn<QByteArray>("joined");
        QTest::addColumn<QString>("set");
        QTest::newRow("one") << QByteArray("mix") << QString::fromLatin1("mix");
        QTest::newRow("sorted") << QByteArray("mix;colour") << QString::fromLatin1("colour|mix");
        QTest::newRow("distinct") << QByteArray("a;b;a") << QString::fromLatin1("a|b");
        QTest::newRow("blanks stay") << QByteArray(" a; b") << QString::fromLatin1(" a| b");
        QTest::newRow("commas separate nothing") << QByteArray("a,b") << QString::fromLatin1("a,b");
        QTest::newRow("case stays") << QByteArray("A;a") << QString::fromLatin1("A|a");
        QTest::newRow("none") << QByteArray() << QString::fromLatin1("(none)");
    }

    void tagsAreSplitAtSemicolonsIntoASet()
    {
        QFETCH(QByteArray, joined);
        QFETCH(QString, set);
        const ItemID item = m_library->Add(NewItem::Solver("Blend").Tags(joined.constData()));
        m_index.CollectTags(item, gApplicationTagsKey);
        QCOMPARE(Joined(m_index.FindTags(item)), set);
    }

    void emptyTagsBetweenSeparatorsReachNoItem()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend").Tags("a;;b"));
        m_index.CollectTags(item, gApplicationTagsKey);
        QCOMPARE(Joined(m_index.FindTags(item)), QString::fromLatin1("|a|b"));
        QVERIFY(!m_index.FindItems(""));
    }

    void tagsLeadBackToTheirItems()
    {
        const ItemID first = m_library->Add(NewItem::Solver("Blend").Tags("mix;colour"));
        const ItemID second = m_library->Add(NewItem::Solver("Fade").Tags("mix"));
        m_index.CollectTags(first, gApplicationTagsKey);
        m_index.CollectTags(second, gApplicationTagsKey);
        QCOMPARE(*m_index.FindItems("mix"), (TagIndex::Items{first, second}));
        QCOMPARE(*m_index.FindItems("colour"), (TagIndex::Items{first}));
        QVERIFY(!m_index.FindItems("noise"));
    }

    void anItemWithoutTagsHasNoEntryUntilOneIsAdded()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend"));
        m_index.CollectTags(item, gApplicationTagsKey);
        QVERIFY(!m_index.FindTags(item));
        m_index.AddTag(item, "");
        QVERIFY(!m_index.FindTags(item));
        m_index.AddTag(item, "Solver");
        QCOMPARE(Joined(m_index.FindTags(item)), QString::fromLatin1("Solver"));
        QCOMPARE(*m_index.FindItems("Solver"), (TagIndex::Items{item}));
    }

    void otherKeysHaveTagsOfTheirOwn()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend").Tags("mix"));
        m_index.CollectTags(item, "OtherTags");
        QVERIFY(!m_index.FindTags(item));
    }

    void removingForgetsTheItemAndTagsThatNobodyElseHas()
    {
        const ItemID first = m_library->Add(NewItem::Solver("Blend").Tags("mix;;colour"));
        const ItemID second = m_library->Add(NewItem::Solver("Fade").Tags("mix"));
        m_index.CollectTags(first, gApplicationTagsKey);
        m_index.CollectTags(second, gApplicationTagsKey);
        m_index.Remove(first);
        QVERIFY(!m_index.FindTags(first));
        QVERIFY(!m_index.FindItems("colour"));
        QCOMPARE(*m_index.FindItems("mix"), (TagIndex::Items{second}));
        m_index.Remove(first);
        QCOMPARE(Joined(m_index.FindTags(second)), QString::fromLatin1("mix"));
    }

    void clearingForgetsEverything()
    {
        const ItemID item = m_library->Add(NewItem::Solver("Blend").Tags("mix"));
        m_index.CollectTags(item, gApplicationTagsKey);
        m_index.Clear();
        QVERIFY(!m_index.FindTags(item));
        QVERIFY(!m_index.FindItems("mix"));
    }

private:
    memorymodel::DataLayer m_layer;
    memorymodel::Library* m_library = nullptr;
    TagIndex m_index;
};

NODEBROWSER_TEST_MAIN(TestTagIndex)
#include "test_tagindex.moc"
