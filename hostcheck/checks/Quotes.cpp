#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "CommonQuotaHandler.h"
#include "Tessar_Fields.h"

#include <memory>

namespace HostCheck {

namespace {

CommonQuotaHandler &quotes()
{
    return present(CommonQuotaHandler::instance());
}

struct Tick {
    QString symbol;
    QVariantMap data;
};

/// Collects ticks as the library does: on the main thread, whatever thread emits them.
class Ticks {
public:
    Ticks()
    {
        QObject::connect(&quotes(), &CommonQuotaHandler::sigTickDataUpdate, &m_receiver,
                         [this](const QString &symbol, const QVariantMap &data) {
                             m_ticks.append({symbol, data});
                         });
    }

    /// Waits for a tick of the symbol; of any one if it is empty. Null when none comes.
    const Tick *await(const QString &symbol)
    {
        const auto find = [&]() -> const Tick * {
            for (const Tick &tick : qAsConst(m_ticks)) {
                if (symbol.isEmpty() || tick.symbol == symbol)
                    return &tick;
            }
            return nullptr;
        };
        waitUntil([&] { return find(); });
        return find();
    }

private:
    QObject m_receiver;
    QList<Tick> m_ticks;
};

const char *const kStreams = "a quote comes through sigTickDataUpdate after SubscribeQuota";
const char *const kNothing = "nothing came; outside trading hours a host may have nothing to send";

/// The first tick after a subscription. Asked for once for all checks that look at it; null when none came.
const Tick *firstTick(const KnownValues &known)
{
    static const std::unique_ptr<const Tick> tick = [&]() -> std::unique_ptr<const Tick> {
        Ticks ticks;
        quotes().SubscribeQuota({known.symbol}, true, 0);
        const Tick *const first = ticks.await(QString());
        return first ? std::make_unique<const Tick>(*first) : nullptr;
    }();
    return tick.get();
}

const Tick &arrivedTick(const KnownValues &known)
{
    const Tick *const tick = firstTick(known);
    if (!tick)
        skip(QStringLiteral("no quote comes: see quotes.stream"));
    return *tick;
}

QVariantMap snapshotOf(const KnownValues &known)
{
    return quotes().GetQuotaSnapshot(known.symbol, 0);
}

void snapshot(const KnownValues &known)
{
    expect(!snapshotOf(known).isEmpty(), "GetQuotaSnapshot gives the fields of a quote",
           QStringLiteral("an empty map"));
}

void snapshotNamesTheSymbol(const KnownValues &known)
{
    if (snapshotOf(known).isEmpty())
        skip(QStringLiteral("there is no snapshot: see quotes.snapshot"));
    const QVariant symbol = snapshotOf(known).value(Tessar_Fields::Security::symbol);
    expect(symbol.toString() == known.symbol, "a snapshot has its symbol under Security::symbol", shown(symbol));
}

void snapshotFitsJson(const KnownValues &known)
{
    expectFitsJson(snapshotOf(known));
}

void quantityUnit(const KnownValues &known)
{
    const int unit = quotes().GetQtyUnit(known.symbol);
    expect(unit > 0, "GetQtyUnit gives the shares in a unit of a quoted quantity", QString::number(unit));
}

void stream(const KnownValues &known)
{
    expect(firstTick(known), kStreams, QString::fromUtf8(kNothing));
}

void ticksNameTheSymbol(const KnownValues &known)
{
    const QString symbol = arrivedTick(known).symbol;
    expect(symbol == known.symbol, "a quote is sent under the symbol that was subscribed, letter for letter",
           shown(symbol));
}

void ticksHaveFields(const KnownValues &known)
{
    expect(!arrivedTick(known).data.isEmpty(), "a quote that is sent has fields", QStringLiteral("an empty map"));
}

void ticksFitJson(const KnownValues &known)
{
    expectFitsJson(arrivedTick(known).data);
}

void againStreams(const KnownValues &known)
{
    const QString symbol = arrivedTick(known).symbol;
    Ticks ticks;
    quotes().SubscribeQuota({known.symbol}, true, 0);
    expect(ticks.await(symbol), "a symbol streams on when it is subscribed again", QString::fromUtf8(kNothing));
}

void besideUnknownStreams(const KnownValues &known)
{
    const QString symbol = arrivedTick(known).symbol;
    Ticks ticks;
    quotes().SubscribeQuota({kUnknown, known.symbol}, true, 0);
    expect(ticks.await(symbol), "a symbol streams when an unknown one is subscribed with it",
           QString::fromUtf8(kNothing));
}

} // namespace

CheckTable quoteChecks()
{
    return {
        {"quotes.snapshot", "Pages get empty quotes.", snapshot, Part::Basic, Symbol},
        {"quotes.snapshot-names-the-symbol", "Pages cannot tell which security a quote is of.", snapshotNamesTheSymbol,
         Part::Basic, Symbol},
        {"quotes.snapshot-fits-json", "Pages get null for a part of the quote.", snapshotFitsJson, Part::Basic, Symbol},
        {"quotes.quantity-unit", "Pages show quoted quantities in the wrong unit.", quantityUnit, Part::Basic, Symbol},
        {"quotes.stream", "Pages get no quotes for their subscriptions.", stream, Part::Login, Symbol},
        {"quotes.ticks-name-the-symbol", "Pages get no quotes, because nobody has subscribed to the other spelling.",
         ticksNameTheSymbol, Part::Login, Symbol},
        {"quotes.ticks-have-fields", "Pages get empty quotes.", ticksHaveFields, Part::Login, Symbol},
        {"quotes.ticks-fit-json", "Pages get null for a part of the quote.", ticksFitJson, Part::Login, Symbol},
        {"quotes.stream-again", "The second page that subscribes to a security ends the quotes of the first.",
         againStreams, Part::Login, Symbol},
        {"quotes.stream-beside-unknown", "One mistyped symbol keeps a page from getting any quote.",
         besideUnknownStreams, Part::Login, Symbol},
    };
}

} // namespace HostCheck
