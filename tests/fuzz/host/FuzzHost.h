#pragma once

#include "Decisions.h"

#include <QString>
#include <QVariantMap>
#include <QVector>

class QCefView;

/// The terminal of the fuzz targets: the starter host, with answers that the bytes of the input decide. Everything runs
/// on one thread.
namespace FuzzHost {

/// An event that a view received.
struct Event {
    const QCefView *view;
    QString name;
    QVariantList arguments;
};

/// Starts application and library the first time. From now on these decisions make the host's answers; they must live
/// until the next begin().
void begin(Decisions &decisions);
Decisions &decisions();

/// The events since the last call.
QVector<Event> takeEvents();

/// The packed bodies that the library has sent since the last call: events for the strategy platform, and requests for
/// candles.
QVector<QVariant> takePlatformEvents();
QVector<QVariant> takeCandleRequests();

/// For the parts of the host.
void received(const Event &event);
void sentToPlatform(const QVariant &body);
void askedForCandles(const QVariant &body);

/// A body as the host packs it.
QVariant packed(const QVariantMap &row);

} // namespace FuzzHost
