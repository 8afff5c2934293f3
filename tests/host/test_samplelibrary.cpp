// SPDX-License-Identifier: MIT
#include "host/samplelibrary.h"

#include "datamodel/compoundmodifier.h"
#include "datamodel/helpers.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "host/itemlabel.h"
#include "host/sampletable.h"
#include "memorymodel/datalayer.h"
#include "tests/support/testmain.h"

#include <map>
#include <set>

using host::SampleItem;
using host::SampleKind;
using memorymodel::DataSource;
using memorymodel::Library;
using vireo::datamodel::ItemID;

namespace
{

bool IsListed(const SampleItem& in_item)
{
    return !in_item.m_parent && !in_item.m_general;
}

} // namespace

class TestSampleLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_library = &host::AddSampleLibrary(m_layer); }

    void cleanup() { m_layer.RemoveLibrary(*m_library); }

    void theTableHasItemsOfEveryKind()
    {
        std::map<SampleKind, int> counts;
        int listed = 0;
        for (const SampleItem& item : host::GetSampleItems())
        {
            if (!IsListed(item))
                continue;
            ++counts[item.m_kind];
            ++listed;
        }
        QVERIFY(listed >= 150);
        for (const SampleKind kind :
             {SampleKind::Compound, SampleKind::LoopCompound, SampleKind::Signature, SampleKind::Solver,
              SampleKind::Polymorphic, SampleKind::Constant, SampleKind::Type})
            QVERIFY(counts[kind] >= 10);
    }

    void noTwoListedItemsShareAName()
    {
        std::set<std::string> names;
        for (const SampleItem& item : host::GetSampleItems())
            if (IsListed(item))
                QVERIFY2(names.insert(item.m_name).second, item.m_name);
    }

    void parentsAndGeneralItemsExist()
    {
        std::set<std::string> compounds;
        std::set<std::string> polymorphic;
        for (const SampleItem& item : host::GetSampleItems())
        {
            if (item.m_kind == SampleKind::Compound || item.m_kind == SampleKind::LoopCompound)
                compounds.insert(item.m_name);
            if (item.m_kind == SampleKind::Polymorphic)
                polymorphic.insert(item.m_name);
        }
        int nested = 0;
        int variants = 0;
        for (const SampleItem& item : host::GetSampleItems())
        {
            if (item.m_parent)
                QVERIFY2(++nested && compounds.count(item.m_parent), item.m_name);
            if (item.m_general)
                QVERIFY2(++variants && polymorphic.count(item.m_general), item.m_name);
        }
        QVERIFY(nested >= 20);
        QVERIFY(variants >= 20);
    }

    void theTagsAreJoinedWithoutBlanks()
    {
        for (const SampleItem& item : host::GetSampleItems())
        {
            const QString tags = QString::fromLatin1(item.m_tags);
            for (const QString& tag : tags.split(QLatin1Char(';')))
                QVERIFY2(!tag.isEmpty() && tag == tag.trimmed(), item.m_name);
        }
    }

    void theLibraryHasTheWholeTable()
    {
        QCOMPARE(m_library->GetItemCount(), host::GetSampleItems().size());
        const std::vector<ItemID> items = m_library->GetItems();
        for (std::size_t i = 0; i < items.size(); ++i)
            QCOMPARE(m_library->GetAccessor().GetItemName(items[i], true, nullptr),
                     std::string(host::GetSampleItems()[i].m_name));
    }

    void everyKindIsMadeAsItself()
    {
        const auto label = [this](const char* in_name) {
            return QByteArray(host::GetItemLabel(*m_library, m_library->FindByName(in_name)).m_text);
        };
        QCOMPARE(label("Blend"), QByteArray("compound"));
        QCOMPARE(label("Turbulence"), QByteArray("looping compound"));
        QCOMPARE(label("Noise Function"), QByteArray("signature"));
        QCOMPARE(label("White Noise"), QByteArray("solver"));
        QCOMPARE(label("Add"), QByteArray("polymorphic solver"));
        QCOMPARE(label("Pi"), QByteArray("global constant"));
        QCOMPARE(label("Palette"), QByteArray("type"));
    }

    void theSourcesAreLocalFactoryStudioAndArchive()
    {
        QStringList sources;
        for (const auto& source : m_library->GetDataSources())
            sources << QStringLiteral("%1 %2").arg(QLatin1String(source->GetName().c_str())).arg(source->GetFlags());
        QCOMPARE(sources, QStringList() << QStringLiteral("Local 0")
                                        << QStringLiteral("Factory %1").arg(memorymodel::eFactorySource)
                                        << QStringLiteral("Studio 0")
                                        << QStringLiteral("Archive %1").arg(memorymodel::eReadOnlySource));
        for (const auto& source : m_library->GetDataSources())
            QVERIFY(CountItemsIn(*source) >= 3);
    }

    void newItemsGoToLocal()
    {
        vireo::datamodel::CompoundModifierAccessor compound;
        const ItemID item =
            compound.CreateAndSetFromNewCompound(m_library->GetAccessor(), "My Node", false, nullptr, nullptr, nullptr);
        const DataSource* const source = m_library->GetSourceOf(item);
        QVERIFY(source);
        QCOMPARE(source->GetName(), std::string("Local"));
    }

    void nothingIsDirtyAtFirst()
    {
        for (const ItemID& item : m_library->GetItems())
            QVERIFY(!m_library->GetAccessor().ItemIsDirty(item));
    }

    void nothingIsClaimedToBeUnderVersionControl()
    {
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        auto& helper = *hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper");
        for (const ItemID& item : m_library->GetItems())
        {
            QCOMPARE(m_layer.GetSourceControl().GetState(item), 0u);
            const auto object =
                helper.FindObject(nexa4::DbObjectId(vireo::datamodel::ItemIDUnlock::GetItemIDUID(item)));
            const QString toolTip = ScsUtils::GetToolTip(object, QString());
            QVERIFY2(toolTip.contains(QStringLiteral("In memory only")), qPrintable(toolTip));
        }
    }

private:
    int CountItemsIn(const DataSource& in_source) const
    {
        int count = 0;
        for (const ItemID& item : m_library->GetItems())
            count += m_library->GetSourceOf(item) == &in_source ? 1 : 0;
        return count;
    }

    memorymodel::DataLayer m_layer;
    Library* m_library = nullptr;
};

NODEBROWSER_TEST_MAIN(TestSampleLibrary)
#include "test_samplelibrary.moc"
