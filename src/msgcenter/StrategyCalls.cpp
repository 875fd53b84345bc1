#include "msgcenter/StrategyCalls.h"

#include <QCryptographicHash>

#include <algorithm>

namespace {

QByteArray keyOf(const QString &replyEvent, const QString &uuid)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &text : {replyEvent, uuid}) // no reply event is the beginning of another
        hash.addData(reinterpret_cast<const char *>(text.utf16()), text.size() * int(sizeof(QChar)));
    return hash.result();
}

} // namespace

void StrategyCalls::add(VarnelCefView *view, const QString &replyEvent, const QString &uuid)
{
    if (m_calls.size() == capacity)
        m_calls.pop_front();
    m_calls.push_back({view, keyOf(replyEvent, uuid), false});
}

bool StrategyCalls::takeAndTellIfEnded(VarnelCefView *view, const QString &replyEvent, const QString &uuid)
{
    const QByteArray key = keyOf(replyEvent, uuid);
    const auto call = std::find_if(m_calls.cbegin(), m_calls.cend(),
                                   [&](const Call &each) { return each.view == view && each.key == key; });
    if (call == m_calls.cend())
        return false;
    const bool hasEnded = call->viewHasEnded;
    m_calls.erase(call);
    return hasEnded;
}

void StrategyCalls::viewEnded(VarnelCefView *view)
{
    for (Call &call : m_calls) {
        if (call.view == view)
            call.viewHasEnded = true;
    }
}
