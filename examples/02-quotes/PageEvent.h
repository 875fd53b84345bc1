#pragma once

#include "QCefEvent.h"

#include <QEvent>

/// Takes an event of the library to the thread of its view, whose customEvent gets it.
class PageEvent : public QEvent {
public:
    explicit PageEvent(const QCefEvent &event) : QEvent(User), event(event) {}

    const QCefEvent event;
};
