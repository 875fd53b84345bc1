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

    /// A reply that only says its status.
    static HttpReply of(int status, const QByteArray &extraFields = {});

    /// The bytes to send. Without the body for HEAD.
    QByteArray toBytes(bool withBody) const;
};

/// Static files: what is built in (bridge.js, and a page when there is no root), and the files below the root.
/// Constant after construction. Never gives a file from outside the root, whatever path or link leads there.
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
