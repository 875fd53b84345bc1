#include "dataservice/DataProcess.h"

#include "common/Reply.h"

QString DataProcess::processTick(const QString &uuid, const QString &symbol, const QVariantMap &tick, bool bare)
{
    Q_UNUSED(symbol) // the quote is already that of the symbol
    const Operation operation = VARNEL_OPERATION(DataProcess, processTick);
    return bare ? Reply::toText(tick, QtDebugMsg, operation) : Reply::text(uuid, tick);
}

QString DataProcess::processUpsDowns(const QString &uuid, const QString &argument1, const QString &argument2,
                                     const QString &argument3)
{
    Q_UNUSED(uuid)
    Q_UNUSED(argument1)
    Q_UNUSED(argument2)
    Q_UNUSED(argument3)
    return QString(); // meant: pages get the event with an empty text, whatever they ask
}
