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

/// Neither factory object exists when the first record is made.
class TestNoFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("A");
        m_plain = &m_library->AddDataSource("Plain");
        MakeRecord(*m_plain);
        m_lateFirst = &m_library->AddDataSource("Late first", memorymodel::eFactorySource);
        m_lateSecond = &m_library->AddDataSource("Late second", memorymodel::eSecondFactorySource);
    }

    void cleanupTestCase() { m_layer.reset(); }

    void nothingIsTheProducts() { QVERIFY(!MakeRecord(*m_plain).IsFactoryItem()); }

    void objectsThatComeLaterAreNotLookedUpAgain()
    {
        QVERIFY(!MakeRecord(*m_lateFirst).IsFactoryItem());
        QVERIFY(!MakeRecord(*m_lateSecond).IsFactoryItem());
    }

    void aReadOnlySourceIsSeenWithoutFactoryObjects()
    {
        m_lateFirst->SetReadOnly(true);
        const BrowserItem record = MakeRecord(*m_lateFirst);
        m_lateFirst->SetReadOnly(false);
        QVERIFY(record.HasReadOnlySource());
        QVERIFY(!record.IsFactoryItem());
        QVERIFY(!record.IsSourceControlled());
    }

    void whatIsBuiltInIsTheProductsAllTheSame()
    {
        const vireo::datamodel::ItemID id = m_library->Add(NewItem::Type("Built in").In(*m_plain).BuiltIn());
        ItemIterator item = vireo::datamodel::GetTOC(m_library->GetAccessor()).IterateItems(id.GetType());
        QVERIFY(item.GetItem().GetItemID() == id);
        RecordContext context(FindRevisionControlHelper(), false, *m_icons);
        const BrowserItem record = MakeBrowserItem(item.GetItem(), 0, context);
        QVERIFY(record.IsFactoryItem());
        QVERIFY(record.HasReadOnlySource());
    }

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
    memorymodel::DataSource* m_lateSecond = nullptr;
};

NODEBROWSER_TEST_MAIN(TestNoFactory)
#include "test_nofactory.moc"
