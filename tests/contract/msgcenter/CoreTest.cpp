#include "msgcenter/WebMsgCenter.h"

#include "HostQuotes.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "RecordingView.h"

#include <QMetaMethod>
#include <QSignalSpy>

#include <memory>

using testing::ElementsAre;

namespace {

class CoreTest : public HostTest {
protected:
    CoreTest()
    {
        HostStart start;
        start.dataDispatchers = 0;
        expectStart(start);
    }
};

TEST_F(CoreTest, FirstInstanceIsAWholePresenterBeforeItReturns)
{
    // The fixture's expectations are the rest of this test: the login account is asked for, then the eight
    // events are subscribed in their order, with the presenter's own address and mode 1, then the permissions loaded.
    EXPECT_EQ(tickReceivers(), 0);
    WebMsgCenter *center = WebMsgCenter::instance();
    EXPECT_EQ(center, WebMsgCenter::instance());
    EXPECT_EQ(tickReceivers(), 1);
    EXPECT_EQ(HostBus::presenter().presenter, center);
    EXPECT_EQ(HostBus::presenter().name, QStringLiteral("WebWebMsgCenter"));
    EXPECT_EQ(HostBus::presenter().name.size(), 15);
    EXPECT_EQ(HostBus::presenter().parent, nullptr);
    EXPECT_EQ(int(HostBus::presenter().threadType), 15);
    EXPECT_EQ(center->thread(), QThread::currentThread());
}

TEST_F(CoreTest, MetaMethodsHaveTheirKindsNamesAndParameterNames)
{
    WebMsgCenter::instance();
    const QMetaObject &meta = WebMsgCenter::staticMetaObject;
    EXPECT_STREQ(meta.className(), "WebMsgCenter");
    EXPECT_STREQ(meta.superClass()->className(), "QvPresenterClass");

    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QStringList parameters;
        for (const QByteArray &name : method.parameterNames())
            parameters << QString::fromLatin1(name);
        methods << QStringLiteral("%1 %2 %3")
                       .arg(int(method.methodType()))
                       .arg(QString::fromLatin1(method.methodSignature()), parameters.join(QLatin1Char(',')))
                       .trimmed();
    }
    const auto strategyCall = [](const char *name) {
        return QStringLiteral("0 %1(QVariantList,VarnelCefView*) arguments,panelPtr").arg(QLatin1String(name));
    };
    EXPECT_THAT(methods,
                ElementsAre(QStringLiteral("1 signalAssetDetailChanged(QVariantMap) detailMap"),
                            QStringLiteral("1 signalKLineDataRcv(QString,QList<QVariantMap>) clientMsgID,dataList"),
                            QStringLiteral("1 signalParseEventMsg(QVariant,QVariantMap) type,dataMap"),
                            QStringLiteral("2 slotTickDataUpdate(QString,QVariantMap) symbol,data"),
                            QStringLiteral("2 slotEntrustTimeout()"), QStringLiteral("2 slotExecutionTimeout()"),
                            QStringLiteral("2 slotParseEventMsg(QVariant,QVariantMap) type,dataMap"),
                            strategyCall("Vlx_startStrategy_REQ"), strategyCall("Vlx_stopStrategy_REQ"),
                            strategyCall("Vlx_subStrategyMsg_REQ"), strategyCall("Vlx_sendCustomInfo_REQ"),
                            strategyCall("Vlx_queryStrategyStatus_REQ"), QStringLiteral("0 AsyncInit()"),
                            QStringLiteral("0 AsyncStartEntrustTimer()"),
                            QStringLiteral("0 AsyncStartExecutionTimer()")));
}

TEST_F(CoreTest, UnRegLogsTheAddressAndNeverFollowsThePointer)
{
    WebMsgCenter *center = WebMsgCenter::instance();
    auto view = std::make_unique<RecordingView>();
    VarnelCefView *const stale = view.get();
    center->reg(stale);
    center->reg(stale);
    view.reset();

    const LogRecorder log;
    center->unReg(stale);
    center->unReg(stale); // no longer there: only logs
    ASSERT_EQ(log.lines().size(), 2);
    for (const LogLine &line : log.lines()) {
        EXPECT_EQ(line.type, QtDebugMsg);
        EXPECT_EQ(line.category, QStringLiteral("varnel.websdk"));
        QString expected;
        QDebug(&expected) << "WebMsgCenter::unReg" << static_cast<const void *>(stale);
        EXPECT_EQ(line.message, expected.trimmed());
        EXPECT_FALSE(line.file.startsWith(QLatin1Char('/'))) << "a path of the build machine";
        EXPECT_TRUE(line.file.endsWith(QStringLiteral("src/msgcenter/Core.cpp"))) << qPrintable(line.file);
        EXPECT_GT(line.line, 0);
        EXPECT_TRUE(line.function.contains(QStringLiteral("unReg")));
    }
}

TEST_F(CoreTest, UnRegOfUnknownAndNullPointersOnlyLogs)
{
    WebMsgCenter *center = WebMsgCenter::instance();
    RecordingView stranger;
    const LogRecorder log;
    center->unReg(&stranger);
    center->unReg(nullptr);
    EXPECT_EQ(log.linesWith(QStringLiteral("WebMsgCenter::unReg")).size(), 2);
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(stranger.eventsAfterDraining().isEmpty());
}

TEST_F(CoreTest, RegLogsNothing)
{
    WebMsgCenter *center = WebMsgCenter::instance();
    RecordingView view;
    const LogRecorder log;
    center->reg(&view);
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
    center->unReg(&view);
}

TEST_F(CoreTest, AsyncCallBacksDoNothing)
{
    WebMsgCenter *center = WebMsgCenter::instance();
    RecordingView view;
    center->reg(&view);
    QSignalSpy spy(center, &WebMsgCenter::signalKLineDataRcv);
    const LogRecorder log;
    HostBus::deliverAsyncCallBack(1, QString(), QStringLiteral("KLineResponse"), QVariantList{QVariantMap()});
    EXPECT_TRUE(spy.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(view.eventsAfterDraining().isEmpty());
    center->unReg(&view);
}

} // namespace
