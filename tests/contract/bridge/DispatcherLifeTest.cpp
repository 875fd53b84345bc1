#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"

#include "HostTest.h"
#include "RecordingView.h"

#include <QPointer>

#include <memory>

using testing::IsEmpty;

namespace {

class DispatcherLifeTest : public HostTest {};

TEST_F(DispatcherLifeTest, FirstDispatcherReadsTheDisplayModeBeforeTheMessageCenterIsMade)
{
    HostStart start;
    start.dataDispatchers = 0; // expected below
    expectStart(start);
    EXPECT_CALL(host, VarnelUtils_GetCurrentShowType()).WillOnce([] {
        EXPECT_THAT(HostBus::presenters(), IsEmpty());
        return GroupedShowType;
    });
    RecordingView view;
    new DataThread(&view); // goes with the view
    EXPECT_EQ(HostBus::presenters().size(), 1);
}

TEST_F(DispatcherLifeTest, DispatchersGoWithTheirView)
{
    expectStart();
    auto view = std::make_unique<RecordingView>();
    const QPointer<DataThread> data = new DataThread(view.get());
    const QPointer<TradeThread> trade = new TradeThread(view.get());
    view.reset();
    EXPECT_TRUE(data.isNull());
    EXPECT_TRUE(trade.isNull());
}

TEST_F(DispatcherLifeTest, DispatcherWithoutAViewEndsItsThreadWhenItGoes)
{
    expectStart();
    auto data = std::make_unique<DataThread>(nullptr);
    auto trade = std::make_unique<TradeThread>(nullptr);
    const QPointer<QThread> dataThread = data->thread();
    const QPointer<QThread> tradeThread = trade->thread();
    EXPECT_TRUE(dataThread->isRunning());
    EXPECT_TRUE(tradeThread->isRunning());
    data.reset(); // destroying a thread that runs would abort
    trade.reset();
    EXPECT_TRUE(dataThread.isNull());
    EXPECT_TRUE(tradeThread.isNull());
}

} // namespace
