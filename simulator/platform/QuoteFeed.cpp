#include "platform/QuoteFeed.h"

#include "platform/SimulatedClock.h"

namespace sim {

namespace {

/// Pause after each step in real time, however fast the simulated time runs.
constexpr std::chrono::milliseconds kPause(20);

} // namespace

QuoteFeed::QuoteFeed(const Exchange &exchange, const SimulatedClock &clock, StepListener onStep, TickListener onTick)
    : m_exchange(exchange)
    , m_clock(clock)
    , m_onStep(std::move(onStep))
    , m_onTick(std::move(onTick))
    , m_acknowledged([this] {
        const std::lock_guard lock(m_mutex);
        m_unacknowledged = false;
        m_wake.notify_all();
    })
    , m_step(exchange.stepAt(clock.now()))
    , m_pausedUntil(RealClock::now())
{
    m_thread = std::thread([this] { run(); });
}

QuoteFeed::~QuoteFeed()
{
    stop();
}

void QuoteFeed::stream(const QStringList &symbols)
{
    const std::lock_guard lock(m_mutex);
    for (const QString &symbol : symbols) {
        if (!m_exchange.instrument(symbol))
            continue;
        m_streamed.insert(symbol);
        m_due.insert(symbol);
    }
    m_wake.notify_all();
}

void QuoteFeed::stopStreaming(const QStringList &symbols)
{
    const std::lock_guard lock(m_mutex);
    for (const QString &symbol : symbols) {
        m_streamed.erase(symbol);
        m_due.erase(symbol);
    }
}

void QuoteFeed::timeMoved()
{
    const std::lock_guard lock(m_mutex);
    m_wake.notify_all();
}

void QuoteFeed::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void QuoteFeed::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        const RealClock::time_point next = nextStep();
        if (next <= RealClock::now())
            reportStep(lock);
        else if (!m_due.empty() && !m_unacknowledged)
            sendTicks(lock);
        else
            m_wake.wait_until(lock, next);
    }
}

QuoteFeed::RealClock::time_point QuoteFeed::nextStep() const
{
    const RealClock::time_point due = RealClock::now() + m_clock.realTimeUntil(m_exchange.timeOfStep(m_step + 1));
    return std::max(due, m_pausedUntil);
}

void QuoteFeed::reportStep(std::unique_lock<std::mutex> &lock)
{
    const qint64 quotesBefore = steps::ofQuote(m_step);
    m_step = m_exchange.stepAt(m_clock.now());
    lock.unlock();
    m_onStep(m_exchange.timeOfStep(m_step));
    lock.lock();
    if (steps::ofQuote(m_step) != quotesBefore)
        m_due = m_streamed;
    m_pausedUntil = RealClock::now() + kPause;
}

void QuoteFeed::sendTicks(std::unique_lock<std::mutex> &lock)
{
    std::set<QString> due;
    due.swap(m_due);
    m_unacknowledged = true;
    lock.unlock();
    const QDateTime time = m_exchange.timeOfStep(m_step);
    for (const QString &symbol : due) {
        if (const std::optional<Quote> quote = m_exchange.quote(symbol, time)) // none before the first trading day
            m_onTick(*quote);
    }
    m_acknowledged.post();
    lock.lock();
}

} // namespace sim
