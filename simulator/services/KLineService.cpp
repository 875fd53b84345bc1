#include "services/KLineService.h"

#include "HostTypes.h"
#include "Tessar_Fields.h"
#include "exchange/Exchange.h"
#include "platform/Faults.h"
#include "services/TimeTexts.h"

namespace sim {

namespace {

const QString kDateFormat = QStringLiteral("yyyyMMdd");
const QString kTimeFormat = QStringLiteral("yyyyMMddHHmmss");

/// Reads one end of the range. An empty text leaves it open; a bare date gets timeOfBareDate. False for another form.
bool readTime(const QString &text, const QTime &timeOfBareDate, QDateTime &time)
{
    if (text.isEmpty())
        return true;
    if (text.size() == kDateFormat.size())
        time = QDateTime(QDate::fromString(text, kDateFormat), timeOfBareDate, Qt::UTC);
    else if (text.size() == kTimeFormat.size())
        time = QDateTime::fromString(text, kTimeFormat);
    time.setTimeSpec(Qt::UTC);
    return time.isValid();
}

QVariantList answer(const Exchange &exchange, const QVariantMap &request)
{
    QDateTime start;
    QDateTime stop;
    if (!readTime(request.value(QStringLiteral("StartTime")).toString(), QTime(0, 0), start) ||
        !readTime(request.value(QStringLiteral("StopTime")).toString(), QTime(23, 59, 59), stop))
        return {};

    const int periodType = request.value(QStringLiteral("PeriodType")).toInt();
    if (periodType != MinuteKLinePeriod && periodType != DayKLinePeriod)
        return {};
    const bool minutes = periodType == MinuteKLinePeriod;

    const QString symbol = request.value(QStringLiteral("Symbol")).toString();
    const QVariant clientMsgId = request.value(Tessar_Fields::System::clientMsgID);
    const QVector<Candle> candles =
        exchange.candles(symbol, start, stop, minutes ? CandlePeriod::Minute : CandlePeriod::Day);

    QVariantList list;
    list.reserve(candles.size());
    for (const Candle &candle : candles) {
        list.append(QVariantMap{
            {Tessar_Fields::System::clientMsgID, clientMsgId},
            {Tessar_Fields::Security::symbol, symbol},
            {QStringLiteral("time"), minutes ? TimeTexts::write(candle.end) : candle.end.toString(kDateFormat)},
            {QStringLiteral("open"), candle.open},
            {QStringLiteral("high"), candle.high},
            {QStringLiteral("low"), candle.low},
            {QStringLiteral("close"), candle.close},
            {QStringLiteral("volume"), candle.volume},
            {QStringLiteral("amount"), candle.amount},
        });
    }
    return list;
}

} // namespace

void KLineService::install(MessageBus &bus, const Exchange &exchange, const Faults &faults)
{
    bus.serve(QStringLiteral("KLineRequest"), QStringLiteral("KLineResponse"),
              [&exchange, &faults](const QVariantMap &request) -> std::optional<QVariantList> {
                  if (faults.isOn(Fault::SilentKLines))
                      return std::nullopt;
                  return answer(exchange, request);
              });
}

} // namespace sim
