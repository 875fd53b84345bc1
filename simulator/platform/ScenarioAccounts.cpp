#include "platform/ScenarioAccounts.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kMostCash = 1e12;
constexpr qint64 kMostQty = 1000000000;

const QMap<QString, Side> &sides(bool isFutures)
{
    static const QMap<QString, Side> futures{{QStringLiteral("BuyOpen"), Side::BuyOpen},
                                             {QStringLiteral("SellOpen"), Side::SellOpen},
                                             {QStringLiteral("BuyClose"), Side::BuyClose},
                                             {QStringLiteral("SellClose"), Side::SellClose}};
    static const QMap<QString, Side> others{{QStringLiteral("Buy"), Side::Buy}, {QStringLiteral("Sell"), Side::Sell}};
    return isFutures ? futures : others;
}

/// Null after a mistake.
const Instrument *readSymbol(JsonNode &node, bool isFutures, const QVector<Instrument> &securities, QString &symbol)
{
    const QString key = QStringLiteral("symbol");
    symbol = node.text(key);
    const auto found = std::find_if(securities.begin(), securities.end(),
                                    [&](const Instrument &security) { return security.symbol == symbol; });
    if (symbol.isEmpty())
        return nullptr;
    if (found == securities.end()) {
        node.fail(key, QStringLiteral("\"%1\" is not one of the securities").arg(symbol));
        return nullptr;
    }
    if ((found->kind == SecurityKind::Future) != isFutures) {
        node.fail(key, QStringLiteral("\"%1\" is not for this kind of account").arg(symbol));
        return nullptr;
    }
    return &*found;
}

double readPrice(JsonNode &node, const Instrument *security)
{
    const QString key = QStringLiteral("price");
    const double price = node.number(key).value_or(0);
    if (!security || security->tick <= 0)
        return price;
    const double ticks = price / security->tick;
    if (!(ticks >= 1 && ticks <= 1e9 && std::abs(ticks - std::round(ticks)) <= 1e-6))
        node.fail(key, QStringLiteral("must be a positive multiple of the tick"));
    return price;
}

qint64 readQty(JsonNode &node)
{
    return node.wholeNumber(QStringLiteral("qty"), 1, kMostQty).value_or(1);
}

GivenOpening::Held readPosition(JsonNode &node, bool isFutures, const QVector<Instrument> &securities)
{
    const QString direction = QStringLiteral("direction");
    GivenOpening::Held held{};
    const Instrument *security = readSymbol(node, isFutures, securities, held.symbol);
    const QString text = node.text(direction);
    held.isShort = text == QLatin1String("short");
    if (!text.isEmpty() && text != QLatin1String("long") && !held.isShort)
        node.fail(direction, QStringLiteral("must be \"long\" or \"short\""));
    else if (held.isShort && !isFutures)
        node.fail(direction, QStringLiteral("must be \"long\": only futures are held short"));
    held.qty = readQty(node);
    held.price = readPrice(node, security);
    node.finish();
    return held;
}

GivenOpening::Entered readOrder(JsonNode &node, bool isFutures, const QVector<Instrument> &securities)
{
    const QString side = QStringLiteral("side");
    GivenOpening::Entered order{};
    const Instrument *security = readSymbol(node, isFutures, securities, order.symbol);
    const QString text = node.text(side);
    if (!text.isEmpty() && !sides(isFutures).contains(text))
        node.fail(
            side,
            QStringLiteral("must be one of %1").arg(QStringList(sides(isFutures).keys()).join(QStringLiteral(", "))));
    order.side = sides(isFutures).value(text);
    order.qty = readQty(node);
    order.price = readPrice(node, security);
    node.finish();
    return order;
}

} // namespace

GivenOpening readGivenOpening(JsonNode &node, bool isFutures, const QVector<Instrument> &securities)
{
    const QString cash = QStringLiteral("cash");
    const QString positions = QStringLiteral("positions");
    const QString orders = QStringLiteral("orders");
    GivenOpening given;
    if (node.has(cash))
        given.cash = node.number(cash, 0, kMostCash);
    if (node.has(positions)) {
        given.positions.emplace();
        for (JsonNode &each : node.objectsIfAny(positions))
            given.positions->append(readPosition(each, isFutures, securities));
    }
    if (node.has(orders)) {
        for (JsonNode &each : node.objectsIfAny(orders))
            given.orders.append(readOrder(each, isFutures, securities));
    }
    return given;
}

} // namespace sim
