// SPDX-License-Identifier: MIT
// The boundary without a data layer: everything is absent, nothing crashes.

#include "datamodel/helpers.h"
#include "datamodel/provider.h"
#include "datamodel/revisioncontrol.h"
#include "datamodel/sourcecontrol.h"
#include "datamodel/system.h"
#include "tests/support/testmain.h"

#include <string>

using namespace vireo::datamodel;

class TestNoProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsInstalledAtFirst()
    {
        const Provider installed = InstallProvider(Provider());
        QVERIFY(!installed.m_system);
        QVERIFY(!installed.m_items);
        QVERIFY(!installed.m_objects);
        QVERIFY(!installed.m_sourceControl);
    }

    void everyServiceIsAbsent()
    {
        QVERIFY(!hmxGetSystem());
        QVERIFY(!hmxGetService<nexa4::IRevisionControlUIHelper>("RevisionControlUIHelper"));
        QVERIFY(!hmxGetService<IRevisionControlPropertiesMgr>("RevisionControlPropertiesMgr"));
        QVERIFY(!hmxGetService<hmx::fwk::INEXADBProxy>("NEXADBProxy"));
        QVERIFY(!GetApplicationCommandManager());
    }

    void itemsAnswerNothing()
    {
        ItemAccessor item;
        QVERIFY(!GetTOC(ItemLibraryAccessor()).IsValid());
        QVERIFY(!IsNameInNodeLibraryHierarchy(ItemLibraryAccessor(), "Blend"));
        QVERIFY(!Helpers::IsAbstractFunction(item));
        QVERIFY(!Helpers::IsValidGraphItemType(VireoType::gCompound, item));
        Helpers::SetGlobalVireoCompoundTarget(CompoundAccessor(), CompoundAccessor());
        QCOMPARE(std::string(ItemIDUnlock::GetItemIDUID(ItemID(VireoType::gCompound, 1, 1))), std::string());
        QVERIFY(!nexa4::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(ItemID())));
    }

    void handlesAreInvalid()
    {
        QVERIFY(!nexa4::NEXAHandle<nexa4::IDbObject>::AssignCast(0, 0).IsValid());
        QVERIFY(!nexa4::NEXAHandle<nexa4::ITypeAsset>().IsValid());
        QVERIFY(!nexa4::ResolveHandle(0, 0));
        QVERIFY(nexa4::UID_Resource() == nexa4::UID_Null());
        QVERIFY(!nexa4::IHelper::GetHelper(nexa4::NEXAPtr<nexa4::IDatabase>()).IsValid());
        QVERIFY(!nexa4::GetDataSourceFromResource(nexa4::NEXAPtr<nexa4::IValueAsset>()).IsValid());
        QVERIFY(!nexa4::IsSameUri(nexa4::NEXAPtr<nexa4::IDataSource>(), nexa4::NEXAHandle<nexa4::IValueAsset>()));
        QVERIFY(nexa4::GetResourceExpandedURI(nexa4::NEXAHandle<nexa4::IDbObject>()).empty());
    }

    void sourceControlShowsNothing()
    {
        QPixmap icon(20, 20);
        icon.fill(Qt::red);
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
        QCOMPARE(ScsUtils::getAssetStateIcon(icon, 2, true, true).cacheKey(), icon.cacheKey());
        QVERIFY(ScsUtils::GetToolTip(nexa4::NEXAHandle<nexa4::IDbObject>(), QString()).isEmpty());
        ScsTask* const task = new ScsTask("NodeBrowser");
        QCOMPARE(task->GetName(), std::string("NodeBrowser"));
        task->RequestObjectStates(std::list<nexa4::NEXAHandle<nexa4::IDbObject>>(3));
        task->DeleteMe();
    }

    void instanceNumbersDiffer()
    {
        const int first = nexa4::NewDatabaseInstance();
        QVERIFY(first >= 0);
        QVERIFY(nexa4::NewDatabaseInstance() != first);
    }
};

NODEBROWSER_TEST_MAIN(TestNoProvider)
#include "test_noprovider.moc"
