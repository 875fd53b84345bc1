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
    m_calls.push_back({view, keyOf(replyEvent, uuid)});
}

bool StrategyCalls::takeAndTellIfEnded(VarnelCefView *view, const QString &replyEvent, const QString &uuid)
{
    const QByteArray key = keyOf(replyEvent, uuid);
    const auto isAlike = [&](const Call &call) { return call.view == view && call.key == key; };
    const auto stillWaits = [&](const Call &call) {
        return isAlike(call) && !(call.viewHasEnded && call.answerMayBeLost);
    };
    auto call = std::find_if(m_calls.cbegin(), m_calls.cend(), stillWaits);
    if (call == m_calls.cend())
        call = std::find_if(m_calls.cbegin(), m_calls.cend(), isAlike);
    if (call == m_calls.cend())
        return false;
    const bool hasEnded = call->viewHasEnded;
    m_calls.erase(call);
    return hasEnded;
}

void StrategyCalls::answerLost()
{
    for (Call &call : m_calls)
        call.answerMayBeLost = true;
}

void StrategyCalls::viewEnded(VarnelCefView *view)
{
    for (Call &call : m_calls) {
        if (call.view == view)
            call.viewHasEnded = true;
    }
}
