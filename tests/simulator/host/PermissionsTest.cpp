#include "TerminalTest.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "BaseBusinessDataInterface.h"
#include "QvPresenterClass.h"
#include "Tessar_Fields.h"
#include "VarnelUtils.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"

#include <future>

namespace {

QStringList s_log;

void remember(QtMsgType, const QMessageLogContext &, const QString &message)
{
    s_log.append(message);
}

class PermissionsTest : public TerminalTest {
protected:
    QList<QVariantMap> query(const QString &user, const QString &supportType)
    {
        return VarnelUtils::QueryDatasFromServer(
            &presenter, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest,
            {{Tessar_Fields::UserAccount::userID, user}, {Algo_Fields::VarnelStrategy::supportType, supportType}},
            BlockingQueryDataMode, error);
    }

    static QStringList accountsOf(const QList<QVariantMap> &records)
    {
        QStringList accounts;
        for (const QVariantMap &record : records)
            accounts.append(record.value(Varnel_Fields::FastFocus::fundAccount).toString());
        return accounts;
    }

    const QString login = terminal.login().account;
    QvPresenterClass presenter{QStringLiteral("p"), nullptr, IMessageInterface::WebThreadType};
    QString error = QStringLiteral("of the call before");
};

} // namespace

TEST_F(PermissionsTest, AQueryReturnsTheAccountsWithTheSupportType)
{
    const QList<QVariantMap> records = query(login, Algo_Values::SupprotType::KFZ_SNB);
    EXPECT_EQ(QString(), error);
    EXPECT_EQ(QStringList({QStringLiteral("880010001"), QStringLiteral("880010003"), QStringLiteral("990020001")}),
              accountsOf(records));
    for (const QVariantMap &record : records)
        EXPECT_EQ(QVariant(Algo_Values::SupprotType::KFZ_SNB), record.value(Algo_Fields::VarnelStrategy::supportType));

    EXPECT_EQ(QStringList(QStringLiteral("880010002")), accountsOf(query(login, QStringLiteral("TWAP"))));
}

TEST_F(PermissionsTest, UnknownTypesAndUsersGiveNoAccounts)
{
    EXPECT_TRUE(query(login, QStringLiteral("KFZ")).isEmpty());
    EXPECT_TRUE(query(login, QString()).isEmpty());
    EXPECT_TRUE(query(QStringLiteral("stranger"), Algo_Values::SupprotType::KFZ_SNB).isEmpty());
    EXPECT_EQ(QString(), error);
}

TEST_F(PermissionsTest, AnyThreadMayQueryAlsoTheBusThread)
{
    auto other = std::async(std::launch::async, [this] {
        QString theirs;
        return VarnelUtils::QueryDatasFromServer(&presenter, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest,
                                                 {{Tessar_Fields::UserAccount::userID, login},
                                                  {Algo_Fields::VarnelStrategy::supportType, QStringLiteral("TWAP")}},
                                                 BlockingQueryDataMode, theirs)
            .size();
    });
    EXPECT_EQ(3, query(login, Algo_Values::SupprotType::KFZ_SNB).size());
    EXPECT_EQ(1, other.get());

    int fromBus = 0;
    terminal.bus()->serve(QStringLiteral("Nested"), QStringLiteral("Answer"), [&](const QVariantMap &) {
        fromBus = query(login, Algo_Values::SupprotType::KFZ_SNB).size();
        return QVariantList();
    });
    auto *request = new CMessageCommon;
    request->SetType(QStringLiteral("Nested"));
    QVariant reply;
    EXPECT_EQ(0, presenter.sendRequest_Sync(request, reply));
    EXPECT_EQ(3, fromBus);
}

TEST_F(PermissionsTest, OtherQueriesAreRefusedWithAReason)
{
    for (const char *type : {"", "KLineRequest", "QueryPositionsRequest"}) {
        const QString name = QLatin1String(type);
        EXPECT_TRUE(VarnelUtils::QueryDatasFromServer(&presenter, name, {}, BlockingQueryDataMode, error).isEmpty());
        EXPECT_EQ(QStringLiteral("服务器不支持该查询：") + name, error);
    }
}

TEST_F(PermissionsTest, AStoppedBusIsAnError)
{
    terminal.bus()->stop();
    EXPECT_TRUE(query(login, Algo_Values::SupprotType::KFZ_SNB).isEmpty());
    EXPECT_EQ(QStringLiteral("服务器没有应答"), error);
}

TEST(Menus, TheLogContainsTheRequestedMenu)
{
    qInstallMessageHandler(remember);
    BaseBusinessDataInterface::OpenMenuTabByMenuID(QStringLiteral("1210"));
    BaseBusinessDataInterface::OpenMenuTabByMenuID(QStringLiteral("7"));
    qInstallMessageHandler(nullptr);
    EXPECT_EQ(QStringList(
                  {QStringLiteral("the page opens menu 1210 (permissions)"), QStringLiteral("the page opens menu 7")}),
              s_log);
}
