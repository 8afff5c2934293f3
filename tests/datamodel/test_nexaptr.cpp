// SPDX-License-Identifier: MIT
// Counted pointers: what following a null one prints and throws.

#include "datamodel/nexahandle.h"
#include "datamodel/nexaptr.h"
#include "datamodel/objectdatabase.h"
#include "tests/support/testmain.h"

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

using namespace nexa4;

namespace
{

/// Takes what is written to standard error for as long as it lives.
class CapturedErrors
{
public:
    CapturedErrors() : m_before(std::cerr.rdbuf(m_text.rdbuf())) {}
    ~CapturedErrors() { std::cerr.rdbuf(m_before); }
    CapturedErrors(const CapturedErrors&) = delete;
    CapturedErrors& operator=(const CapturedErrors&) = delete;

    std::string GetText() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_before;
};

/// What following a null pointer throws, as text; empty when it throws nothing.
template <class T> std::string FollowNull()
{
    try
    {
        NEXAPtr<T>().GetPointeeNotNull();
    }
    catch (const ExBase::NullPtr& error)
    {
        return error.what();
    }
    return std::string();
}

std::string ExpectedMessage(const std::string& in_interface)
{
    return "nexaptr.h(102): nexa4::NEXAPtrBase<class nexa4::" + in_interface + ">::GetPointeeNotNull: null pointer";
}

template <class T> bool IsLoudAndExact(const std::string& in_interface)
{
    CapturedErrors errors;
    const std::string thrown = FollowNull<T>();
    return thrown == ExpectedMessage(in_interface) && errors.GetText() == thrown + "\n";
}

template <class T> bool IsSilentAndExact(const std::string& in_interface)
{
    CapturedErrors errors;
    const DisableErrorReportingGuard guard;
    return FollowNull<T>() == ExpectedMessage(in_interface) && errors.GetText().empty();
}

/// Whether something throws the exception of a null pointer.
template <class Action> bool ThrowsNullPtr(const Action& in_action)
{
    try
    {
        in_action();
    }
    catch (const ExBase::NullPtr&)
    {
        return true;
    }
    return false;
}

class Source : public IDataSource
{
public:
    int GetState() const override { return 17; }
};

} // namespace

class TestNEXAPtr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nullPrintsAndThrowsTheSameText()
    {
        QVERIFY(IsLoudAndExact<IDataModelMgr>("IDataModelMgr"));
        QVERIFY(IsLoudAndExact<IDatabase>("IDatabase"));
        QVERIFY(IsLoudAndExact<IDataSource>("IDataSource"));
        QVERIFY(IsLoudAndExact<IDbObject>("IDbObject"));
        QVERIFY(IsLoudAndExact<IHelper>("IHelper"));
        QVERIFY(IsLoudAndExact<ITypeAsset>("ITypeAsset"));
        QVERIFY(IsLoudAndExact<IValueAsset>("IValueAsset"));
    }

    void nullThrowsWithoutAWordUnderTheGuard()
    {
        QVERIFY(IsSilentAndExact<IDataModelMgr>("IDataModelMgr"));
        QVERIFY(IsSilentAndExact<IDatabase>("IDatabase"));
        QVERIFY(IsSilentAndExact<IDataSource>("IDataSource"));
        QVERIFY(IsSilentAndExact<IDbObject>("IDbObject"));
        QVERIFY(IsSilentAndExact<IHelper>("IHelper"));
        QVERIFY(IsSilentAndExact<ITypeAsset>("ITypeAsset"));
        QVERIFY(IsSilentAndExact<IValueAsset>("IValueAsset"));
    }

    void arrowFollowsTheSameWay()
    {
        const DisableErrorReportingGuard guard;
        QVERIFY(ThrowsNullPtr([&] { NEXAPtr<IDataSource>()->GetState(); }));
    }

    void guardsNest()
    {
        QVERIFY(!DisableErrorReportingGuard::IsErrorReportingDisabled());
        {
            const DisableErrorReportingGuard outer;
            {
                const DisableErrorReportingGuard inner;
                QVERIFY(DisableErrorReportingGuard::IsErrorReportingDisabled());
            }
            QVERIFY(DisableErrorReportingGuard::IsErrorReportingDisabled());
        }
        QVERIFY(!DisableErrorReportingGuard::IsErrorReportingDisabled());
    }

    void exceptionIsCaughtAsItsBases()
    {
        const DisableErrorReportingGuard guard;
        bool caught = false;
        try
        {
            NEXAPtr<IHelper>().GetPointeeNotNull();
        }
        catch (const ExBase& error)
        {
            caught = std::string(error.what()).find("IHelper") != std::string::npos;
        }
        QVERIFY(caught);
    }

    void pointersAreEqualByPointee()
    {
        const std::shared_ptr<IDataSource> source = std::make_shared<Source>();
        const NEXAPtr<IDataSource> first(source);
        const NEXAPtr<IDataSource> second(source);
        QVERIFY(first == second);
        QVERIFY(first != NEXAPtr<IDataSource>(std::make_shared<Source>()));
        QVERIFY(NEXAPtr<IDataSource>() == NEXAPtr<IDataSource>());
        QVERIFY(first.IsValid());
        QVERIFY(!NEXAPtr<IDataSource>().IsValid());
        QCOMPARE(first->GetState(), 17);
        QVERIFY(first.GetPointeeNotNull() == source.get());
    }

    void followingAnInvalidHandleThrows()
    {
        const DisableErrorReportingGuard guard;
        const NEXAHandle<IDbObject> object;
        QVERIFY(!object.IsValid());
        QVERIFY(ThrowsNullPtr([&] { object.GetDbObjectId(); }));
        QVERIFY(ThrowsNullPtr([&] { object.GetDataSource(); }));
        QVERIFY(ThrowsNullPtr([&] { object.GetManager(); }));
        QVERIFY(ThrowsNullPtr([&] { NEXAHandle<ITypeAsset>().IsLoaded(); }));
    }
};

NODEBROWSER_TEST_MAIN(TestNEXAPtr)
#include "test_nexaptr.moc"
