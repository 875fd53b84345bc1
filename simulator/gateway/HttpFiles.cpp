#include "gateway/HttpFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

// Resources of a static library are linked only when they are named. Qt requires this outside of namespaces.
static void initResources()
{
    Q_INIT_RESOURCE(gateway);
}

namespace sim {

namespace {

const char *reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 408:
        return "Request Timeout";
    case 426:
        return "Upgrade Required";
    case 431:
        return "Request Header Fields Too Large";
    }
    Q_UNREACHABLE();
}

QByteArray contentType(const QString &fileName)
{
    static const struct {
        const char *suffix;
        const char *type;
    } types[] = {
        {"html", "text/html; charset=utf-8"},
        {"js", "text/javascript; charset=utf-8"},
        {"mjs", "text/javascript; charset=utf-8"},
        {"css", "text/css; charset=utf-8"},
        {"json", "application/json; charset=utf-8"},
        {"map", "application/json; charset=utf-8"},
        {"txt", "text/plain; charset=utf-8"},
        {"svg", "image/svg+xml"},
        {"png", "image/png"},
        {"jpg", "image/jpeg"},
        {"ico", "image/x-icon"},
        {"webp", "image/webp"},
        {"woff2", "font/woff2"},
        {"wasm", "application/wasm"},
    };
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    for (const auto &entry : types) {
        if (suffix == QLatin1String(entry.suffix))
            return entry.type;
    }
    return "application/octet-stream";
}

} // namespace

HttpReply HttpReply::of(int status, const QByteArray &extraFields)
{
    return {status, "text/plain; charset=utf-8", QByteArray::number(status) + ' ' + reason(status) + '\n', extraFields};
}

QByteArray HttpReply::toBytes(bool withBody) const
{
    const QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) +
                            "\r\nContent-Type: " + contentType +
                            "\r\nContent-Length: " + QByteArray::number(body.size()) +
                            // No caching: developers reload pages that they have just built.
                            "\r\nCache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\nConnection: close\r\n" +
                            extraFields + "\r\n";
    return withBody ? head + body : head;
}

HttpFiles::HttpFiles(const QString &root)
{
    initResources();
    if (!root.isEmpty())
        m_root = QFileInfo(root).canonicalFilePath();
}

QString HttpFiles::fileFor(const QByteArray &path) const
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(path);
    if (bytes.contains('\0') || bytes.contains('\\')) // '\0' ends a path for the system; '\\' is a separator on Windows
        return QString();
    const QString decoded = QString::fromUtf8(bytes);
    if (decoded == QLatin1String("/bridge.js"))
        return QStringLiteral(":/gateway/bridge.js");
    if (m_root.isEmpty())
        return decoded == QLatin1String("/") ? QStringLiteral(":/gateway/index.html") : QString();

    // The canonical path contains neither ".." nor links: it shows where the file really is.
    QString file = QFileInfo(m_root + decoded).canonicalFilePath();
    if (QFileInfo(file).isDir())
        file = QFileInfo(file + QStringLiteral("/index.html")).canonicalFilePath();
    const QString inside = m_root.endsWith(QLatin1Char('/')) ? m_root : m_root + QLatin1Char('/');
    return file.startsWith(inside) && QFileInfo(file).isFile() ? file : QString();
}

HttpReply HttpFiles::answer(const RequestHead &request) const
{
    if (request.method != "GET" && request.method != "HEAD")
        return HttpReply::of(405, "Allow: GET, HEAD\r\n");
    QFile file(fileFor(request.path()));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return HttpReply::of(404);
    return {200, contentType(file.fileName()), file.readAll(), {}};
}

} // namespace sim
