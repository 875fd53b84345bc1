#pragma once

#include "bridge/DataThread.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "RecordingView.h"

#include <QMetaMethod>
#include <QStringList>

/// Base of the tests of the data dispatcher of one view.
class DispatcherTest : public HostTest {
protected:
    explicit DispatcherTest(const HostStart &start = {})
    {
        expectStart(start);
        dispatcher = new DataThread(&view);
    }

    bool call(const char *method, const QVariantList &args)
    {
        return dispatcher->onInvokeMethod(1, 2, QString::fromUtf8(method), args);
    }

    /// What the page got, as name and single text.
    QStringList received() const
    {
        QStringList texts;
        for (const ViewEvent &event : view.events()) {
            EXPECT_EQ(event.arguments.size(), 1);
            EXPECT_EQ(event.arguments.value(0).userType(), int(QMetaType::QString));
            texts << event.name << event.arguments.value(0).toString();
        }
        return texts;
    }

    /// The names that the dispatcher handles, in the order of its meta-methods.
    static QStringList handledMethods()
    {
        const QMetaObject &meta = DataThread::staticMetaObject;
        QStringList names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            names << QString::fromLatin1(meta.method(i).name());
        return names;
    }

    LogRecorder log;
    RecordingView view;
    DataThread *dispatcher = nullptr; // goes with the view
};
