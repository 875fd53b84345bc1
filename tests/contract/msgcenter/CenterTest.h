#pragma once

#include "msgcenter/WebMsgCenter.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "LogText.h"
#include "RecordingView.h"
#include "Replies.h"

#include <QStringList>

/// Base of the tests of a message center that has started.
class CenterTest : public HostTest {
protected:
    CenterTest()
    {
        start.dataDispatchers = 0;
        expectStart(start);
        center = WebMsgCenter::instance();
        log.clear();
    }

    /// The bus delivers an event with one row, on the calling thread. The library ignores the event's name.
    static void deliver(const QVariant &type, const QVariantMap &row)
    {
        HostBus::deliverEvent(QStringLiteral("event"), type, packedRow(row));
    }

    /// The logged messages. Fails the test for one that is not at debug level and of the library's category.
    QStringList logged() const
    {
        QStringList messages;
        const QList<LogLine> lines = log.lines();
        for (const LogLine &line : lines) {
            EXPECT_EQ(line.type, QtDebugMsg) << qPrintable(line.message);
            EXPECT_EQ(line.category, QStringLiteral("varnel.websdk")) << qPrintable(line.message);
            EXPECT_FALSE(line.file.isEmpty() || line.function.isEmpty()) << qPrintable(line.message);
            messages << line.message;
        }
        return messages;
    }

    HostStart start;
    LogRecorder log;
    WebMsgCenter *center = nullptr;
};

/// Name and arguments of each event; fails the test for an argument that is not a text.
inline QStringList textsOf(const QList<ViewEvent> &events)
{
    QStringList texts;
    for (const ViewEvent &event : events) {
        texts << event.name;
        for (const QVariant &argument : event.arguments) {
            EXPECT_EQ(argument.userType(), int(QMetaType::QString)) << qPrintable(event.name);
            texts << argument.toString();
        }
    }
    return texts;
}

/// The views in the order in which events reached them.
inline QList<const QCefView *> receivers(const QList<ViewEvent> &events)
{
    QList<const QCefView *> views;
    for (const ViewEvent &event : events)
        views << event.view;
    return views;
}

/// A reply that succeeds and has no result.
inline QString bareReply(const QString &uuid = u"u1"_qs)
{
    return uR"({"code":"0","msg":"","uuid":"%1"})"_qs.arg(uuid);
}
