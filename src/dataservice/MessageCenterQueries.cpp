#include "dataservice/DataProcess.h"

#include "common/Reply.h"
#include "msgcenter/WebMsgCenter.h"

using namespace WebConstants;

QString DataProcess::processKLineData(const QString &uuid, const QString &symbol, const QString &startTime,
                                      const QString &stopTime, EMD_KLINE_PERIOD period)
{
    QList<QVariantMap> bars;
    const int status = WebMsgCenter::instance()->syncRequestKLineData(symbol, startTime, stopTime, period, bars);
    const bool succeeded = status == 0;
    // Meant: a request that failed still carries whatever bars came.
    return Reply::text(uuid, Reply::toList(bars), QtWarningMsg, VARNEL_OPERATION(DataProcess, processKLineData),
                       succeeded ? Code::success : Code::failure, succeeded ? QString() : Message::queryFailed);
}
