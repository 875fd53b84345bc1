#include "hostcheck/Probe.h"

#include "CUnPackMessageCommon.h"
#include "hostcheck/Waiting.h"

#include <atomic>
#include <mutex>

namespace HostCheck {

namespace {

QString nextName()
{
    static std::atomic<int> last{0};
    return QStringLiteral("VarnelHostCheck%1").arg(++last);
}

} // namespace

QString Probe::nameOf(Operation operation)
{
    switch (operation) {
    case EventMsg:
        return QStringLiteral("ProcEventMsg");
    case QuotationMsg:
        return QStringLiteral("ProcQuotationMsg");
    case AsyncCallBack:
        break;
    }
    return QStringLiteral("ProcAsyncCallBack");
}

class Probe::Record : public QObject {
public:
    explicit Record(Probe *parent) : QObject(parent) {}

    std::vector<Delivery> deliveries() const
    {
        const std::lock_guard lock(m_mutex);
        return m_deliveries;
    }

    void add(Operation operation, const QVariant &type, const QVariant &data)
    {
        if (onDelivery)
            onDelivery();
        {
            const std::lock_guard lock(m_mutex);
            m_deliveries.push_back({operation, type, data, std::this_thread::get_id()});
        }
        wakeMainThread();
    }

    std::function<void()> onDelivery; ///< constant once something can be delivered

private:
    mutable std::mutex m_mutex;
    std::vector<Delivery> m_deliveries; ///< guarded by m_mutex
};

Probe::Probe() : QvPresenterClass(nextName(), nullptr, IMessageInterface::WebThreadType), m_record(new Record(this)) {}

Probe::~Probe() = default;

void Probe::onDelivery(const std::function<void()> &function)
{
    m_record->onDelivery = function;
}

std::vector<Probe::Delivery> Probe::deliveries() const
{
    return m_record->deliveries();
}

void Probe::ProcEventMsg(QString, QVariant type, QVariant data)
{
    m_record->add(EventMsg, type, data);
}

void Probe::ProcQuotationMsg(QString, QVariant type, QVariant data)
{
    m_record->add(QuotationMsg, type, data);
}

void Probe::ProcAsyncCallBack(int, QString, QVariant type, QVariant data)
{
    m_record->add(AsyncCallBack, type, data);
}

QVariantMap rowOf(const QVariant &message)
{
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(message, false);
    return unpack.GetRowValue();
}

} // namespace HostCheck
