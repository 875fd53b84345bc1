#include "Pages.h"
#include "VariantParts.h"

#include "msgcenter/WebMsgCenter.h"

#include "Tessar_Fields.h"
#include "VarnelCefView.h"
#include "Varnel_Fields.h"
#include "common/WebConstants.h"

#include <QCoreApplication>

#include <cstdint>

namespace {

/// A view that the event names: one that is open, one that has ended, none, or something else.
QVariant anyView(Pages &pages, Decisions &decisions)
{
    switch (decisions.below(4)) {
    case 0:
        return QVariant::fromValue(pages.at(decisions.below(4)).view());
    case 1:
        return QVariant::fromValue(reinterpret_cast<VarnelCefView *>(quintptr(16))); // may only be compared
    case 2:
        return QVariant::fromValue<VarnelCefView *>(nullptr);
    default:
        return anyValue(decisions);
    }
}

/// A row with any of the fields that the library reads.
QVariantMap anyRow(Pages &pages, Decisions &decisions)
{
    using namespace Varnel_Fields;
    static const QString subEvents[] = {
        VeloxValues::MSEventStartStrategyRsp,       VeloxValues::MSEventStopStrategyRsp,
        VeloxValues::MSEventQueryStrategyStatusRsp, VeloxValues::MSEventStrategyCustomMsg,
        VeloxValues::MSEventStrategyStatusUpdate,   QString()};
    static const QString fields[] = {
        Tessar_Fields::Security::orderID,           Tessar_Fields::Security::execID,
        Tessar_Fields::UserAccount::tradingAccount, Tessar_Fields::System::textDescription,
        Tessar_Fields::Strategy::strategyID,        Tessar_Fields::Strategy::strategyStatus,
        VeloxFields::strategyCustomMsgID,           VeloxFields::strategyCustomMsg,
        WebConstants::Strategy::extField,           WebConstants::Strategy::uuid};
    QVariantMap row = anyMap(decisions);
    for (int count = decisions.below(6); count > 0; --count)
        row.insert(decisions.oneOf(fields), anyValue(decisions));
    if (decisions.oneIn(2)) {
        row.insert(VeloxFields::msgSubEventType, decisions.oneOf(subEvents));
        row.insert(WebConstants::Strategy::panelPtr, anyView(pages, decisions));
    }
    return row;
}

void event(Pages &pages, Decisions &decisions)
{
    static const int types[] = {0x300A0, 0x30003, 0x30005, 0x30004, 0x30006, 0x31002, 0x30001, 2};
    const QVariant type = decisions.oneIn(16) ? anyValue(decisions) : QVariant(decisions.oneOf(types));
    const QVariant data = decisions.oneIn(8) ? anyValue(decisions) : FuzzHost::packed(anyRow(pages, decisions));
    WebMsgCenter::instance()->ProcEventMsg(anyText(decisions), type, data);
}

void quotation(Decisions &decisions)
{
    const QVariant type = decisions.oneIn(4) ? anyValue(decisions) : QVariant(QStringLiteral("KLineResponse"));
    WebMsgCenter::instance()->ProcQuotationMsg(anyText(decisions), type, anyValue(decisions));
}

} // namespace

/// Whatever the bus delivers: events, candles and call-backs, to pages that come and go.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Decisions decisions(bytes, size);
    FuzzHost::begin(decisions);
    WebMsgCenter *const center = WebMsgCenter::instance();
    Pages pages(Pages::Unasked);
    while (!decisions.over()) {
        switch (decisions.below(8)) {
        case 0:
            pages.close(decisions.below(4));
            break;
        case 1:
            pages.at(decisions.below(4))
                .call(QStringLiteral("Vlx_subStrategyMsg_REQ"), {QString(), anyValue(decisions), QStringLiteral("1")});
            break;
        case 2:
            quotation(decisions);
            break;
        case 3:
            center->ProcAsyncCallBack(decisions.bits<int>(), anyText(decisions), anyValue(decisions),
                                      anyValue(decisions));
            break;
        case 4: // the batches, without the 200 ms
            QMetaObject::invokeMethod(center, "slotEntrustTimeout");
            QMetaObject::invokeMethod(center, "slotExecutionTimeout");
            break;
        default:
            event(pages, decisions);
        }
        pages.receiveAll();
    }
    QMetaObject::invokeMethod(center, "slotEntrustTimeout");
    QMetaObject::invokeMethod(center, "slotExecutionTimeout");
    pages.receiveAll();
    FuzzHost::takePlatformEvents();
    return 0;
}
