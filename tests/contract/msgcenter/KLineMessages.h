#pragma once

#include "HostMessages.h"
#include "QtValues.h"

#include "Tessar_Fields.h"

inline const QString kLineSymbol = QStringLiteral("sym");
inline const QString kLineFrom = QStringLiteral("20240102");
inline const QString kLineTo = QStringLiteral("20240131");

/// The request for candles of that symbol and time, as the bus gets it from the presenter.
inline auto isKLineRequest(int pid, int period)
{
    const MessageFields fields{
        {QStringLiteral("Symbol"), kLineSymbol}, {QStringLiteral("StartTime"), kLineFrom},
        {QStringLiteral("StopTime"), kLineTo},   {QStringLiteral("ExrightsType"), 10},
        {QStringLiteral("PeriodType"), period},  {Tessar_Fields::System::msgType, QStringLiteral("KLineRequest")}};
    return IsMessage(QVariant(QStringLiteral("KLineRequest")), pid, fields);
}
