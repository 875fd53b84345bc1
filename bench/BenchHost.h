#pragma once

#include "terminal/Terminal.h"

#include <QString>
#include <QVariant>

#include <memory>

// What the benchmarks share.

extern const QString uuid;

/// The simulator's built-in world. Needs a QApplication.
std::unique_ptr<sim::Terminal> makeTerminal();

/// The envelope of a reply, for those that make its text in another way.
QVariantMap envelope(const QVariant &resultData);

/// The text as Qt makes it.
QString qtText(const QVariant &value);
