#include "platform/ScenarioRules.h"

namespace sim {

namespace {

constexpr qint64 kMaxQty = 1000000000;
constexpr double kMaxFee = 10000;
constexpr double kMaxTick = 1000;

/// The most volatility for a price limit, as a multiple of it: see standardClasses().
constexpr double kVolatilityPerLimit = 6;

template <typename Owner, typename Value>
struct Key {
    const char *name;
    Value Owner::*member;
};

constexpr Key<SecurityClass, double> kRates[] = {{"priceLimit", &SecurityClass::limitRate},
                                                 {"fee", &SecurityClass::feeRate},
                                                 {"saleTax", &SecurityClass::saleTaxRate},
                                                 {"margin", &SecurityClass::marginRate}};

constexpr Key<SecurityClass, qint64> kQuantities[] = {{"step", &SecurityClass::lot},
                                                      {"smallest", &SecurityClass::minQty},
                                                      {"largest", &SecurityClass::maxQty},
                                                      {"shownStep", &SecurityClass::displayStep}};

constexpr Key<SecurityClass, bool> kSwitches[] = {{"soldSameDay", &SecurityClass::soldSameDay},
                                                  {"afterHours", &SecurityClass::afterHours}};

constexpr Key<MarketRules, double> kParts[] = {{"unlimitedRise", &MarketRules::unlimitedRise},
                                               {"participation", &MarketRules::participation},
                                               {"openingParticipation", &MarketRules::openingParticipation}};

/// Reads the numbers from 0 to 1 that are there. The others stay as they are.
template <typename Owner, size_t size>
void readParts(JsonNode &node, const Key<Owner, double> (&keys)[size], Owner &owner)
{
    for (const auto &[name, member] : keys) {
        const QString key = QString::fromLatin1(name);
        if (node.has(key))
            owner.*member = node.number(key, 0, 1).value_or(owner.*member);
    }
}

void readClass(JsonNode &node, SecurityClass &securityClass)
{
    readParts(node, kRates, securityClass);
    for (const auto &[name, member] : kQuantities) {
        const QString key = QString::fromLatin1(name);
        if (node.has(key))
            securityClass.*member = node.wholeNumber(key, 1, kMaxQty).value_or(securityClass.*member);
    }
    const QString minimumFee = QStringLiteral("minimumFee");
    if (node.has(minimumFee))
        securityClass.minFee = node.number(minimumFee, 0, kMaxFee).value_or(0);
    const QString tick = QStringLiteral("tick");
    if (node.has(tick)) {
        const double wanted = node.number(tick, 0.0001, kMaxTick).value_or(securityClass.tick);
        if (decimalsOf(wanted) < 0)
            node.fail(tick, QStringLiteral("must be a multiple of 0.0001"));
        else
            securityClass.tick = wanted;
    }
    for (const auto &[name, member] : kSwitches) {
        const QString key = QString::fromLatin1(name);
        if (node.has(key))
            securityClass.*member = node.boolean(key);
    }
    node.finish();
    if (securityClass.minQty > securityClass.maxQty)
        node.fail(QStringLiteral("smallest"), QStringLiteral("must not be more than the largest order"));

    // A narrower limit calms the prices, so that they stay inside it.
    if (securityClass.limitRate > 0)
        securityClass.volatility = qMin(securityClass.volatility, kVolatilityPerLimit * securityClass.limitRate);
}

} // namespace

MarketRules readRules(JsonNode &root)
{
    const QString key = QStringLiteral("rules");
    const QString subTypes = QStringLiteral("subTypes");
    MarketRules rules;
    std::optional<JsonNode> node;
    if (root.has(key))
        node = root.object(key);
    if (!node)
        return rules;
    readParts(*node, kParts, rules);
    std::optional<JsonNode> classes;
    if (node->has(subTypes))
        classes = node->object(subTypes);
    node->finish();
    if (!classes)
        return rules;
    for (SecurityClass &securityClass : rules.classes) {
        if (!classes->has(securityClass.subType))
            continue;
        if (std::optional<JsonNode> one = classes->object(securityClass.subType))
            readClass(*one, securityClass);
    }
    classes->finish();
    return rules;
}

} // namespace sim
