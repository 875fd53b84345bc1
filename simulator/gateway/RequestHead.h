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

    /// text: the head with its empty line. Nothing when it is not a valid HTTP/1 head.
    static std::optional<RequestHead> parse(const QByteArray &text);

    /// The target without its query.
    QByteArray path() const;

    /// The values of a field, one for each occurrence.
    QList<QByteArray> values(const QByteArray &name) const;

    /// Whether a comma-separated field contains the word, in upper or lower case.
    bool names(const QByteArray &field, const QByteArray &word) const;
};

} // namespace sim
