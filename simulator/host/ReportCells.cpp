#include "host/ReportCells.h"

#include "Tessar_Fields.h"
#include "services/TimeTexts.h"
#include "services/TradeCodes.h"
#include "terminal/Terminal.h"

#include <QLocale>

#include <cmath>

namespace sim {

namespace {

const QString kDisplayRole = QString::number(Qt::DisplayRole);
const QString kUserRole = QString::number(Qt::UserRole);

constexpr int kUnknownDecimals = 2;
constexpr int kMoneyDecimals = 2;
constexpr int kMostDecimals = 4; // of average prices, and of rates in percent

/// Rounded to that many decimals, to remove the rounding errors of sums.
double rounded(double value, int decimals)
{
    const double scale = std::pow(10, decimals);
    return std::round(value * scale) / scale;
}

QString numberText(double value, int decimals, ShowType showType)
{
    static const QLocale grouping(QLocale::English, QLocale::UnitedStates);
    return showType == GroupedShowType ? grouping.toString(value, 'f', decimals)
                                       : QString::number(value, 'f', decimals);
}

QString exchangeName(const QString &code)
{
    static const QHash<QString, QString> names{{QStringLiteral("SH"), QStringLiteral("上海")},
                                               {QStringLiteral("SZ"), QStringLiteral("深圳")},
                                               {QStringLiteral("CF"), QStringLiteral("期货")}};
    return names.value(code, code);
}

QString directionOf(const QString &side)
{
    const std::optional<Side> value = sideCodes().value(side);
    return value ? sideCodes().code(isBuy(*value) ? Side::Buy : Side::Sell) : side;
}

QVariantMap cell(const QVariant &display, const QVariant &user)
{
    return {{kDisplayRole, display}, {kUserRole, user}};
}

QVariantMap numberCell(double value, int shown, int kept, ShowType showType)
{
    return cell(numberText(value, shown, showType), rounded(value, kept));
}

QVariantMap cellOf(const QVariant &value, CellFormat format, int decimals, ShowType showType)
{
    const QString text = value.toString();
    switch (format) {
    case CellFormat::Text:
        return cell(text, value);
    case CellFormat::Time:
        return cell(TimeTexts::timeOfDay(text), value);
    case CellFormat::Qty:
        return cell(numberText(value.toDouble(), 0, showType), value);
    case CellFormat::Limit:
        if (value.toDouble() <= 0)
            return cell(priceTypeCodes().words(priceTypeCodes().code(PriceType::Market)), value);
        [[fallthrough]];
    case CellFormat::Price:
        return numberCell(value.toDouble(), decimals, kMostDecimals, showType);
    case CellFormat::Money:
        return numberCell(value.toDouble(), kMoneyDecimals, kMoneyDecimals, showType);
    case CellFormat::Rate: {
        const QString percent = numberText(value.toDouble() * 100, 2, showType) + QLatin1Char('%');
        return cell(percent, rounded(value.toDouble(), kMostDecimals + 2));
    }
    case CellFormat::Exchange:
        return cell(exchangeName(text), value);
    case CellFormat::Trader:
        return cell(Terminal::instance().accounts().traders().value(text, text), value);
    case CellFormat::Direction:
        return cell(sideCodes().words(directionOf(text)), directionOf(text));
    case CellFormat::Side:
        return cell(sideCodes().words(text), value);
    case CellFormat::Status:
        return cell(orderStatusCodes().words(text), value);
    case CellFormat::PriceType:
        return cell(priceTypeCodes().words(text), value);
    }
    return {};
}

} // namespace

void fillCells(QMap<int, QVariantMap> &lineData, const QStringList &fields, const ReportColumns &columns,
               const QVariantMap &record, ShowType showType)
{
    const QString symbol = record.value(Tessar_Fields::Security::symbol).toString();
    const Instrument *instrument = Terminal::instance().exchange().instrument(symbol);
    const int decimals = instrument ? instrument->decimals : kUnknownDecimals;
    for (int i = 0; i < fields.size(); ++i) {
        const auto column = columns.constFind(fields[i]);
        if (column == columns.cend())
            continue;
        const auto value = record.constFind(column->field);
        if (value != record.cend())
            lineData[i] = cellOf(*value, column->format, decimals, showType);
    }
}

} // namespace sim
