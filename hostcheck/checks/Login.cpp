#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "BaseBusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "QvCore.h"
#include "VarnelBusinessDataInterface.h"

#include <QSet>

#include <algorithm>

namespace HostCheck {

namespace {

CBusinessDataBase &data()
{
    return present(CBusinessDataBase::GetInstance());
}

void clientOrderIdsDiffer(const KnownValues &)
{
    constexpr int kThreads = 4;
    constexpr int kOrders = 100;
    CBusinessDataBase &source = data();
    std::vector<QStringList> ids(kThreads);
    onThreads(kThreads, [&](int number) {
        for (int i = 0; i < kOrders; ++i)
            ids[size_t(number)].append(source.getClientOrderID());
    });
    QSet<QString> distinct;
    for (const QStringList &ofThread : ids)
        distinct.unite(QSet<QString>(ofThread.begin(), ofThread.end()));
    expect(distinct.size() == kThreads * kOrders && !distinct.contains(QString()),
           "each client order id is a text of its own, on every thread",
           QStringLiteral("%1 orders have %2 ids, such as \"%3\"")
               .arg(kThreads * kOrders)
               .arg(distinct.size())
               .arg(ids.front().front()));
}

void account(const KnownValues &)
{
    const QString account = data().GetLoginAccount();
    expect(!account.isEmpty(), "GetLoginAccount names the account that is logged in", shown(account));
}

void accountNamesAFolder(const KnownValues &)
{
    const QString account = data().GetLoginAccount();
    const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    const bool isName = std::none_of(account.begin(), account.end(), [&](QChar letter) {
        return forbidden.contains(letter) || letter < QLatin1Char(' ');
    });
    expect(isName && account != QLatin1String("..") && account != QLatin1String("."),
           "the login account can be the name of a folder", shown(account));
}

void token(const KnownValues &)
{
    const QString token = present(QvCore::instance()).getCurrentToken();
    expect(!token.isEmpty(), "getCurrentToken gives the token of the login", shown(token));
}

void traders(const KnownValues &)
{
    const QStringList ids = VarnelBusinessDataInterface::GetOrganTraderList().keys();
    expect(!ids.isEmpty() && !ids.contains(QString()), "the organisation's traders have identifiers", shown(ids));
}

void station(const KnownValues &)
{
    for (const QString &information : {QString(), QStringLiteral("A;B")}) {
        const QString station = VarnelBusinessDataInterface::GetVarnelOrderStation(information);
        expect(!station.isEmpty(), "the operator station has a text, with and without information of the page",
               QStringLiteral("\"%1\" for \"%2\"").arg(station, information));
    }
}

void unknownMenu(const KnownValues &)
{
    BaseBusinessDataInterface::OpenMenuTabByMenuID(kUnknown); // a page may ask for one that this user does not have
}

} // namespace

CheckTable loginChecks()
{
    return {
        {"login.client-order-ids-differ", "Two orders have the same id: one of them cannot be cancelled or is refused.",
         clientOrderIdsDiffer},
        {"login.account", "Settings of all users land in one file, and no permissions are loaded.", account,
         Part::Login},
        {"login.account-names-a-folder", "The settings of this user cannot be saved.", accountNamesAFolder,
         Part::Login},
        {"login.token", "Pages cannot log in to their own servers.", token, Part::Login},
        {"login.traders", "Pages cannot list orders by trader.", traders, Part::Login},
        {"login.station", "Pages cannot name the station that an order comes from, which the law may demand.", station,
         Part::Login},
        {"login.unknown-menu", "The terminal crashes when a page opens a menu that this user does not have.",
         unknownMenu, Part::Login},
    };
}

} // namespace HostCheck
