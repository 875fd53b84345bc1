#pragma once

#include <QDebug>
#include <QString>

/// The log line that Qt makes of these parts: QStrings in quotes, literals without.
template <class... Parts>
QString logText(const Parts &...parts)
{
    QString text;
    (QDebug(&text) << ... << parts);
    return text.trimmed();
}
