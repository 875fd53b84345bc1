#include "recording/PlayedPage.h"

#include "gateway/EventFrame.h"
#include "gateway/EventLog.h"
#include "gateway/PageConnection.h"

#include <algorithm>

namespace sim {

/// Hands the replies to the page. Pushes, which other threads send too, end here.
class PlayedPage::Socket : public PageSocket {
public:
    Socket(int number, PlayedPage &page) : m_number(number), m_page(page) {}

    int number() const override { return m_number; }
    void close(int, const QString &) override {}
    void handled(const CallFrame &) override {}

    void send(const QCefEvent &event, const traffic::Entry &delivery) override
    {
        logDelivery(delivery, 0); // no bytes are sent anywhere
        if (!isReply(event))
            return;
        QStringList args;
        for (const QVariant &argument : event.arguments())
            args.append(argument.toString());
        m_page.m_replies.push_back({event.eventName(), args, uuidOf(event), m_page.m_isInCall});
        m_page.m_whenAnswered();
    }

private:
    const int m_number;
    PlayedPage &m_page; ///< outlives its view, which alone sends replies
};

PlayedPage::PlayedPage(int number, std::function<void()> whenAnswered)
    : m_whenAnswered(std::move(whenAnswered))
    , m_connection(std::make_unique<PageConnection>(std::make_shared<Socket>(number, *this), nullptr))
{
}

PlayedPage::~PlayedPage() = default;

void PlayedPage::call(const RecordedEntry &call)
{
    CallFrame frame;
    frame.method = call.name;
    frame.args = call.args;
    m_isInCall = true;
    m_connection->receive(frame);
    m_isInCall = false;
}

std::optional<PlayedPage::Reply> PlayedPage::take(const QString &name)
{
    const auto isIt = [&](const Reply &reply) { return reply.name == name; };
    const auto found = std::find_if(m_replies.begin(), m_replies.end(), isIt);
    if (found == m_replies.end())
        return std::nullopt;
    Reply reply = std::move(*found);
    m_replies.erase(found);
    return reply;
}

const PlayedPage::Reply *PlayedPage::untaken() const
{
    const auto isIt = [](const Reply &reply) { return reply.cameDuringCall; };
    const auto found = std::find_if(m_replies.cbegin(), m_replies.cend(), isIt);
    return found == m_replies.cend() ? nullptr : &*found;
}

} // namespace sim
