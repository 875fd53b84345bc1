#include "QvPresenterClass.h"

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "platform/Wakeup.h"
#include "terminal/Terminal.h"

namespace {

constexpr int kSent = 0;
constexpr int kRefused = -1;

} // namespace

class QvPresenterClass::Private {
public:
    Private(QvPresenterClass *presenter, const QString &name)
        : bus(sim::Terminal::instance().bus()), pid(bus->join(presenter, name, &acknowledged))
    {
    }

    const std::shared_ptr<sim::MessageBus> bus; // shared: a presenter may outlive the terminal
    sim::Wakeup acknowledged{[this] { bus->acknowledged(pid); }};
    const int pid;
};

QvPresenterClass::QvPresenterClass(const QString &name, QObject *parent, IMessageInterface::ThreadType)
    : QObject(parent), d(new Private(this, name))
{
}

QvPresenterClass::~QvPresenterClass()
{
    d->bus->leave(d->pid);
    delete d;
}

int QvPresenterClass::pluginPid() const
{
    return d->pid;
}

void QvPresenterClass::SubEvent(int pid, const QVariant &eventId, int)
{
    d->bus->subscribe(pid, eventId.toInt());
}

void QvPresenterClass::PutEvent(int pid, CEventMessageCommon *event)
{
    d->bus->publish(pid, std::unique_ptr<CEventMessageCommon>(event));
}

int QvPresenterClass::sendRequest_Async(CMessageCommon *request)
{
    return d->bus->request(std::unique_ptr<CMessageCommon>(request)) ? kSent : kRefused;
}

int QvPresenterClass::sendRequest_Sync(CMessageCommon *request, QVariant &reply)
{
    const std::optional<QVariantList> list = d->bus->requestAndWait(std::unique_ptr<CMessageCommon>(request));
    if (!list)
        return kRefused;
    reply = *list;
    return kSent;
}

void QvPresenterClass::ProcEventMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcQuotationMsg(QString, QVariant, QVariant) {}
void QvPresenterClass::ProcAsyncCallBack(int, QString, QVariant, QVariant) {}
