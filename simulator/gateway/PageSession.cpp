#include "gateway/PageSession.h"

#include "gateway/EventLog.h"
#include "gateway/Logging.h"
#include "gateway/Outbox.h"
#include "gateway/WebSocket.h"

#include <atomic>
#include <optional>

namespace sim {

namespace {

/// Bytes of the calls of a page that may wait for the user-interface thread before no more is read from the page.
constexpr qint64 kMaxUnhandled = CallFrame::kMaxSize;

/// A longer buffer is given back after use.
constexpr std::size_t kKeptBuffer = std::size_t{64} * 1024;

class Handle;

} // namespace

/// The WebSocket of a page on the input and output thread, where it also ends: other threads know its handle only.
class PageSession final : public Connection, public std::enable_shared_from_this<PageSession> {
public:
    PageSession(Socket &&socket, int number, const PageSurroundings &surroundings);

    void open(const Request &request);
    void read();
    void write(const EventFrame &frame, const traffic::Entry &delivery);
    void closeAfterWriting(const PageClose &close);
    void stop() override { closeAfterWriting({kGoingAway, {}}); }
    void drop() { end(); }
    void dropIf(int page) override
    {
        if (page == 0 || page == m_number)
            drop();
    }

private:
    void take(const CallFrame &call);
    void proceed();
    void end();

    WebSocket m_stream;
    const int m_number;
    Connections &m_connections;
    PageQueue &m_queue;
    const GatewayServer::Listener &m_listener;
    std::shared_ptr<Handle> m_handle; ///< set when it is open
    beast::flat_buffer m_frame;       ///< the frame that is being read
    Outbox m_outbox;
    Outbox::Sent m_sent; ///< the event that is being written
    std::optional<PageClose> m_close;
    bool m_isBusy = true; ///< opening, writing or closing
    bool m_hasEnded = false;
};

namespace {

/// A page as other threads see it.
class Handle final : public PageSocket {
public:
    Handle(std::weak_ptr<PageSession> page, int number, PageQueue &queue, net::io_context::executor_type executor)
        : m_page(std::move(page)), m_number(number), m_queue(queue), m_executor(executor)
    {
    }

    int number() const override { return m_number; }
    void send(const QCefEvent &event, const traffic::Entry &delivery) override
    {
        m_queue.add(m_page, PageEvent{event, delivery});
    }
    void close(int code, const QString &reason) override { m_queue.add(m_page, PageClose{code, reason}); }

    void drop() override { m_queue.add(m_page, PageBreak()); }

    /// Counts a call that waits from now on. False when nothing more may be read for the time being.
    bool count(const CallFrame &call) { return m_unhandled.fetch_add(call.size) + call.size < kMaxUnhandled; }

