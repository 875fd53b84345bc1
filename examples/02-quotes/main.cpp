#include "PageEvent.h"
#include "VarnelCefView.h"
#include "bridge/DataThread.h"
#include "msgcenter/WebMsgCenter.h"

#include <QApplication>

#include <cstdio>

namespace {

const QString symbol = "609001.SH";

/// Takes the place of a page: asks for a quote, subscribes, and unsubscribes after three ticks.
class QuotePage : public VarnelCefView {
public:
    QuotePage() { WebMsgCenter::instance()->reg(this); }
    ~QuotePage() override { WebMsgCenter::instance()->unReg(this); }

    void start()
    {
        m_data->onInvokeMethod(0, 0, "Data_getCurrentTick_REQ", {"snapshot", symbol});
        WebMsgCenter::instance()->subscribe(this, "subscribe", {symbol});
    }

protected:
    void customEvent(QEvent *event) override
    {
        const QCefEvent &received = static_cast<PageEvent *>(event)->event;
        const QString name = received.eventName();
        const bool isTick = name == "on_tickUpdate";
        if (isTick && ++m_ticks > 3)
            return; // it was on its way when the page unsubscribed

        std::printf("%s %s\n", qUtf8Printable(name), qUtf8Printable(received.arguments().value(0).toString()));
        if (isTick && m_ticks == 3)
            WebMsgCenter::instance()->unsubscribe(this, "unsubscribe", {symbol});
        else if (name == "UnSub_subscribe_RES")
            QCoreApplication::quit();
    }

private:
    DataThread *const m_data = new DataThread(this); // deleted with the view
    int m_ticks = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QuotePage page;
    page.start();
    return application.exec();
}
