#pragma once

#include "FuzzHost.h"

#include <QHash>

#include <memory>
#include <vector>

class DataThread;
class TradeThread;
class VarnelCefView;

/// Ends the process with a message unless the condition holds.
void require(bool condition, const char *expectation);

/// Requires that the text is JSON. Qt reads no more than 1024 levels; deeper ones count as JSON.
void requireJson(const QString &text);

/// A page: a view and its dispatchers, which are made for the first call that needs them, because each starts a thread.
class Page {
public:
    Page();
    ~Page();

    VarnelCefView *view() const { return m_view.get(); }
    void setRegistered(bool registered);

    /// Makes a call and requires what docs/protocol.md says of its answer: at once, exactly one event; later or never,
    /// none yet. No other page gets anything.
    void call(const QString &method, const QVariantList &args);

    /// Takes in an event of this page that came later: a push, or a reply, for which a call must have waited.
    void receive(const FuzzHost::Event &event);

private:
    Q_DISABLE_COPY(Page)

    DataThread *data();
    TradeThread *trade();

    std::unique_ptr<VarnelCefView> m_view;
    DataThread *m_data = nullptr; // these go with the view
    TradeThread *m_trade = nullptr;
    QHash<QString, int> m_waiting; ///< how many calls of each reply event are not answered yet
};

/// All pages of an input.
class Pages {
public:
    /// Unasked: the platform answers also what no page has asked.
    enum Answers { OnlyAsked, Unasked };
    explicit Pages(Answers answers = OnlyAsked) : m_answers(answers) {}
    ~Pages();

    /// The page of that number; made when there is none.
    Page &at(int number);
    void close(int number);

    /// Every event since the last call belongs to an open page.
    void receiveAll();

private:
    Q_DISABLE_COPY(Pages)

    static constexpr int most = 4;
    const Answers m_answers;
    std::unique_ptr<Page> m_pages[most];
};

/// The names of all calls of both dispatchers, of the message center and of subscriptions.
const QStringList &callNames();
