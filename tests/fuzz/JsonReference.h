#pragma once

#include <QVariant>

/// What Qt itself writes: the library's writer is held against it.
QString qtJson(const QVariant &value);

/// Where two texts differ first, and both about there; empty when they are equal.
QByteArray difference(const QString &expected, const QString &actual);
