#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFile;

namespace sim {

/// The answer to one HTTP request. A plain value.
struct HttpReply {
    int status = 200;
    QByteArray contentType = {}; ///< of a file
    QByteArray body = {};        ///< the file
    QByteArray allow = {};       ///< the allowed methods, when another was tried
    QByteArray location = {};    ///< where the file is, when it is elsewhere
    QByteArray policy = {};      ///< directives of Content-Security-Policy: what a page may load; empty for anything
    bool isForAnyOrigin = false; ///< pages of other origins may load it as a script
};

/// Static files: the built-in ones (bridge.js, and a page when there is no root), those of the inspector below
/// /inspector/, and the files below the root.
/// Constant after construction. It never serves a file outside these folders, not even through a link.
class HttpFiles {
public:
    /// root, inspector: a folder, or empty for none.
    HttpFiles(const QString &root, const QString &inspector);

    /// path: that of the request, as it came.
    HttpReply answer(const QByteArray &method, const QByteArray &path) const;

private:
    std::unique_ptr<QFile> open(const QString &path) const;

    QString m_root; ///< canonical, like the next
    QString m_inspector;
};

} // namespace sim
