#include "PageEvent.h"
#include "VarnelCefView.h"
#include "bridge/TradeThread.h"
#include "msgcenter/WebMsgCenter.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace {

/// Takes the place of a page: places one order, then two at once, then cancels. It makes its next call when it has seen
/// the push of the last one.
class OrderPage : public VarnelCefView {
public:
    OrderPage() { WebMsgCenter::instance()->reg(this); }
    ~OrderPage() override { WebMsgCenter::instance()->unReg(this); }

    void makeNextCall()
    {
        static const QPair<QString, QVariantList> calls[] = {
            {"Trade_insertOrder_REQ", {"one", "F1", "609001.SH", "SH", "Buy", "Limit", "10.00", "200", "my tag"}},
            {"Trade_insertOrderList_REQ", {"two", "F1", "my tag", R"([
                 {"symbol": "600001.SH", "exchange": "SH", "orderSide": "Buy", "priceType": "Limit", "price": "20.00", "qty": "300"},
                 {"symbol": "600002.SH", "exchange": "SH", "orderSide": "Buy", "priceType": "Limit", "price": "30.00", "qty": "150"}
             ])"}},
            {"Trade_reqCancelOrder_REQ", {"three", "1,9"}},
        };
        if (m_calls == int(std::size(calls)))
            return QCoreApplication::quit();
        const auto &[method, args] = calls[m_calls++];
        std::printf("\n%s\n", qUtf8Printable(method));
        m_trade->onInvokeMethod(0, 0, method, args);
    }

protected:
    void customEvent(QEvent *event) override
    {
        const QCefEvent &received = static_cast<PageEvent *>(event)->event;
        const QByteArray text = received.arguments().value(0).toString().toUtf8();
        std::printf("%s ", qUtf8Printable(received.eventName()));
        if (received.eventName() == "on_entrustUpdate") {
            printOrders(QJsonDocument::fromJson(text).array());
            makeNextCall();
        } else {
            std::printf("%s\n", text.constData());
        }
    }

private:
    /// Of each order only the columns that the terminal has filled.
    static void printOrders(const QJsonArray &orders)
    {
        std::printf("with %d\n", orders.size());
        for (const QJsonValue &order : orders) {
            const QJsonObject columns = order.toObject();
            for (auto column = columns.begin(); column != columns.end(); ++column) {
                const QString shown = column.value()["displayRole"].toString();
                if (!shown.isEmpty())
                    std::printf("  %s: %s", qUtf8Printable(column.key()), qUtf8Printable(shown));
            }
            std::printf("\n");
        }
    }

    TradeThread *const m_trade = new TradeThread(this); // deleted with the view
    int m_calls = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    OrderPage page;
    page.makeNextCall();
    return application.exec();
}
