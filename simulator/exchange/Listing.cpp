#include "exchange/Listing.h"

#include "exchange/Names.h"

#include <QSet>

#include <cmath>
#include <functional>

namespace sim {

namespace {

using random::Sequence;

const QString kIndexFuture = QStringLiteral("IndexFuture");
const QString kCommodityFuture = QStringLiteral("CommodityFuture");

/// Made-up securities of one sub-type; their codes are a prefix and a running number.
struct Series {
    int share; ///< per cent of all made-up securities; the rest to 100 are futures
    QString prefix;
    QString exchange;
    QString subType;
    double cheapest;
    double dearest;
    std::function<SpelledName(Sequence &)> name;
};

SpelledName company(Sequence &chance)
{
    const SpelledName stem = madeUpStem(chance);
    return stem + madeUpBusiness(chance);
}

SpelledName tradedFund(Sequence &chance)
{
    const SpelledName stem = madeUpStem(chance);
    return stem + madeUpTheme(chance) + SpelledName{QStringLiteral("ETF"), QStringLiteral("ETF")};
}

SpelledName openFund(Sequence &chance)
{
    const SpelledName stem = madeUpStem(chance);
    return stem + madeUpTheme(chance) + SpelledName{QStringLiteral("LOF"), QStringLiteral("LOF")};
}

SpelledName convertible(Sequence &chance)
{
    return madeUpStem(chance) + SpelledName{QStringLiteral("转债"), QStringLiteral("ZZ")};
}

SpelledName treasury(Sequence &chance)
{
    return madeUpStem(chance) + SpelledName{QStringLiteral("国债"), QStringLiteral("GZ")};
}

const QVector<Series> &allSeries()
{
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    const QString sh = text("SH");
    const QString sz = text("SZ");
    // clang-format off
    static const QVector<Series> series{
        // % prefix      exch. sub-type                    from  to   name
        {27, text("609"), sh, text("MainShare"),          3,    90,  company},
        {20, text("009"), sz, text("MainShare"),          3,    60,  company},
        {10, text("689"), sh, text("GrowthShare"),        12,   150, company},
        {12, text("309"), sz, text("GrowthShare"),        8,    120, company},
        {8,  text("519"), sh, text("ExchangeTradedFund"), 0.7,  6,   tradedFund},
        {4,  text("189"), sz, text("ListedOpenFund"),     0.8,  2.5, openFund},
        {4,  text("119"), sh, text("ConvertibleBond"),    98,   180, convertible},
        {4,  text("129"), sz, text("ConvertibleBond"),    98,   180, convertible},
        {2,  text("029"), sh, text("TreasuryBond"),       97,   106, treasury},
    };
    // clang-format on
    return series;
}

/// The underlying of futures. Each has one contract for each of the coming months.
struct Product {
    QString code;
    QString exchange;
    SpelledName name;
    QString subType;
    double tick; ///< where the sub-type has none
    double price;
    double multiplier;
    qint64 dailyVolume; ///< of the nearest month
};

const QVector<Product> &allProducts()
{
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    const QString cf = text("CF");
    // clang-format off
    static const QVector<Product> products{
        {text("YL"), cf, {text("云岭股指"), text("YLGZ")}, kIndexFuture,     0.2,  3880,  300,  72000},
        {text("QH"), cf, {text("青禾股指"), text("QHGZ")}, kIndexFuture,     0.2,  6120,  200,  54000},
        {text("NM"), cf, {text("南禾棉纱"), text("NHMS")}, kCommodityFuture, 5,    13600, 5,    310000},
        {text("ZT"), cf, {text("渚溪精铜"), text("ZXJT")}, kCommodityFuture, 10,   76200, 5,    120000},
        {text("XT"), cf, {text("玄峦铁砂"), text("XLTS")}, kCommodityFuture, 0.5,  812,   100,  280000},
        {text("JT"), cf, {text("霁棠白糖"), text("JTBT")}, kCommodityFuture, 1,    5940,  10,   260000},
        {text("LG"), cf, {text("蓼荻黄金"), text("LDHJ")}, kCommodityFuture, 0.02, 682,   1000, 150000},
    };
    // clang-format on
    return products;
}

class Lister {
public:
    Lister(const QVector<Instrument> &given, quint64 seed, const QDate &start, const MarketRules &rules)
        : m_chance(random::subkey(seed, random::hash(QStringLiteral("listing"))))
        , m_start(start)
        , m_rules(rules)
        , m_listed(given)
    {
        for (const Instrument &instrument : given) {
            m_codes.insert({instrument.securityId, instrument.exchange});
            m_symbols.insert(instrument.symbol);
            m_names.insert(instrument.name);
        }
    }

    void add(const Series &series, int count);
    void addFutures(int count);

    const QVector<Instrument> &listed() const { return m_listed; }

private:
    bool isNew(const QString &securityId, const QString &exchange) const
    {
        return !m_codes.contains({securityId, exchange}) && !m_symbols.contains(symbolOf(securityId, exchange));
    }

