#include "recording/SettingsFolder.h"

#include "common/WebConstants.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#ifdef Q_OS_WIN
#    include <windows.h>
#else
#    include <cerrno>
#    include <cstring>
#    include <unistd.h>
#endif

namespace sim {

namespace {

// They tell the copy where it is, and where the program was.
const char kOwnFolder[] = "VARNEL_REPLAY_FOLDER";
const char kProgramFolder[] = "VARNEL_REPLAY_PROGRAM_FOLDER";

constexpr int kNoCopy = 1; // an exit status

/// Copies the files of the folder that match; returns the problem.
QString copyFiles(const QDir &from, const QStringList &patterns, const QString &to)
{
    QDir(to).mkpath(QStringLiteral("."));
    for (const QString &name : from.entryList(patterns, QDir::Files)) {
        QFile original(from.filePath(name));
        if (!original.copy(QDir(to).filePath(name)))
            return original.errorString();
    }
    return QString();
}

#ifdef Q_OS_WIN

const char kFolderVariable[] = "TMP"; // chooses the folder for temporary files

/// Windows does not remove a program that runs, so whoever has started the copy removes it.
void removeAtEnd(const QString &) {}

/// The program with the libraries that lie beside it.
QString copyProgram(const QString &folder)
{
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    QString problem = copyFiles(programs, {program, QStringLiteral("*.dll"), QStringLiteral("qt.conf")},
                                folder + QStringLiteral("/bin"));
    if (problem.isEmpty())
        problem = copyFiles(programs.filePath(QStringLiteral("platforms")), {QStringLiteral("*.dll")},
                            folder + QStringLiteral("/bin/platforms"));
    return problem;
}

/// The copy gets Ctrl-C as well, and ends in order. This process waits for it.
BOOL WINAPI ignoreConsoleEvent(DWORD)
{
    return TRUE;
}

/// Runs the copy with the same arguments and standard streams.
int becomeCopy(const QString &folder, char *[], QString &problem)
{
    const QString program = QDir::toNativeSeparators(folder + QStringLiteral("/bin/") +
                                                     QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    std::wstring arguments = GetCommandLineW();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    SetConsoleCtrlHandler(ignoreConsoleEvent, TRUE);
    if (!CreateProcessW(program.toStdWString().c_str(), arguments.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &process)) {
        problem = QStringLiteral("error %1 of Windows").arg(GetLastError());
        return kNoCopy;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD status = kNoCopy;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return int(status);
}

#else

const char kFolderVariable[] = "TMPDIR";

/// Removes the folder at the end of the process.
void removeAtEnd(const QString &folder)
{
    struct Removal {
        ~Removal() { QDir(folder).removeRecursively(); }
        QString folder;
    };
    // Made before the library's settings, so it ends after they have been written.
    static Removal removal;
    removal.folder = folder;
}

/// The program. If it is installed, it finds its libraries beside its folder.
QString copyProgram(const QString &folder)
{
    const QFileInfo program(QCoreApplication::applicationFilePath());
    const QDir installed(program.path() + QStringLiteral("/.."));
    for (const QString &libraries : {QStringLiteral("lib"), QStringLiteral("lib64")}) {
        if (installed.exists(libraries))
            QFile::link(QFileInfo(installed.filePath(libraries)).absoluteFilePath(), QDir(folder).filePath(libraries));
    }
    return copyFiles(program.dir(), {program.fileName()}, folder + QStringLiteral("/bin"));
}

/// Does not return when it succeeds.
int becomeCopy(const QString &folder, char *argv[], QString &problem)
{
    const QString program =
        folder + QStringLiteral("/bin/") + QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    execv(QFile::encodeName(program).constData(), argv);
    problem = QString::fromLocal8Bit(std::strerror(errno));
    return kNoCopy;
}

#endif

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

QString SettingsFolder::programFolder()
{
    // Kept, because enterOwn() takes the variable away.
    static const QString folder = qEnvironmentVariableIsSet(kProgramFolder) ? qEnvironmentVariable(kProgramFolder)
                                                                            : QCoreApplication::applicationDirPath();
    return folder;
}

std::optional<int> SettingsFolder::enterOwn(char *argv[], QString &problem)
{
    if (qEnvironmentVariableIsSet(kOwnFolder)) {
        removeAtEnd(qEnvironmentVariable(kOwnFolder));
        programFolder();
        qunsetenv(kOwnFolder);
        qunsetenv(kProgramFolder);
        return std::nullopt;
    }
    QTemporaryDir folder;
    folder.setAutoRemove(false); // the copy will do it
    int status = kNoCopy;
    problem = folder.isValid() ? copyProgram(folder.path()) : folder.errorString();
    if (problem.isEmpty()) {
        qputenv(kOwnFolder, QFile::encodeName(folder.path()));
        qputenv(kProgramFolder, QFile::encodeName(QCoreApplication::applicationDirPath()));
        status = becomeCopy(folder.path(), argv, problem);
    }
    QDir(folder.path()).removeRecursively();
    if (!problem.isEmpty())
        problem = QStringLiteral("cannot run as a copy in %1 (%2 chooses another folder): %3")
                      .arg(QDir::tempPath(), QLatin1String(kFolderVariable), problem);
    return status;
}

void SettingsFolder::write(const QString &login, const QByteArray &settings)
{
    QFile file(fileOf(login));
    if (settings.isEmpty() || !QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly))
        return;
    file.write(settings);
}

} // namespace sim
