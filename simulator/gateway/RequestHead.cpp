#include "gateway/RequestHead.h"

#include <cstring>

namespace sim {

namespace {

const char kTokenSymbols[] = "!#$%&'*+-.^_`|~";

bool isToken(const QByteArray &text)
{
    for (const char c : text) {
        const bool alphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (!alphanumeric && !(c && std::strchr(kTokenSymbols, c)))
            return false;
    }
    return !text.isEmpty();
}

} // namespace

std::optional<RequestHead> RequestHead::parse(const QByteArray &text)
{
    if (!text.endsWith("\r\n\r\n") || text.contains('\0'))
        return std::nullopt;
    QList<QByteArray> lines = text.left(text.size() - 4).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (i + 1 < lines.size()) {
            if (!lines[i].endsWith('\r'))
                return std::nullopt;
            lines[i].chop(1);
        }
        if (lines[i].contains('\r'))
            return std::nullopt;
    }

    const QList<QByteArray> words = lines.takeFirst().split(' ');
    if (words.size() != 3 || !isToken(words[0]) || !words[1].startsWith('/') ||
        (words[2] != "HTTP/1.1" && words[2] != "HTTP/1.0"))
        return std::nullopt;

    RequestHead head{words[0], words[1], {}};
    for (const QByteArray &line : qAsConst(lines)) {
        const int colon = line.indexOf(':');
        // Refused, because servers read them differently: a blank before the colon, and folded lines.
        if (colon < 0 || !isToken(line.left(colon)))
            return std::nullopt;
        head.fields.append({line.left(colon).toLower(), line.mid(colon + 1).trimmed()});
    }
    return head;
}

QByteArray RequestHead::path() const
{
    const int query = target.indexOf('?');
    return query < 0 ? target : target.left(query);
}

QList<QByteArray> RequestHead::values(const QByteArray &name) const
{
    QList<QByteArray> values;
    for (const auto &field : fields) {
        if (field.first == name)
            values.append(field.second);
    }
    return values;
}

bool RequestHead::names(const QByteArray &field, const QByteArray &word) const
{
    const QList<QByteArray> lists = values(field);
    for (const QByteArray &list : lists) {
        const QList<QByteArray> items = list.split(',');
        for (const QByteArray &item : items) {
            if (item.trimmed().toLower() == word)
                return true;
        }
    }
    return false;
}

} // namespace sim