    static QString symbolOf(const QString &securityId, const QString &exchange)
    {
        return securityId + QLatin1Char('.') + exchange;
    }

    Instrument begin(const QString &securityId, const QString &exchange, const SpelledName &name,
                     const QString &subType) const;
    SpelledName newName(const Series &series, int number);
    void addContract(const Product &product, const QDate &month, int monthsAhead);
    void list(const Instrument &instrument);

    Sequence m_chance;
    const QDate m_start;
    const MarketRules &m_rules;
    QVector<Instrument> m_listed;
    QSet<QPair<QString, QString>> m_codes;
    QSet<QString> m_symbols;
    QSet<QString> m_names;
};

Instrument Lister::begin(const QString &securityId, const QString &exchange, const SpelledName &name,
                         const QString &subType) const
{
    Instrument instrument;
    instrument.symbol = symbolOf(securityId, exchange);
    instrument.securityId = securityId;
    instrument.exchange = exchange;
    instrument.name = name.name;
    instrument.spellCode = name.spellCode;
    m_rules.securityClass(subType).value().applyTo(instrument);
    return instrument;
}

void Lister::list(const Instrument &instrument)
{
    m_codes.insert({instrument.securityId, instrument.exchange});
    m_symbols.insert(instrument.symbol);
    m_names.insert(instrument.name);
    m_listed.append(instrument);
}

/// There are fewer names than a long list needs, so that later ones get a number behind them.
SpelledName Lister::newName(const Series &series, int number)
{
    constexpr int kTries = 20;
    SpelledName name = series.name(m_chance);
    for (int tries = 1; m_names.contains(name.name); ++tries) {
        name = series.name(m_chance);
        if (tries >= kTries)
            name = name + SpelledName{QString::number(number), QString()};
    }
    return name;
}

void Lister::add(const Series &series, int count)
{
    constexpr double kSmallestTurnover = 4e7; // money a day
    constexpr double kLargestTurnover = 2e9;
    const auto between = [&](double from, double to) { // small values are more frequent than large ones
        return from * std::pow(to / from, m_chance.from0To1());
    };

    for (int number = 0; count > 0; ++number) {
        const QString securityId = series.prefix + QString::number(number).rightJustified(3, QLatin1Char('0'));
        if (!isNew(securityId, series.exchange))
            continue;
        const SpelledName name = newName(series, number);

        Instrument instrument = begin(securityId, series.exchange, name, series.subType);
        instrument.price =
            instrument.priceOf(qMax<qint64>(1, instrument.ticksOf(between(series.cheapest, series.dearest))));
        instrument.dailyVolume = qint64(between(kSmallestTurnover, kLargestTurnover) / instrument.price);
        if (instrument.kind == SecurityKind::Bond)
            instrument.interest = double(m_chance.whole(1, 35000)) / 10000;
        instrument.listed = m_start.addDays(-m_chance.whole(60, 9000));
        list(instrument);
        --count;
    }
}

void Lister::addContract(const Product &product, const QDate &month, int monthsAhead)
{
    const QString code = month.toString(QStringLiteral("yyMM"));
    const SpelledName name = product.name + SpelledName{code, code};
    Instrument contract = begin(product.code + code, product.exchange, name, product.subType);
    if (m_rules.securityClass(product.subType)->tick <= 0) {
        contract.tick = product.tick;
        contract.decimals = decimalsOf(product.tick);
    }
    const double carry = 1 + 0.002 * monthsAhead + 0.002 * m_chance.from0To1(); // later months cost a little more
    contract.price = contract.priceOf(qMax<qint64>(1, contract.ticksOf(product.price * carry)));
    contract.multiplier = product.multiplier;
    contract.dailyVolume = qMax<qint64>(500, product.dailyVolume >> qMin(monthsAhead / 2, 62)); // and trade less
    contract.listed = m_start.addDays(-m_chance.whole(30, 300));
    list(contract);
}

void Lister::addFutures(int count)
{
    const QDate thisMonth(m_start.year(), m_start.month(), 1);
    for (int ahead = 0; count > 0; ++ahead) {
        const QDate month = thisMonth.addMonths(ahead);
        for (const Product &product : allProducts()) {
            if (count == 0)
                break;
            if (!isNew(product.code + month.toString(QStringLiteral("yyMM")), product.exchange))
                continue;
            addContract(product, month, ahead);
            --count;
        }
    }
}

} // namespace

QVector<Instrument> listing(const QVector<Instrument> &given, int generated, quint64 seed, const QDate &start,
                            const MarketRules &rules)
{
    Lister lister(given, seed, start, rules);
    int left = generated;
    for (const Series &series : allSeries()) {
        const int count = generated * series.share / 100;
        lister.add(series, count);
        left -= count;
    }
    lister.addFutures(left);
    return lister.listed();
}

} // namespace sim
