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

/// Where an opened file really is.
QString placeOf(const QFile &file)
{
#ifdef Q_OS_LINUX
    return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(file.handle()));
#else
    return QFileInfo(file).canonicalFilePath(); // a link that was changed since it was opened would not be noticed
#endif
}

/// Opens the file of that path below the folder, or the index of the folder of that path; null when there is none.
std::unique_ptr<QFile> openBelow(const QString &folder, const QString &path)
{
    QString name = folder + path;
    if (QFileInfo(name).isDir())
        name += QStringLiteral("/index.html");
    auto file = std::make_unique<QFile>(name);
    if (!QFileInfo(name).isFile() || !file->open(QIODevice::ReadOnly))
        return nullptr;
    // ".." and links may have led anywhere. A link may change at any time, so what counts is where the open file is.
    const QString inside = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    return placeOf(*file).startsWith(inside) ? std::move(file) : nullptr;
}

std::unique_ptr<QFile> openResource(const QString &name)
{
    auto file = std::make_unique<QFile>(QStringLiteral(":/gateway/") + name);
    return file->open(QIODevice::ReadOnly) ? std::move(file) : nullptr;
}

const QString kBridge = QStringLiteral("/bridge.js");

/// Its page names its files relative to this.
const QString kInspector = QStringLiteral("/inspector/");

/// What the inspector loads. It shows texts of pages and of the terminal, none of which may do anything there.
const QByteArray kInspectorPolicy =
    "default-src 'self'; style-src 'self' 'unsafe-inline'; img-src 'self' data:; "
    "connect-src 'self' ws://127.0.0.1:* ws://localhost:*; object-src 'none'; base-uri 'none'; form-action 'none'";

} // namespace

HttpFiles::HttpFiles(const QString &root, const QString &inspector)
    : m_root(canonical(root)), m_inspector(canonical(inspector))
{
    initResources();
}

std::unique_ptr<QFile> HttpFiles::open(const QString &path) const
{
    if (path == kBridge)
        return openResource(QStringLiteral("bridge.js"));
    if (path.startsWith(kInspector)) {
        if (m_inspector.isEmpty())
            return path == kInspector ? openResource(QStringLiteral("inspector.html")) : nullptr;
        return openBelow(m_inspector, path.mid(kInspector.size() - 1));
    }
    if (m_root.isEmpty())
        return path == QLatin1String("/") ? openResource(QStringLiteral("index.html")) : nullptr;
    return openBelow(m_root, path);
}

HttpReply HttpFiles::answer(const QByteArray &method, const QByteArray &path) const
{
    if (method != "GET" && method != "HEAD")
        return {405, {}, {}, "GET, HEAD"};
    if (path == "/inspector")
        return {307, {}, {}, {}, kInspector.toLatin1()};
    const QByteArray bytes = QByteArray::fromPercentEncoding(path);
    if (bytes.contains('\0') || bytes.contains('\\')) // '\0' ends a path for the system; '\\' is a separator on Windows
        return {404};
    const QString decoded = QString::fromUtf8(bytes);
    const std::unique_ptr<QFile> file = open(decoded);
    if (!file)
        return {404};
    HttpReply reply{200, contentType(file->fileName()), file->readAll()};
    if (decoded.startsWith(kInspector))
        reply.policy = kInspectorPolicy;
    reply.isForAnyOrigin = decoded == kBridge; // pages of a developer's own server load it from here
    return reply;
}

} // namespace sim
