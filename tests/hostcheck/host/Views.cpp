#include "Fault.h"
#include "VarnelCefView.h"

#include <QSet>

#include <cstdlib>
#include <mutex>

QCefEvent::QCefEvent(const QString &name) : m_name(name) {}

QString QCefEvent::eventName() const
{
    return m_name;
}

namespace {

QVariantList s_shared;

std::mutex s_mutex;
QSet<const QCefView *> s_views; // those that exist, guarded by s_mutex

void deliver(const QCefView *view)
{
    const std::lock_guard lock(s_mutex);
    if (!s_views.contains(view) && hasFault("EndedViewsGetEvents"))
        std::abort(); // where such a host uses the view that is gone
}

} // namespace

QVariantList &QCefEvent::arguments()
{
    return hasFault("EventsShareArguments") ? s_shared : m_arguments;
}

const QVariantList &QCefEvent::arguments() const
{
    return hasFault("EventsShareArguments") ? s_shared : m_arguments;
}

class QCefView::Private {};

QCefView::QCefView(QWidget *parent) : QWidget(parent), d(nullptr)
{
    const std::lock_guard lock(s_mutex);
    s_views.insert(this);
}

QCefView::~QCefView()
{
    const std::lock_guard lock(s_mutex);
    s_views.remove(this);
}

bool QCefView::broadcastEvent(const QCefEvent &)
{
    const bool waits = hasFault("BroadcastWaits") && !isUserInterfaceThread();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [this] { deliver(this); },
        waits ? Qt::BlockingQueuedConnection : Qt::QueuedConnection);
    if (hasFault("BroadcastTurnsTheLoop") && isUserInterfaceThread())
        QCoreApplication::processEvents();
    if (hasFault("BroadcastDeletesTheView") && isUserInterfaceThread())
        delete this;
    return true;
}

VarnelCefView::VarnelCefView(QWidget *parent) : QCefView(parent) {}

VarnelCefView::~VarnelCefView() = default;
