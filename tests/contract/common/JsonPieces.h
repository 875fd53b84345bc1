#pragma once

#include "common/JsonWriter.h"

#include "QtValues.h"

/// What compactJson makes of one value. Qt converts it in one of three ways, by what surrounds it.

inline QString withoutEnds(const QString &text, int front)
{
    return text.mid(front, text.size() - front - 1);
}

/// As an element of a list; the values of a map are written alike.
inline QString inList(const QVariant &value)
{
    return withoutEnds(compactJson(QVariantList{value}), 1);
}

/// As a value of a hash that nothing but hashes surrounds.
inline QString inHash(const QVariant &value)
{
    return withoutEnds(compactJson(QVariantHash{{QStringLiteral("k"), value}}), 5);
}

/// As a value of a hash that a list surrounds: as in the list, but for large unsigned numbers.
inline QString inHashInList(const QVariant &value)
{
    return withoutEnds(inList(QVariantHash{{QStringLiteral("k"), value}}), 5);
}

inline QString character(ushort unit)
{
    return QString(QChar(unit));
}
