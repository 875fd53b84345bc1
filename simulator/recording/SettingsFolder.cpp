#include "recording/SettingsFolder.h"

#include "common/WebConstants.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace sim {

namespace {

const char kOwnFolder[] = "VARNEL_REPLAY_FOLDER"; // tells the copy where it is

/// Removes the folder at the end of the process.
struct Removal {
    ~Removal() { QDir(folder).removeRecursively(); }
    QString folder;
};

} // namespace

QString SettingsFolder::fileOf(const QString &login)
{
    return QCoreApplication::applicationDirPath() + WebConstants::Center::settingsFolder + login +
           WebConstants::Center::settingsFile;
}

QByteArray SettingsFolder::read(const QString &login)
{
    QFile file(fileOf(login));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString SettingsFolder::enterOwn(char *argv[])
{
    if (qEnvironmentVariableIsSet(kOwnFolder)) {
        // Made before the library's settings, so it ends after they have been written.
        static Removal removal;
        removal.folder = qEnvironmentVariable(kOwnFolder);
        qunsetenv(kOwnFolder);
        return QString();
    }
    QTemporaryDir folder;
    folder.setAutoRemove(false); // the copy will do it
    const QString program = folder.filePath(QStringLiteral("bin/varnel-simulator"));
    QDir(folder.path()).mkdir(QStringLiteral("bin"));
    // An installed program looks for its libraries and its page beside its folder.
    const QDir installed(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
    for (const QString &sibling : {QStringLiteral("lib"), QStringLiteral("lib64"), QStringLiteral("share")}) {
        if (installed.exists(sibling))
            QFile::link(QFileInfo(installed.filePath(sibling)).absoluteFilePath(), folder.filePath(sibling));
    }
    QString problem = folder.errorString();
    if (folder.isValid()) {
        QFile original(QCoreApplication::applicationFilePath());
        if (original.copy(program)) {
            qputenv(kOwnFolder, QFile::encodeName(folder.path()));
            execv(QFile::encodeName(program).constData(), argv);
            problem = QString::fromLocal8Bit(std::strerror(errno));
        } else {
            problem = original.errorString();
        }
    }
    QDir(folder.path()).removeRecursively();
    return QStringLiteral("cannot run as a copy in %1 (TMPDIR chooses another folder): %2")
        .arg(QDir::tempPath(), problem);
}

void SettingsFolder::write(const QString &login, const QByteArray &settings)
{
    QFile file(fileOf(login));
    if (settings.isEmpty() || !QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly))
        return;
    file.write(settings);
}

} // namespace sim
