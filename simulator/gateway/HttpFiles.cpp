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

QString canonical(const QString &folder)
{
    return folder.isEmpty() ? QString() : QFileInfo(folder).canonicalFilePath();
}

/// The file of that path below the folder, or the index of the folder of that path; empty when there is none.
QString fileBelow(const QString &folder, const QString &path)
{
    // The canonical path contains neither ".." nor links: it shows where the file really is.
    QString file = QFileInfo(folder + path).canonicalFilePath();
    if (QFileInfo(file).isDir())
        file = QFileInfo(file + QStringLiteral("/index.html")).canonicalFilePath();
    const QString inside = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    return file.startsWith(inside) && QFileInfo(file).isFile() ? file : QString();
}

/// Its page names its files relative to this.
const QString kInspector = QStringLiteral("/inspector/");

} // namespace

HttpFiles::HttpFiles(const QString &root, const QString &inspector)
    : m_root(canonical(root)), m_inspector(canonical(inspector))
{
    initResources();
}

QString HttpFiles::fileFor(const QByteArray &path) const
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(path);
    if (bytes.contains('\0') || bytes.contains('\\')) // '\0' ends a path for the system; '\\' is a separator on Windows
        return QString();
    const QString decoded = QString::fromUtf8(bytes);
    if (decoded == QLatin1String("/bridge.js"))
        return QStringLiteral(":/gateway/bridge.js");
    if (decoded.startsWith(kInspector)) {
        if (m_inspector.isEmpty())
            return decoded == kInspector ? QStringLiteral(":/gateway/inspector.html") : QString();
        return fileBelow(m_inspector, decoded.mid(kInspector.size() - 1));
    }
    if (m_root.isEmpty())
        return decoded == QLatin1String("/") ? QStringLiteral(":/gateway/index.html") : QString();
    return fileBelow(m_root, decoded);
}

HttpReply HttpFiles::answer(const QByteArray &method, const QByteArray &path) const
{
    if (method != "GET" && method != "HEAD")
        return {405, {}, {}, "GET, HEAD"};
    if (path == "/inspector")
        return {307, {}, {}, {}, kInspector.toLatin1()};
    QFile file(fileFor(path));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {404};
    return {200, contentType(file.fileName()), file.readAll()};
}

} // namespace sim
