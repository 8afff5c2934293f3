// SPDX-License-Identifier: MIT
#include "memorymodel/datalayer.h"
#include "nodebrowser/browseritem.h"
#include "nodebrowser/dbobject.h"
#include "nodebrowser/stateicon.h"
#include "tests/nodebrowser/support/records.h"
#include "tests/support/testmain.h"

#include <memory>

using namespace nodebrowser;
using memorymodel::NewItem;
using vireo::datamodel::ItemIterator;

/// Only the second factory object exists when the first record is made.
class TestSecondFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_plain = &m_library->AddDataSource("Plain");
        m_second = &m_library->AddDataSource("Second", memorymodel::eSecondFactorySource);
        MakeRecord(*m_plain);
        m_lateFirst = &m_library->AddDataSource("Late first", memorymodel::eFactorySource);
    }

    void cleanupTestCase() { m_layer.reset(); }

    void theSecondObjectIsTestedThoughTheFirstOneIsMissing()
    {
        const BrowserItem record = MakeRecord(*m_second);
        QVERIFY(record.IsFactoryItem());
        QVERIFY(!record.HasReadOnlySource());
        QVERIFY(record.IsSourceControlled());
        QCOMPARE(record.GetStateIcon().size(), QSize(27, 20));
    }

    void aReadOnlySecondSourceIsSeenToo()
    {
        m_second->SetReadOnly(true);
        const BrowserItem record = MakeRecord(*m_second);
        m_second->SetReadOnly(false);
        QVERIFY(record.IsFactoryItem());
        QVERIFY(record.HasReadOnlySource());
        QVERIFY(!record.IsSourceControlled());
    }

    void otherSourcesAreNotTheProducts() { QVERIFY(!MakeRecord(*m_plain).IsFactoryItem()); }

    void anObjectThatComesLaterIsNotLookedUpAgain() { QVERIFY(!MakeRecord(*m_lateFirst).IsFactoryItem()); }

private:
    BrowserItem MakeRecord(memorymodel::DataSource& in_source)
    {
        const vireo::datamodel::ItemID id = m_library->Add(NewItem::Compound("A").In(in_source));
        ItemIterator item = vireo::datamodel::GetTOC(m_library->GetAccessor()).IterateItems(id.GetType());
        while (item.GetItem().GetItemID() != id)
            item.Next();
        RecordContext context(FindRevisionControlHelper(), false, *m_icons);
        return MakeBrowserItem(item.GetItem(), 0, context);
    }

    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
    std::unique_ptr<StateIcons> m_icons{new StateIcons};
    memorymodel::DataSource* m_plain = nullptr;
    memorymodel::DataSource* m_lateFirst = nullptr;
    memorymodel::DataSource* m_second = nullptr;
};

NODEBROWSER_TEST_MAIN(TestSecondFactory)
#include "test_secondfactory.moc"
