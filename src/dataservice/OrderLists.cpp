#include "dataservice/DataProcess.h"

#include "common/AccountRules.h"
#include "dataservice/Filter.h"

#include "BusinessDataInterface.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

using namespace WebConstants;

namespace {

/// A page of records, each written by writeRecord, and how many match in all. The keys in the order in which JSON
/// objects list them.
template <typename WriteRecord>
void writeRecordPage(JsonWriter &json, const QString &listKey, const QList<QVariantMap> &records, int total,
                     WriteRecord writeRecord)
{
    json.punctuation('{');
    json.key(listKey);
    json.array(records, writeRecord);
    json.punctuation(',');
    json.key(Key::size);
    json.value(records.size());
    json.punctuation(',');
    json.key(Key::totalSize);
    json.value(total);
    json.punctuation('}');
}

} // namespace

QVariantMap DataProcess::parseOrderFilter(const QJsonDocument &filter)
{
    using namespace Tessar_Fields;
    const QVariantMap wanted = filter.toVariant().toMap();
    QVariantMap keys;
    const auto addCondition = [&keys](const QString &field, const QStringList &values) {
        if (!values.isEmpty())
            keys.insert(field, values);
    };

    // Meant: a fund account without records adds nothing, so that it does not restrict the query.
    QStringList tradingAccounts;
    const QStringList fundAccounts = wanted.value(Key::fundAccount).toStringList();
    for (const QString &fundAccount : fundAccounts) {
        if (const auto account = firstTradingAccount(fundAccount))
            tradingAccounts.append(account->tradingAccount);
    }
    addCondition(UserAccount::tradingAccount, tradingAccounts);
    addCondition(Security::symbol, wanted.value(Key::symbol).toStringList());
    addCondition(UserAccount::loginUserId, wanted.value(Key::trader).toStringList());
    addCondition(Security::orderStatus, wanted.value(Key::orderStatus).toStringList());
    addCondition(Varnel_Fields::ETF::UserReference3, wanted.value(Key::orderSource).toStringList());
    addCondition(Security::algoOrderID, wanted.value(Key::instanceID).toStringList());
    return keys;
}

QString DataProcess::processEntrustList(const QString &uuid, const QVariant &filter, const int &pageArg1,
                                        const int &pageArg2)
{
    const Operation operation = VARNEL_OPERATION(DataProcess, processEntrustList);
    return filteredReply(uuid, filter, operation, [&](const QJsonDocument &document, JsonWriter &json) {
        const QVariantMap keys = parseOrderFilter(document);
        if (lcWebSdk().isDebugEnabled())
            logLine(QtDebugMsg, operation) << keys;
        int total = 0;
        const QList<QVariantMap> orders = BusinessDataInterface::GetOrderListByCustomKey(
            keys, total, pageArg1, pageArg2, QList<QString>(), QStringList());
        writeRecordPage(json, Key::entrustInfoList, orders, total,
                        [&](const QVariantMap &order) { writeEntrustOrder(json, order); });
    });
}

QString DataProcess::processExecutionList(const QString &uuid, const QVariant &filter, const int &pageArg1,
                                          const int &pageArg2)
{
    const Operation operation = VARNEL_OPERATION(DataProcess, processExecutionList);
    return filteredReply(uuid, filter, operation, [&](const QJsonDocument &document, JsonWriter &json) {
        int total = 0;
        const QList<QVariantMap> executions = BusinessDataInterface::GetExecutionListByCustomKey(
            parseOrderFilter(document), total, pageArg1, pageArg2, QStringList());
        writeRecordPage(json, Key::executionInfoList, executions, total,
                        [&](const QVariantMap &execution) { writeExecutionOrder(json, execution); });
    });
}
