#include "dataservice/DataProcess.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "QtValues.h"

#include <QStringList>

#include <atomic>
#include <thread>

using testing::Return;

namespace {

const QString uuid = QStringLiteral("abc");

class DataProcessTest : public HostTest {
protected:
    DataProcess *process = DataProcess::instance();

    void expectFundAccounts(int fundProp, const QList<tagUserAccountInfo> &accounts)
    {
        EXPECT_CALL(host,
                    VarnelBusinessDataInterface_GetFundAccountListByFundProp(fundProp, 16, false, QStringList(), true))
            .WillOnce(Return(accounts));
    }

    void expectStation(const QString &information, const QString &station)
    {
        EXPECT_CALL(host, VarnelBusinessDataInterface_GetVarnelOrderStation(information)).WillOnce(Return(station));
    }
};

TEST_F(DataProcessTest, TokenIsAskedAnewByEveryCall)
{
    EXPECT_CALL(host, QvCore_getCurrentToken())
        .WillOnce(Return(QStringLiteral("T")))
        .WillOnce(Return(QStringLiteral("T2")));
    EXPECT_EQ(process->processToken(uuid), QStringLiteral(R"({"code":"0","msg":"","resultData":"T","uuid":"abc"})"));
    EXPECT_EQ(process->processToken(uuid), QStringLiteral(R"({"code":"0","msg":"","resultData":"T2","uuid":"abc"})"));
}

TEST_F(DataProcessTest, EmptyTokenIsNoFailure)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QString()));
    EXPECT_EQ(process->processToken(uuid), QStringLiteral(R"({"code":"0","msg":"","resultData":"","uuid":"abc"})"));
}

TEST_F(DataProcessTest, LoginTraderIsTheLoginAccount)
{
    EXPECT_CALL(host, CBusinessDataBase_GetLoginAccount()).WillOnce(Return(QStringLiteral("交易员甲")));
    EXPECT_EQ(process->processLoginTrader(uuid),
              QStringLiteral(R"({"code":"0","msg":"","resultData":"交易员甲","uuid":"abc"})"));
}

TEST_F(DataProcessTest, TraderListIsTheKeysAscendingNeverTheNames)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrganTraderList())
        .WillOnce(Return(QMap<QString, QString>{{QStringLiteral("t9"), QStringLiteral("name 1")},
                                                {QStringLiteral("t10"), QStringLiteral("name 2")},
                                                {QStringLiteral("T2"), QStringLiteral("name 3")}}));
    EXPECT_EQ(process->processTraderList(uuid),
              QStringLiteral(R"({"code":"0","msg":"","resultData":["T2","t10","t9"],"uuid":"abc"})"));
}

TEST_F(DataProcessTest, TraderListOfNobodyIsAnEmptyArray)
{
    EXPECT_CALL(host, VarnelBusinessDataInterface_GetOrganTraderList()).WillOnce(Return(QMap<QString, QString>()));
    EXPECT_EQ(process->processTraderList(uuid),
              QStringLiteral(R"({"code":"0","msg":"","resultData":[],"uuid":"abc"})"));
}

TEST_F(DataProcessTest, FundAccountsComeInTheHostsOrderWithNumberAndName)
{
    expectFundAccounts(3, {{QStringLiteral("f2"), QStringLiteral("账户二"), QStringLiteral("t2")},
                           {QStringLiteral("f1"), QString(), QStringLiteral("t1")}});
    EXPECT_EQ(process->processFundAccountList(uuid, 3),
              QStringLiteral(R"({"code":"0","msg":"","resultData":[{"fundAccount":"f2","fundAccountName":"账户二"},)"
                             R"({"fundAccount":"f1","fundAccountName":""}],"uuid":"abc"})"));
}

TEST_F(DataProcessTest, FundAccountsOfAnUnknownPropertyAreAnEmptyArray)
{
    expectFundAccounts(-2147483647, {});
    EXPECT_EQ(process->processFundAccountList(uuid, -2147483647),
              QStringLiteral(R"({"code":"0","msg":"","resultData":[],"uuid":"abc"})"));
}

TEST_F(DataProcessTest, StationInformationIsJoinedOnlyWhenBothPiecesAreThere)
{
    const QString a = QStringLiteral("A");
    const QString b = QStringLiteral("B");
    {
        const testing::InSequence order;
        expectStation(QStringLiteral("A;B"), QStringLiteral("both"));
        expectStation(QStringLiteral("A"), QStringLiteral("first"));
        expectStation(QStringLiteral("B"), QStringLiteral("second"));
        expectStation(QString(), QString());
    }
    const auto reply = [](const char *station) {
        return QStringLiteral(R"({"code":"0","msg":"","resultData":"%1","uuid":"abc"})")
            .arg(QString::fromLatin1(station));
    };
    EXPECT_EQ(process->processGetOPStation(uuid, a, b), reply("both"));
    EXPECT_EQ(process->processGetOPStation(uuid, a, QString()), reply("first"));
    EXPECT_EQ(process->processGetOPStation(uuid, QString(), b), reply("second"));
    EXPECT_EQ(process->processGetOPStation(uuid, QString(), QString()), reply(""));
}

TEST_F(DataProcessTest, SuccessLogsNothing)
{
    EXPECT_CALL(host, QvCore_getCurrentToken()).WillOnce(Return(QStringLiteral("T")));
    LogRecorder log;
    process->processToken(uuid);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(DataProcessTest, InitReadsTheDisplayModeEachTime)
{
    EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).Times(2).WillRepeatedly(Return(GroupedShowType));
    process->init();
    process->init();
}

TEST_F(DataProcessTest, HasNoMetaMethodsOfItsOwn)
{
    const QMetaObject &meta = DataProcess::staticMetaObject;
    EXPECT_STREQ(meta.className(), "DataProcess");
    EXPECT_EQ(meta.methodCount(), meta.methodOffset());
    EXPECT_EQ(meta.propertyCount(), meta.propertyOffset());
}

// Not from the fixture: there the instance exists before the test begins.
TEST(DataProcessInstance, IsTheSameForThreadsThatAskAtOnce)
{
    constexpr int threadCount = 8;
    std::atomic<int> ready{0};
    DataProcess *seen[threadCount] = {};
    std::thread threads[threadCount];
    for (int i = 0; i < threadCount; ++i) {
        threads[i] = std::thread([&ready, &seen, i] {
            for (++ready; ready < threadCount;) {
            }
            seen[i] = DataProcess::instance();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const DataProcess *process : seen)
        EXPECT_EQ(process, seen[0]);
    EXPECT_NE(seen[0], nullptr);
    EXPECT_EQ(seen[0]->parent(), nullptr);
}

} // namespace
