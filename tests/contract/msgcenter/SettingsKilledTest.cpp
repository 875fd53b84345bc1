// The settings file is whole whenever the process is killed. Linux only: each run of the library is a fork of this
// process, which has neither an application nor a message center of its own.
#include "msgcenter/WebMsgCenter.h"

#include "HostMock.h"
#include "Replies.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using testing::Return;

namespace {

/// How often the process is killed.
#ifdef VARNEL_SANITIZED
constexpr int kills = 100;
#else
constexpr int kills = 500;
#endif

/// What the settings say in generation number. Its length changes from one generation to the next.
QString filling(int number)
{
    return QString(1000 + number * 37 % 3000, QChar(ushort('a' + number % 26)));
}

/// The generation that the bytes of a settings file are, when they are exactly one.
std::optional<int> generationIn(const QByteArray &file)
{
    const int begin = file.indexOf("first=") + 6;
    const int number = file.mid(begin, file.indexOf('\n', begin) - begin).toInt();
    const QByteArray digits = QByteArray::number(number);
    const QByteArray whole =
        "[General]\nfilling=" + filling(number).toLatin1() + "\nfirst=" + digits + "\nlast=" + digits + '\n';
    return file == whole ? std::optional(number) : std::nullopt;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A run of the library that saves one generation after the other until it is killed. It writes to the pipe the
/// generation that it has found, and then each one that has been saved and seen on the disk.
[[noreturn]] void saveUntilKilled(const QString &account, const QString &path, int pipe)
{
    int argc = 1;
    char name[] = "saver";
    char *argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    testing::NiceMock<HostMock> host;
    ON_CALL(host, CBusinessDataBase_GetLoginAccount).WillByDefault(Return(account));
    WebMsgCenter *const center = WebMsgCenter::instance();

    const auto tell = [pipe](int number) {
        if (write(pipe, &number, sizeof number) != sizeof number)
            _exit(1);
    };
    int number = center->getSetting(u"first"_qs).toInt();
    if (number > 0 && center->getSetting(u"filling"_qs) != filling(number))
        _exit(2);
    tell(number);
    for (;;) {
        ++number;
        center->saveSetting(u"first"_qs, QString::number(number));
        center->saveSetting(u"filling"_qs, filling(number));
        center->saveSetting(u"last"_qs, QString::number(number));
        QCoreApplication::processEvents(); // Qt writes the file
        if (generationIn(bytesOf(path)) != number)
            _exit(3);
        tell(number);
    }
}

/// A run of the library as a process of its own.
class SavingProcess {
public:
    SavingProcess(const QString &account, const QString &path)
    {
        int ends[2];
        if (pipe(ends) != 0)
            return;
        m_process = fork();
        if (m_process == 0)
            saveUntilKilled(account, path, ends[1]);
        close(ends[1]);
        m_pipe = ends[0];
    }
    ~SavingProcess() { close(m_pipe); }

    /// The next number that the run has told; nothing when it has ended.
    std::optional<int> next() const
    {
        int number = 0;
        return read(m_pipe, &number, sizeof number) == sizeof number ? std::optional(number) : std::nullopt;
    }

    /// True when the run had not ended by itself.
    bool killNow() const
    {
        int status = 0;
        kill(m_process, SIGKILL);
        return waitpid(m_process, &status, 0) == m_process && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    Q_DISABLE_COPY(SavingProcess)
    pid_t m_process = -1;
    int m_pipe = -1;
};

class SettingsKilledTest : public testing::Test {
protected:
    SettingsKilledTest() : account(u"killed-"_qs + QString::number(getpid())), folder(ownFolder(account)) {}
    ~SettingsKilledTest() override { QDir(folder).removeRecursively(); }

    /// As the library's: beside the program. This process has no application to ask.
    static QString ownFolder(const QString &account)
    {
        return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_qs)).path() + u"/work/"_qs + account;
    }

    /// A process that was killed after it had made a lock file and before it wrote into it leaves an empty one. Qt
    /// waits until such a file is 30 seconds old; this test does not. Returns how many there were.
    int removeEmptyLocks() const
    {
        int removed = 0;
        for (const QString &ending : {u".lock"_qs, u".lock.rmlock"_qs}) {
            QFile lock(path + ending);
            removed += lock.exists() && lock.size() == 0 && lock.remove();
        }
        return removed;
    }

    const QString account;
    const QString folder;
    const QString path = folder + u"/WebSettings.ini"_qs;
};

TEST_F(SettingsKilledTest, FileIsWholeAndKeepsWhatWasOnTheDisk)
{
    std::mt19937 random{std::random_device()()};
    std::uniform_real_distribution<double> uniform(0, 2);
    int generation = 0; // that the file has
    int newer = 0;
    int emptyLocks = 0;
    for (int round = 0; round < kills; ++round) {
        const SavingProcess run(account, path);
        ASSERT_EQ(run.next(), generation) << "the run before it ended in round " << round;
        const auto begin = std::chrono::steady_clock::now();
        ASSERT_EQ(run.next(), generation + 1) << "in round " << round;
        // Any moment within the next two saves. No outcome depends on which it is.
        std::this_thread::sleep_for((std::chrono::steady_clock::now() - begin) * uniform(random));
        ASSERT_TRUE(run.killNow()) << "in round " << round;
        int onDisk = generation + 1;
        while (const std::optional<int> told = run.next())
            onDisk = *told;
        const QByteArray bytes = bytesOf(path);
        const std::optional<int> found = generationIn(bytes);
        ASSERT_TRUE(found) << "in round " << round << ": " << bytes.constData();
        ASSERT_TRUE(*found == onDisk || *found == onDisk + 1) << *found << " instead of " << onDisk;
        newer += *found != onDisk;
        generation = *found;
        emptyLocks += removeEmptyLocks();
    }
    const int left = int(QDir(folder).entryList(QDir::Files | QDir::Hidden).size()) - 1;
    std::printf(
        "%d kills, %d generations saved; killed after the file was in place and before that was told: %d; empty "
        "lock files: %d; files left beside the settings: %d\n",
        kills, generation, newer, emptyLocks, left);
}

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
