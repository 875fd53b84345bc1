#pragma once

#include "RecordingView.h"

#include <QStringList>

/// Name and single text of each event that the view got from a dispatcher.
inline QStringList receivedBy(const RecordingView &view)
{
    QStringList texts;
    const QList<ViewEvent> events = view.events();
    for (const ViewEvent &event : events) {
        EXPECT_EQ(event.arguments.size(), 1);
        EXPECT_EQ(event.arguments.value(0).userType(), int(QMetaType::QString));
        texts << event.name << event.arguments.value(0).toString();
    }
    return texts;
}
