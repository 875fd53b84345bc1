#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

/// The answer to one HTTP request. A plain value.
struct HttpReply {
    int status = 200;
    QByteArray contentType = {}; ///< of a file
    QByteArray body = {};        ///< the file
    QByteArray allow = {};       ///< the allowed methods, when another was tried
};

/// Static files: the built-in ones (bridge.js, and a page when there is no root) and the files below the root.
/// Constant after construction. It never serves a file outside the root, not even through a link.
class HttpFiles {
public:
    /// root: a folder, or empty for none.
    explicit HttpFiles(const QString &root);

    /// path: that of the request, as it came.
    HttpReply answer(const QByteArray &method, const QByteArray &path) const;

private:
    QString fileFor(const QByteArray &path) const;

    QString m_root; ///< canonical
};

} // namespace sim
