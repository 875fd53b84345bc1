#include "gateway/WantedQuotes.h"

#include "terminal/Terminal.h"

#include <QHash>
#include <QSet>

namespace sim {

namespace {

QHash<const VarnelCefView *, QSet<QString>> &symbolsOfViews()
{
    static QHash<const VarnelCefView *, QSet<QString>> symbols;
    return symbols;
}

QHash<QString, int> &numbersOfViews()
{
    static QHash<QString, int> numbers; // by symbol; only symbols that a view wants
    return numbers;
}

} // namespace

void WantedQuotes::add(const VarnelCefView *view, const QStringList &symbols)
{
    QSet<QString> &wanted = symbolsOfViews()[view];
    for (const QString &symbol : symbols) {
        if (wanted.contains(symbol))
            continue;
        wanted.insert(symbol);
        ++numbersOfViews()[symbol];
    }
}

void WantedQuotes::remove(const VarnelCefView *view, const QStringList &symbols)
{
    const auto wanted = symbolsOfViews().find(view);
    if (wanted == symbolsOfViews().end())
        return;
    QStringList unwanted;
    for (const QString &symbol : symbols) {
        if (wanted->remove(symbol) && --numbersOfViews()[symbol] == 0) {
            numbersOfViews().remove(symbol);
            unwanted.append(symbol);
        }
    }
    if (wanted->isEmpty())
        symbolsOfViews().erase(wanted);
    if (!unwanted.isEmpty())
        Terminal::instance().quoteFeed().stopStreaming(unwanted); // not by the host's classes: the library did not ask
}

void WantedQuotes::removeAll(const VarnelCefView *view)
{
    remove(view, symbolsOfViews().value(view).values());
}

} // namespace sim
