#pragma once

#include "QvPresenterClass.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <thread>
#include <vector>

namespace HostCheck {

/// A presenter of the checks. It records what the bus delivers, on whatever thread, and wakes a waitUntil().
/// Made and destroyed by a check on the main thread.
class Probe : public QvPresenterClass {
public:
    enum Operation { EventMsg, QuotationMsg, AsyncCallBack };
    static QString nameOf(Operation operation);

    struct Delivery {
        Operation operation;
        QVariant type;
        QVariant data;
        std::thread::id thread;
    };

    Probe();
    ~Probe() override;

    /// Calls the function on the thread of each delivery, before it is recorded. Set it before anything can be
    /// delivered.
    void onDelivery(const std::function<void()> &function);

    std::vector<Delivery> deliveries() const;

    void ProcEventMsg(QString name, QVariant type, QVariant data) override;
    void ProcQuotationMsg(QString name, QVariant type, QVariant data) override;
    void ProcAsyncCallBack(int id, QString name, QVariant type, QVariant data) override;

private:
    class Record;
    Record *const m_record; ///< a child, so that it is there until the base class has left the bus
};

/// The fields of a message.
QVariantMap rowOf(const QVariant &message);

} // namespace HostCheck
