#pragma once

#include "gateway/RequestHead.h"

#include <QString>

namespace sim {

/// The answer to one HTTP request. A plain value.
struct HttpReply {
    int status = 200;
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    QByteArray extraFields; ///< whole lines, each with its line end

    /// A reply with the status as its text.
    static HttpReply of(int status, const QByteArray &extraFields = {});

    /// The bytes to send; for HEAD without the body.
    QByteArray toBytes(bool withBody) const;
};

/// Static files: the built-in ones (bridge.js, and a page when there is no root) and the files below the root.
/// Constant after construction. It never serves a file outside the root, not even through a link.
class HttpFiles {
public:
    /// root: a folder, or empty for none.
    explicit HttpFiles(const QString &root);

    HttpReply answer(const RequestHead &request) const;

private:
    QString fileFor(const QByteArray &path) const;

    QString m_root; ///< canonical
};

} // namespace sim
