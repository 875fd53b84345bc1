#include "gateway/Gateway.h"

#include "gateway/PageConnection.h"
#include "terminal/Terminal.h"

namespace sim {

Gateway::Gateway(const QString &root, const QStringList &allowedOrigins, const QString &inspector,
                 std::chrono::milliseconds httpDeadline, int pagesBefore)
    : m_server({root, inspector, allowedOrigins, httpDeadline, pagesBefore},
               [this](PageNews news) { tell(std::move(news)); })
{
    if (Terminal::isThere())
        Terminal::instance().control().setDrop([this](int page) { m_server.dropPages(page); });
}

Gateway::~Gateway()
{
    if (Terminal::isThere())
        Terminal::instance().control().setDrop({});
    qDeleteAll(findChildren<PageConnection *>(QString(), Qt::FindDirectChildrenOnly));
    m_server.stop();
    if (Terminal::isThere())
        Terminal::instance().control().awaitRuns(); // the answers to commands go to the server
    m_news.clear();                                 // no page may outlive the server
}

bool Gateway::listen(quint16 port)
{
    m_error = m_server.listen(port);
    return m_error.isEmpty();
}

void Gateway::tell(PageNews news)
{
    {
        const std::lock_guard lock(m_mutex);
        m_news.push_back(std::move(news));
    }
    m_wakeup.post();
}

void Gateway::takeNews()
{
    std::unique_lock lock(m_mutex);
    const PageNews news = std::move(m_news.front());
    m_news.pop_front();
    lock.unlock();

    switch (news.what) {
    case PageNews::Opened:
        m_pages.insert(news.page.get(), new PageConnection(news.page, this));
        break;
    case PageNews::Called:
        if (PageConnection *const page = m_pages.value(news.page.get()))
            page->receive(news.call);
        news.page->handled(news.call);
        break;
    case PageNews::Closed:
        if (PageConnection *const page = m_pages.take(news.page.get()))
            page->deleteLater(); // it may be in a call
        break;
    }
}

} // namespace sim
