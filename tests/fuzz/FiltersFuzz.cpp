#include "Pages.h"

#include <cstdint>

/// JSON that pages send: filters of orders, executions and securities, and lists of orders.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const char *const methods[] = {"Data_getEntrustList_REQ", "Data_getExecutionList_REQ",
                                          "Data_getSymbolList_REQ", "Data_getSymbolListWithDetail_REQ",
                                          "Trade_insertOrderList_REQ"};
    if (size < 2)
        return 0;
    Decisions decisions(bytes, size); // the host answers by the same bytes as the text has
    FuzzHost::begin(decisions);
    const QByteArray json(reinterpret_cast<const char *>(bytes) + 2, int(size) - 2);
    const QVariant text = bytes[1] % 2 == 0 ? QVariant(QString::fromUtf8(json)) : QVariant(json);
    const QString method = QString::fromLatin1(methods[bytes[0] % 5]);
    const QVariant one = QStringLiteral("1");
    static auto *const page = new Page; // one for all inputs: to make it takes longer than a call
    page->call(method, method.startsWith(QStringLiteral("Trade_")) ? QVariantList{one, one, one, text}
                                                                   : QVariantList{one, text, one, one});
    return 0;
}
