#include "window/OrderQuestion.h"

#include "exchange/Instrument.h"
#include "services/TradeCodes.h"

#include <QMessageBox>

namespace sim {

namespace {

constexpr size_t kMostShown = 10;

QString lineOf(const Order &order)
{
    const QString price = order.priceType == PriceType::Market ? QString() : QString::number(order.price, 'f', 3);
    return QStringLiteral("%1 %2  %3 %4  %5 %6")
        .arg(sideCodes().code(order.side))
        .arg(order.qty)
        .arg(order.instrument->symbol, order.instrument->name, priceTypeCodes().code(order.priceType), price)
        .trimmed();
}

} // namespace

bool confirmOrders(QWidget *window, const std::vector<Order> &orders)
{
    QStringList lines;
    for (size_t i = 0; i < orders.size() && i < kMostShown; ++i)
        lines.append(lineOf(orders[i]));
    if (orders.size() > kMostShown)
        lines.append(QStringLiteral("and %1 more").arg(orders.size() - kMostShown));

    QMessageBox question(QMessageBox::Question, QStringLiteral("Place orders"), QStringLiteral("Place this order?"),
                         QMessageBox::Yes | QMessageBox::No, window);
    if (orders.size() > 1)
        question.setText(QStringLiteral("Place these %1 orders?").arg(orders.size()));
    question.setInformativeText(lines.join(QLatin1Char('\n')));
    question.setDefaultButton(QMessageBox::No);
    return question.exec() == QMessageBox::Yes;
}

} // namespace sim
