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

HttpReply HttpFiles::answer(const QByteArray &method, const QByteArray &path) const
{
    if (method != "GET" && method != "HEAD")
        return {405, {}, {}, "GET, HEAD"};
    QFile file(fileFor(path));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {404};
    return {200, contentType(file.fileName()), file.readAll(), {}};
}

} // namespace sim
