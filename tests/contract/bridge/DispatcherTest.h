#pragma once

#include "bridge/DataThread.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "Received.h"

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

    QStringList received() const { return receivedBy(view); }

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
