#pragma once

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

/// Every text of the constants' header in its order, read from the source, so that none can be forgotten.
/// With a namespace, only the texts between its braces.
inline QStringList textsOfTheHeader(const QString &wantedNamespace = {})
{
    QFile header(QStringLiteral(VARNEL_WEB_CONSTANTS_HEADER));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    QString source = QString::fromUtf8(header.readAll());
    if (!wantedNamespace.isEmpty()) {
        const int begin = source.indexOf(QStringLiteral("\nnamespace %1 {").arg(wantedNamespace));
        const int end = source.indexOf(QStringLiteral("\n} // namespace %1\n").arg(wantedNamespace));
        source = begin < 0 ? QString() : source.mid(begin, end - begin);
    }
    static const QRegularExpression literal(QStringLiteral("QStringLiteral\\(\"([^\"]*)\"\\)"));
    QStringList texts;
    for (auto match = literal.globalMatch(source); match.hasNext();)
        texts.append(match.next().captured(1));
    return texts;
}
