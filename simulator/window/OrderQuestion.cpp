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
    const QString asked = orders.size() == 1 ? QStringLiteral("Place this order?")
                                             : QStringLiteral("Place these %1 orders?").arg(orders.size());
    QMessageBox question(QMessageBox::Question, QStringLiteral("Place orders"),
                         asked + QStringLiteral("\n\n") + lines.join(QLatin1Char('\n')),
                         QMessageBox::Yes | QMessageBox::No, window);
    question.setDefaultButton(QMessageBox::No);
    return question.exec() == QMessageBox::Yes;
}

} // namespace sim
