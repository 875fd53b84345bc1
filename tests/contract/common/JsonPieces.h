#pragma once

#include "common/JsonWriter.h"

#include "QtValues.h"

/// The JSON of one value. Qt converts a value in one of three ways, depending on the container around it.

inline QString withoutEnds(const QString &text, int front)
{
    return text.mid(front, text.size() - front - 1);
}

/// As an element of a list; values of a map are written in the same way.
inline QString inList(const QVariant &value)
{
    return withoutEnds(compactJson(QVariantList{value}), 1);
}

/// As a value of a hash that only hashes surround.
inline QString inHash(const QVariant &value)
{
    return withoutEnds(compactJson(QVariantHash{{QStringLiteral("k"), value}}), 5);
}

/// As a value of a hash in a list: as in the list, except for large unsigned numbers.
inline QString inHashInList(const QVariant &value)
{
    return withoutEnds(inList(QVariantHash{{QStringLiteral("k"), value}}), 5);
}

inline QString character(ushort unit)
{
    return QString(QChar(unit));
}
