#include "platform/ScenarioDays.h"

namespace sim {

namespace {

const QString kDateFormat = QStringLiteral("yyyy-MM-dd");

} // namespace

QDateTime readDateTime(JsonNode &node, const QString &key)
{
    const QString text = node.text(key);
    QDateTime time = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    if (!time.isValid() && !text.isEmpty())
        node.fail(key, QStringLiteral("must be a date and time like 2025-03-03 10:00:00"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

QDate readDate(JsonNode &node, const QString &key)
{
    const QString text = node.text(key);
    const QDate date = QDate::fromString(text, kDateFormat);
    if (!date.isValid() && !text.isEmpty())
        node.fail(key, QStringLiteral("must be a date like 2015-01-05"));
    return date;
}

QVector<QDate> readHolidays(JsonNode &root)
{
    const QString key = QStringLiteral("holidays");
    QVector<QDate> holidays;
    const QStringList texts = root.has(key) ? root.textsIfAny(key) : QStringList();
    for (const QString &text : texts) {
        const QDate date = QDate::fromString(text, kDateFormat);
        if (!date.isValid())
            root.fail(key, QStringLiteral("\"%1\" must be a date like 2015-01-05").arg(text));
        holidays.append(date);
    }
    return holidays;
}

QVector<Halt> readHalts(JsonNode &root, const std::function<bool(const QString &)> &isListed)
{
    const QString symbol = QStringLiteral("symbol");
    const QString until = QStringLiteral("until");
    const QString key = QStringLiteral("halts");
    QVector<Halt> halts;
    if (!root.has(key))
        return halts;
    for (JsonNode &node : root.objectsIfAny(key)) {
        Halt halt;
        halt.symbol = node.text(symbol);
        halt.from = readDateTime(node, QStringLiteral("from"));
        if (node.has(until)) {
            halt.until = readDateTime(node, until);
            if (halt.from.isValid() && halt.until.isValid() && halt.until <= halt.from)
                node.fail(until, QStringLiteral("must be after the beginning of the halt"));
        }
        node.finish();
        if (!halt.symbol.isEmpty() && !isListed(halt.symbol))
            node.fail(symbol, QStringLiteral("\"%1\" is not one of the securities").arg(halt.symbol));
        halts.append(halt);
    }
    return halts;
}

} // namespace sim
