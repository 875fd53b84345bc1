#include "Pages.h"
#include "VariantParts.h"

#include "msgcenter/WebMsgCenter.h"

#include "CUnPackMessageCommon.h"
#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"
#include "Varnel_Fields.h"

#include <QCoreApplication>

#include <cstdint>

namespace {

QVariantMap unpacked(const QVariant &body)
{
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(body, false);
    return unpack.GetRowValue();
}

/// An argument with which operations ask the host, or any value.
QVariant anyArgument(Decisions &decisions)
{
    static const char *const good[] = {
        "", "1", "f1", "S,T", R"({"symbol":["S"],"symbolFilter":[{}]})", R"([{"symbol":"S","qty":"100"}])"};
    if (decisions.oneIn(2))
        return QString::fromLatin1(decisions.oneOf(good));
    return anyValue(decisions);
}

QString anyMethod(Decisions &decisions)
{
    if (decisions.oneIn(16))
        return anyText(decisions);
    return callNames().at(decisions.below(callNames().size()));
}

void call(Page &page, Decisions &decisions)
{
    const QString method = anyMethod(decisions);
    QVariantList args{anyArgument(decisions)};
    for (int count = decisions.below(11); count > 0; --count)
        args.append(anyArgument(decisions));
    if (decisions.oneIn(16))
        args.clear();
    if (method == QStringLiteral("Data_saveSetting_REQ") && args.size() > 1)
        args[1] = QString(decisions.below(16), QLatin1Char('k')); // few keys: settings outlive the input
    page.call(method, args);
}

/// The bus and the strategy platform answer what has waited, some of it not at all.
void answer(Decisions &decisions)
{
    using namespace Varnel_Fields;
    const QVector<QVariant> requests = FuzzHost::takeCandleRequests();
    for (const QVariant &request : requests) {
        QVariantMap candle = anyMap(decisions);
        candle.insert(Tessar_Fields::System::clientMsgID, unpacked(request).value(Tessar_Fields::System::clientMsgID));
        if (!decisions.oneIn(4))
            WebMsgCenter::instance()->ProcQuotationMsg(QString(), QStringLiteral("KLineResponse"),
                                                       QVariantList{candle});
    }
    static const QHash<QString, QString> responses{
        {VeloxValues::MSEventStartStrategyReq, VeloxValues::MSEventStartStrategyRsp},
        {VeloxValues::MSEventStopStrategyReq, VeloxValues::MSEventStopStrategyRsp},
        {VeloxValues::MSEventQueryStrategyStatusReq, VeloxValues::MSEventQueryStrategyStatusRsp}};
    const QVector<QVariant> events = FuzzHost::takePlatformEvents();
    for (const QVariant &event : events) {
        QVariantMap row = unpacked(event);
        QVariant &subEvent = row[VeloxFields::msgSubEventType];
        subEvent = responses.value(subEvent.toString(), subEvent.toString());
        if (!decisions.oneIn(4))
            WebMsgCenter::instance()->ProcEventMsg(QString(), 2, FuzzHost::packed(row));
    }
}

} // namespace

/// Calls of pages that come and go, in any order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Decisions decisions(bytes, size);
    FuzzHost::begin(decisions);
    Pages pages;
    while (!decisions.over()) {
        const int number = decisions.below(4);
        switch (decisions.below(8)) {
        case 0:
            pages.close(number);
            break;
        case 1:
            pages.at(number).setRegistered(decisions.oneIn(2));
            break;
        case 2:
            answer(decisions);
            break;
        case 3:
            emit CommonQuotaHandler::instance()->sigTickDataUpdate(QStringLiteral("S"), anyMap(decisions));
            break;
        case 4:
            QCoreApplication::processEvents();
            break;
        default:
            call(pages.at(number), decisions);
        }
        pages.receiveAll();
    }
    answer(decisions);
    return 0;
}
