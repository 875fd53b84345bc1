#pragma once

#include "RecordingView.h"

#include <QStringList>

/// What the page of the view got from a dispatcher, as name and single text of each event.
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
