#pragma once

#include <QDebug>
#include <QString>

/// A log line as Qt's logger writes these parts: texts of the host and of pages in quotes, literals bare.
template <class... Parts>
QString logText(const Parts &...parts)
{
    QString text;
    (QDebug(&text) << ... << parts);
    return text.trimmed();
}
