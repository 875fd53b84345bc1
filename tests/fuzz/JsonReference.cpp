#include "JsonReference.h"

#include <QDebug>
#include <QJsonDocument>
#include <algorithm>

namespace {

/// With characters that cannot be seen written as escapes.
QByteArray about(const QString &text, int place)
{
    constexpr int before = 40;
    constexpr int after = 60;
    const int from = qMax(0, place - before);
    QString shown;
    QDebug(&shown).nospace() << text.mid(from, place - from + after);
    return shown.toUtf8();
}

} // namespace

QString qtJson(const QVariant &value)
{
    return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
}

QByteArray difference(const QString &expected, const QString &actual)
{
    if (expected == actual)
        return QByteArray();
    const auto ends = std::mismatch(expected.cbegin(), expected.cend(), actual.cbegin(), actual.cend());
    const int place = int(ends.first - expected.cbegin());
    return "they differ at character " + QByteArray::number(place) + " of " + QByteArray::number(expected.size()) +
           "\n  expected " + about(expected, place) + "\n  actual   " + about(actual, place) + '\n';
}
