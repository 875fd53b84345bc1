#pragma once

#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

/// The body of a message, in a QVariant: its fields, in the order in which they were added. One block of memory,
/// because the bus carries a message of some 25 fields for each change of an order. Several of them in a QVariantList
/// are the body of a message with several rows, which the simulator itself never sends.
using PackedRow = QVector<QPair<QString, QVariant>>;