    void handled(const CallFrame &call) override
    {
        const qint64 before = m_unhandled.fetch_sub(call.size);
        if (before < kMaxUnhandled || before - call.size >= kMaxUnhandled)
            return;
        net::post(m_executor, [weak = m_page] {
            if (const std::shared_ptr<PageSession> page = weak.lock())
                page->read();
        });
    }

private:
    const std::weak_ptr<PageSession> m_page;
    const int m_number;
    PageQueue &m_queue;
    const net::io_context::executor_type m_executor;
    std::atomic<qint64> m_unhandled{0}; ///< bytes
};

} // namespace

void PageQueue::add(const std::weak_ptr<PageSession> &page, PageContent content)
{
    bool isFirst;
    {
        const std::lock_guard lock(m_mutex);
        isFirst = m_items.empty();
        m_items.push_back({page, std::move(content)});
    }
    if (isFirst)
        net::post(m_context, [this] { deliver(); });
}

void PageQueue::deliver()
{
    std::vector<Item> items;
    {
        const std::lock_guard lock(m_mutex);
        items.swap(m_items);
    }
    for (const Item &item : items) {
        const std::shared_ptr<PageSession> page = item.page.lock();
        if (!page)
            continue;
        if (const auto *event = std::get_if<PageEvent>(&item.content))
            page->write(m_frames.of(event->event), event->delivery);
        else if (const auto *close = std::get_if<PageClose>(&item.content))
            page->closeAfterWriting(*close);
        else
            page->drop();
    }
}

PageSession::PageSession(Socket &&socket, int number, const PageSurroundings &surroundings)
    : m_stream(std::move(socket))
    , m_number(number)
    , m_connections(surroundings.connections)
    , m_queue(surroundings.queue)
    , m_listener(surroundings.listener)
{
    setUp(m_stream);
    m_stream.read_message_max(0); // read() counts, because it can give a reason
}

void PageSession::open(const Request &request)
{
    m_connections.insert(shared_from_this());
    m_stream.async_accept(request, [self = shared_from_this()](Error error) {
        if (error)
            return self->end(); // the request was answered, or the peer is gone
        self->m_handle = std::make_shared<Handle>(self, self->m_number, self->m_queue, self->m_stream.get_executor());
        self->m_listener({PageNews::Opened, self->m_handle, {}});
        self->m_isBusy = false;
        self->read();
        self->proceed();
    });
}

void PageSession::read()
{
    const auto limit = std::size_t(CallFrame::kMaxSize) + 1 - m_frame.size();
    m_stream.async_read_some(m_frame, limit, [self = shared_from_this()](Error error, std::size_t) {
        if (error)
            return self->end();
        const beast::flat_buffer &frame = self->m_frame;
        if (frame.size() > CallFrame::kMaxSize)
            return self->take(CallFrame::tooLong());
        if (!self->m_stream.is_message_done())
            return self->read();
        if (!self->m_stream.got_text())
            return self->take(CallFrame::binary());
        self->take(CallFrame::read(
            QByteArray::fromRawData(static_cast<const char *>(frame.data().data()), int(frame.size()))));
    });
}

void PageSession::take(const CallFrame &call)
{
    m_frame.clear();
    if (m_frame.capacity() > kKeptBuffer)
        m_frame.shrink_to_fit();
    const bool mayRead = m_handle->count(call);
    m_listener({PageNews::Called, m_handle, call});
    // Nothing more is read after a frame that is no call. Its page is closed when the calls before have been answered.
    if (call.closeCode == 0 && mayRead)
        read();
}

void PageSession::write(const EventFrame &frame, const traffic::Entry &delivery)
{
    if (m_hasEnded || m_close)
        return;
    if (!m_outbox.add(frame, delivery)) {
        qCWarning(gatewayLog, "page %d has stopped reading: dropped", m_number);
        return end();
    }
    proceed();
}

void PageSession::closeAfterWriting(const PageClose &close)
{
    if (m_hasEnded || m_close)
        return;
    m_close = close;
    proceed();
}

void PageSession::proceed()
{
    if (m_isBusy || m_hasEnded)
        return;
    if (!m_outbox.isEmpty()) {
        m_isBusy = true;
        m_sent = m_outbox.take();
        const net::const_buffer text(m_sent.text.constData(), std::size_t(m_sent.text.size()));
        m_stream.async_write(text, [self = shared_from_this()](Error error, std::size_t) {
            self->m_isBusy = false;
            const Outbox::Sent sent = std::exchange(self->m_sent, {});
            if (error)
                return self->end();
            logDelivery(sent.delivery, sent.text.size());
            self->proceed();
        });
    } else if (m_close) {
        m_isBusy = true;
        const websocket::close_reason reason(websocket::close_code(m_close->code), m_close->reason.toStdString());
        m_stream.async_close(reason, [self = shared_from_this()](Error) { self->end(); });
    }
}

void PageSession::end()
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    Error ignored;
    beast::get_lowest_layer(m_stream).close(ignored);
    if (m_handle)
        m_listener({PageNews::Closed, m_handle, {}});
    m_connections.erase(shared_from_this());
}

void openPage(Socket &&socket, const Request &request, int number, const PageSurroundings &surroundings)
{
    std::make_shared<PageSession>(std::move(socket), number, surroundings)->open(request);
}

} // namespace sim
