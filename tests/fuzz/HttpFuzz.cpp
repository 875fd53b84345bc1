#include "Require.h"

#include "gateway/HttpFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>

using namespace sim;

namespace {

constexpr char kSecret[] = "secret";

/// Folders with files that may be served, which begin with the name of their folder, and secret files around them, to
/// which links lead.
class Folders {
public:
    Folders()
    {
        require(m_folder.isValid(), "no folder for the files");
        write("root/index.html", "root index");
        write("root/a.js", "root a");
        write("root/b/index.html", "root b index");
        write("root/b/c d.txt", "root c d");
        write("root/%41.txt", "root percent");
        write("root/\xe4\xb8\x9c.txt", "root east");
        write("root/inspector/hidden.txt", "root hidden");
        write("inspector/index.html", "inspector index");
        write("inspector/i.js", "inspector i");
        write("secret.txt", kSecret);
        write("rootless.txt", kSecret); // its path begins with that of the root
        write("root2/index.html", kSecret);
        link("secret.txt", "root/link.txt");
        link("root/a.js", "root/inside.js");
        link(".", "root/up");
        link("root2", "root/b/aside");
        link("secret.txt", "inspector/link.txt");
    }

    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

private:
    void write(const char *name, const char *content) const
    {
        QFile file(path(name));
        require(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly), "a file was not written");
        file.write(content);
    }

    void link(const char *target, const char *name) const
    {
        require(QFile::link(path(target), path(name)), "a link was not made");
    }

    QTemporaryDir m_folder;
};

struct Served {
    QByteArray prefix; ///< of the contents of all files that may be served
    HttpFiles files;
};

} // namespace

/// Any request: nothing outside the served folders is ever served. The first byte says which folders there are; the
/// rest is the method, a space and the path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const Folders folders;
    static const QString root = folders.path("root");
    static const QString inspector = folders.path("inspector");
    static const HttpFiles served[] = {{root, inspector}, {root, QString()}, {QString(), inspector}, {{}, {}}};
    if (size == 0)
        return 0;
    const int choice = bytes[0] % 4;
    const QByteArray request(reinterpret_cast<const char *>(bytes) + 1, int(size) - 1);
    const int space = request.indexOf(' ');
    const QByteArray method = request.left(space);
    const HttpReply reply = served[choice].answer(method, request.mid(space + 1));

    const bool isRead = method == "GET" || method == "HEAD";
    require(isRead || (reply.status == 405 && reply.body.isEmpty()), "another method than GET and HEAD was answered");
    require((reply.status == 200) != reply.contentType.isEmpty(), "only a file has a type, and each has one");
    if (reply.status != 200) {
        require(reply.body.isEmpty(), "there is no file, and it has contents");
        return 0;
    }
    const bool isOfRoot = choice <= 1 && reply.body.startsWith("root ");
    const bool isOfInspector = choice % 2 == 0 && reply.body.startsWith("inspector ");
    const bool isBuiltIn = reply.body.startsWith('<') || reply.body.contains("CallBridge");
    require(isOfRoot || isOfInspector || isBuiltIn, "served: " + reply.body.left(100));
    return 0;
}
