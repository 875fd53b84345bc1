#pragma once

#include "VarnelCefView.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <benchmark/benchmark.h>

/// What the benchmarks share: the call identifier, the least that a reply costs, and a page that costs nothing. Their
/// main() plays the simulator's built-in scenario.

extern const QString uuid;

/// The envelope of a reply and its text, with nothing around it.
QString bareReply(const QVariant &resultData);

/// A view whose page drops what it gets; both sides of a comparison pay for it alike.
class Page {
public:
    ~Page() { takeEvents(); }

    void send(const QString &event, const QString &text)
    {
        QCefEvent reply(event);
        reply.arguments().append(text);
        view.broadcastEvent(reply);
    }

    void takeEvents() { QCoreApplication::sendPostedEvents(&view); }

    VarnelCefView view;
};
