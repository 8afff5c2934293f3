// SPDX-License-Identifier: MIT
// The contract of the boundary, run against the data layer in memory, which leaves nothing out.

#include "contract/boundarycontract.h"
#include "tests/contract/memoryfixture.h"
#include "tests/support/testmain.h"

#include <memory>

namespace
{

std::unique_ptr<contract::BoundaryFixture> MakeFixture()
{
    return std::unique_ptr<contract::BoundaryFixture>(new memorymodel::MemoryFixture);
}

} // namespace

class TestMemoryContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void promiseIsKept_data()
    {
        QTest::addColumn<QByteArray>("promise");
        for (const std::string& promise : contract::GetPromises())
            QTest::newRow(promise.c_str()) << QByteArray(promise.c_str());
    }

    void promiseIsKept()
    {
        QFETCH(QByteArray, promise);
        const contract::Result result = contract::CheckPromise(promise.constData(), MakeFixture);
        QVERIFY2(result.m_message.empty(), result.m_message.c_str());
        QCOMPARE(int(result.m_outcome), int(contract::eKept));
    }
};

NODEBROWSER_TEST_MAIN(TestMemoryContract)
#include "test_memorycontract.moc"
