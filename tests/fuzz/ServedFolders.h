#pragma once

#include "Require.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// Folders with files that may be served, whose contents begin with the name of their folder, and secret files around
/// them, to which links lead.
class ServedFolders {
public:
    static constexpr char kSecret[] = "a secret of this machine";

    ServedFolders()
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
