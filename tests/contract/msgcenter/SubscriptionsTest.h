#pragma once

#include "CenterTest.h"

#include "HostQuotes.h"

/// Base of the tests of quote subscriptions and their pushes; the view is not registered yet.
class SubscriptionsTest : public CenterTest {
protected:
    /// Subscribes while the quote handler agrees; the reply is cleared away.
    void subscribe(RecordingView &of, const QStringList &symbols)
    {
        EXPECT_CALL(host, CommonQuotaHandler_SubscribeQuota(symbols, true, 0))
            .WillOnce(testing::Return(0))
            .RetiresOnSaturation();
        center->subscribe(&of, u"u1"_qs, symbols);
        EXPECT_THAT(textsOf(of.events()), testing::ElementsAre(u"Sub_subscribe_RES"_qs, bareReply()));
        of.clear();
    }

    void subscribeRegistered(RecordingView &of, const QStringList &symbols)
    {
        center->reg(&of);
        subscribe(of, symbols);
    }

    /// What the view gets of one tick.
    QStringList ticksOf(RecordingView &of, const QString &symbol) const
    {
        of.clear();
        emitTick(symbol, quote);
        return textsOf(of.eventsAfterDraining());
    }

    const QVariantMap quote{{u"last"_qs, 7.25}};
    const QString quoteText = uR"({"last":7.25})"_qs;
    const QString tick = u"on_tickUpdate"_qs;
    RecordingView view;
};
