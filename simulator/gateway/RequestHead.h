#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <optional>

namespace sim {

/// The head of one HTTP request: the request line and the header fields. A plain value.
struct RequestHead {
    QByteArray method;
    QByteArray target;
    QList<QPair<QByteArray, QByteArray>> fields; ///< names in lower case

    /// Reads a head up to and including its empty line. Nothing when it is not an HTTP/1 head.
    static std::optional<RequestHead> parse(const QByteArray &text);

    /// The target without its query.
    QByteArray path() const;

    /// The field's values, one for each time that it was sent.
    QList<QByteArray> values(const QByteArray &name) const;

    /// Whether a comma-separated field names the word, in whatever case.
    bool names(const QByteArray &field, const QByteArray &word) const;
};

} // namespace sim
