#include "Require.h"

#include "exchange/Exchange.h"
#include "exchange/Listing.h"
#include "platform/Scenario.h"
#include "platform/SimulatedClock.h"

#include <QRegularExpression>

#include <cstdint>

using namespace sim;

namespace {

constexpr int kMostSecurities = 30; ///< more are not played, because each takes its time

/// Each mistake is one line, and names a place in the text.
void checkMistakes(const QByteArray &text, const QString &error)
{
    static const QRegularExpression mistake(QStringLiteral("^file:([0-9]+):([0-9]+): .+$"));
    const QList<QByteArray> lines = text.split('\n');
    require(!error.isEmpty(), "a scenario was refused without a reason");
    for (const QString &told : error.split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch found = mistake.match(told);
        require(found.hasMatch(), "not a place and a problem: " + told.toUtf8());
        const int line = found.captured(1).toInt();
        const int column = found.captured(2).toInt();
        require(line >= 1 && line <= lines.size(), "no such line: " + told.toUtf8());
        require(column >= 1 && column <= lines[line - 1].size() + 1, "no such column: " + told.toUtf8());
    }
}

/// What was accepted can be played.
void play(const Scenario &scenario)
{
    require(!scenario.logins.isEmpty() && !scenario.fundAccounts.isEmpty(), "nobody can log in or trade");
    require(scenario.start.isValid(), "the scenario has no beginning");
    if (scenario.securities.size() + scenario.generatedSecurities > kMostSecurities)
        return;
    const SimulatedClock clock(scenario.start, 1);
    const QVector<Instrument> listed = listing(scenario.securities, scenario.generatedSecurities, scenario.seed,
                                               scenario.start.date(), scenario.rules);
    const Exchange exchange(listed, scenario.seed, scenario.start.date(), clock, scenario.rules);
    constexpr int kHour = 3600;
    for (const Instrument &instrument : exchange.instruments()) {
        const std::optional<Quote> quote = exchange.quote(instrument.symbol, scenario.start.addSecs(kHour));
        require(!quote || quote->last > 0, "a price is not positive");
        exchange.candles(instrument.symbol, scenario.start.addSecs(-kHour), scenario.start, CandlePeriod::Minute);
    }
}

} // namespace

/// Any text: either a scenario that can be played, or mistakes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(bytes), int(size));
    Scenario scenario;
    QString error;
    if (Scenario::parse(text, QStringLiteral("file"), scenario, error))
        play(scenario);
    else
        checkMistakes(text, error);
    return 0;
}
