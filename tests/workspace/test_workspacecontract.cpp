// SPDX-License-Identifier: MIT
// The contract of the boundary, run against a folder of documents.

#include "contract/boundarycontract.h"
#include "tests/support/testmain.h"
#include "tests/workspace/workspacefixture.h"

#include <QMap>

#include <memory>

namespace
{

std::unique_ptr<contract::BoundaryFixture> MakeFixture()
{
    return std::unique_ptr<contract::BoundaryFixture>(new WorkspaceFixture);
}

} // namespace

class TestWorkspaceContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void promiseIsKept_data()
    {
        QTest::addColumn<QByteArray>("promise");
        QTest::addColumn<QByteArray>("notChecked");
        // What documents cannot say of an item.
        const QMap<QByteArray, QByteArray> gaps = {
            {"partsOfOtherItemsHaveValues", "Not checked: items of type GlobalConstant that specialize another."},
            {"helpersTellGraphItems", "Not checked: items of type Compound that no graph takes."},
            {"itemWithoutAUIDHasNoObject", "Not checked: items of type Compound without a database object."}};
        for (const std::string& promise : contract::GetPromises())
            QTest::newRow(promise.c_str()) << QByteArray(promise.c_str()) << gaps.value(promise.c_str());
    }

    void promiseIsKept()
    {
        QFETCH(QByteArray, promise);
        const contract::Result result = contract::CheckPromise(promise.constData(), MakeFixture);
        QFETCH(QByteArray, notChecked);
        QCOMPARE(QByteArray(result.m_message.c_str()), notChecked);
        QVERIFY(result.m_outcome != contract::eBroken);
    }
};

NODEBROWSER_TEST_MAIN(TestWorkspaceContract)
#include "test_workspacecontract.moc"
