#include "bridge/HandlerTable.h"

#include "LogRecorder.h"
#include "SampleDispatchers.h"

#include <QThread>
#include <gtest/gtest.h>

namespace {

const QVariantList args{QStringLiteral("a")};

class HandlerTableTest : public testing::Test {
protected:
    const HandlerTable table{Dispatcher::staticMetaObject};
    LogRecorder log;
};

TEST_F(HandlerTableTest, RunsTheHandlerOfTheNameAtOnce)
{
    Dispatcher dispatcher;
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("other"), args));
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("slot"), args));
    EXPECT_EQ(dispatcher.calls, (QStringList{QStringLiteral("other a"), QStringLiteral("slot a")}));
}

/// For every name the table must do what Qt does.
TEST_F(HandlerTableTest, AnswersEveryNameAsQtDoes)
{
    const QStringList names{QStringLiteral("handle"),
                            QStringLiteral("Handle"),
                            QStringLiteral("handl"),
                            QStringLiteral("handle "),
                            QStringLiteral(" handle"),
                            QStringLiteral("\thandle"),
                            QStringLiteral("handle\n"),
                            QStringLiteral("han dle"),
                            QStringLiteral("handle(QVariantList)"),
                            QStringLiteral("handle") + QChar(0) + QStringLiteral("tail"),
                            QString(QChar(0)),
                            QString(),
                            QStringLiteral("ofAnotherKind"),
                            QStringLiteral("deleteLater"),
                            QStringLiteral("destroyed"),
                            QStringLiteral("objectNameChanged"),
                            QString::fromUtf8("ｈandle"),
                            QString(QChar(0xD800)),
                            QString(100000, QLatin1Char('h'))};
    for (const QString &name : names) {
        Dispatcher byQt;
        log.clear();
        const bool isKnown = QMetaObject::invokeMethod(&byQt, name.toStdString().c_str(), Qt::AutoConnection,
                                                       Q_ARG(const QVariantList &, args));
        const int lines = log.lines().size();

        Dispatcher dispatcher;
        log.clear();
        EXPECT_EQ(table.invoke(&dispatcher, name, args), isKnown) << qPrintable(name.left(40));
        EXPECT_EQ(dispatcher.calls, byQt.calls) << qPrintable(name.left(40));
        EXPECT_EQ(log.lines().size(), lines) << qPrintable(name.left(40));
    }
}

TEST_F(HandlerTableTest, CallsTheHandlerOfADerivedClass)
{
    OwnDispatcher dispatcher;
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("handle"), args));
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("other"), args));
    EXPECT_EQ(dispatcher.calls, (QStringList{QStringLiteral("its own"), QStringLiteral("other a")}));
}

TEST_F(HandlerTableTest, QueuesTheCallForADispatcherOfAnotherThread)
{
    QThread thread;
    Dispatcher dispatcher;
    dispatcher.moveToThread(&thread);
    EXPECT_TRUE(table.invoke(&dispatcher, QStringLiteral("handle"), args)); // nothing runs there yet
    EXPECT_EQ(dispatcher.calls, QStringList());
    QObject::connect(
        &thread, &QThread::started, &dispatcher, [&thread] { thread.quit(); }, Qt::QueuedConnection);
    thread.start();
    thread.wait();
    EXPECT_EQ(dispatcher.calls, QStringList{QStringLiteral("handle a")});
}

} // namespace
