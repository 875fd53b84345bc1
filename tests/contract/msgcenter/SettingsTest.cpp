#include "msgcenter/WebMsgCenter.h"

#include "HostTest.h"
#include "LogRecorder.h"
#include "OwnAccount.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>

#include <atomic>
#include <thread>

namespace {

/// Settings that belong to this test alone: tests run side by side in one folder.
class SettingsTest : public HostTest {
protected:
    SettingsTest()
    {
        start.dataDispatchers = 0;
        start.loginAccount = account;
    }

    static QString folder(const QString &account) { return OwnAccount::folderOf(account); }

    /// What another process prints for the account; its error text when it fails.
    static QString otherRun(const QString &account, const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(VARNEL_SETTINGS_PROCESS), QStringList{account} + arguments);
        if (!process.waitForFinished() || process.exitCode() != 0 || process.exitStatus() != QProcess::NormalExit)
            return QStringLiteral("failed: ") + QString::fromUtf8(process.readAllStandardError());
        return QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n")); // on Windows lines end so
    }

    /// The message center of this run.
    WebMsgCenter *center()
    {
        if (!started)
            expectStart(start);
        started = true;
        return WebMsgCenter::instance();
    }

    /// Writes the file, as the event loop does when it next turns.
    static void writeBack() { QCoreApplication::processEvents(); }

    const OwnAccount ownAccount;
    const QString account = ownAccount.name;
    HostStart start;
    bool started = false;
};

TEST_F(SettingsTest, KeyNeverSavedIsEmpty)
{
    EXPECT_EQ(center()->getSetting(QStringLiteral("never")), QString());
    EXPECT_EQ(center()->getSetting(QString()), QString());
}

TEST_F(SettingsTest, SavedValueIsReadInTheSameRunAndTheLastOneCounts)
{
    center()->saveSetting(QStringLiteral("k"), QStringLiteral("v1"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("k")), QStringLiteral("v1"));
    center()->saveSetting(QStringLiteral("k"), QStringLiteral("v2"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("k")), QStringLiteral("v2"));
}

TEST_F(SettingsTest, KeysThatDifferInCaseAreOneOnWindowsOnly)
{
    center()->saveSetting(QStringLiteral("k"), QStringLiteral("v"));
#ifdef Q_OS_WIN
    EXPECT_EQ(center()->getSetting(QStringLiteral("K")), QStringLiteral("v"));
#else
    EXPECT_EQ(center()->getSetting(QStringLiteral("K")), QString());
#endif
}

TEST_F(SettingsTest, EmptyKeyIsRefusedWithoutALogLine)
{
    center();
    const LogRecorder log; // Qt would warn while the settings are locked
    center()->saveSetting(QString(), QStringLiteral("v"));
    EXPECT_EQ(center()->getSetting(QString()), QString());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(SettingsTest, SlashesBeforeAKeyDoNotCount)
{
    center()->saveSetting(QStringLiteral("x"), QStringLiteral("v"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("/x")), QStringLiteral("v"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("//x/")), QStringLiteral("v"));
}

// Qt writes keys without a section to [General], so that a section of that name, in any case, is written as [%General].
// Here there are two of those, and both are read as "General".
TEST_F(SettingsTest, SectionsThatDifferInCaseFromGeneralAreOneAfterARestart)
{
    EXPECT_EQ(otherRun(account, {QStringLiteral("save"), QStringLiteral("General/x"), QStringLiteral("upper"),
                                 QStringLiteral("general/y"), QStringLiteral("lower"), QStringLiteral("x"),
                                 QStringLiteral("none")}),
              QString());
    EXPECT_EQ(center()->getSetting(QStringLiteral("General/x")), QStringLiteral("upper"));
#ifdef Q_OS_WIN
    EXPECT_EQ(center()->getSetting(QStringLiteral("general/y")), QStringLiteral("lower"));
#else
    EXPECT_EQ(center()->getSetting(QStringLiteral("general/y")), QString());
#endif
    EXPECT_EQ(center()->getSetting(QStringLiteral("General/y")), QStringLiteral("lower"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("x")), QStringLiteral("none"));
}

TEST_F(SettingsTest, LieInTheFolderOfTheAccount)
{
    center()->saveSetting(QStringLiteral("k"), QStringLiteral("v"));
    writeBack();
    EXPECT_TRUE(QFile::exists(folder(account) + QStringLiteral("/WebSettings.ini")));
}

TEST_F(SettingsTest, AreReadByTheNextRunOfTheSameAccount)
{
    EXPECT_EQ(otherRun(account, {QStringLiteral("save"), QStringLiteral("k"), QStringLiteral("汉, \"x\"=1;y"),
                                 QStringLiteral("group/k"), QStringLiteral("@Invalid()")}),
              QString());
    EXPECT_EQ(center()->getSetting(QStringLiteral("k")), QStringLiteral("汉, \"x\"=1;y"));
    EXPECT_EQ(center()->getSetting(QStringLiteral("group/k")), QStringLiteral("@Invalid()"));
}

TEST_F(SettingsTest, OfThisRunAreReadByTheNext)
{
    center()->saveSetting(QStringLiteral("k"), QString::fromUtf8("a𝄞b"));
    writeBack();
    EXPECT_EQ(otherRun(account, {QStringLiteral("get"), QStringLiteral("k"), QStringLiteral("other")}),
              QString::fromUtf8("a𝄞b\n\n"));
}

TEST_F(SettingsTest, OfTwoAccountsAreSeparate)
{
    const QString second = account + QStringLiteral("-2");
    EXPECT_EQ(otherRun(account, {QStringLiteral("save"), QStringLiteral("k"), QStringLiteral("first")}), QString());
    EXPECT_EQ(otherRun(second, {QStringLiteral("save"), QStringLiteral("k"), QStringLiteral("second")}), QString());
    EXPECT_EQ(otherRun(account, {QStringLiteral("get"), QStringLiteral("k")}), QStringLiteral("first\n"));
    EXPECT_EQ(otherRun(second, {QStringLiteral("get"), QStringLiteral("k")}), QStringLiteral("second\n"));
    EXPECT_NE(folder(account), folder(second));
    EXPECT_TRUE(QDir(folder(second)).removeRecursively());
}

TEST_F(SettingsTest, SurviveHostileTexts)
{
    const QString hostile =
        QString::fromUtf8("line\nnext\r[section]\n%00;#") + QChar(0) + QString(100000, QLatin1Char('x'));
    EXPECT_EQ(otherRun(account, {QStringLiteral("save"), QStringLiteral("a b=c;[d]"), QStringLiteral("v")}), QString());
    EXPECT_EQ(center()->getSetting(QStringLiteral("a b=c;[d]")), QStringLiteral("v"));
    center()->saveSetting(QStringLiteral("k"), hostile);
    center()->saveSetting(QString(), QStringLiteral("the empty key is refused"));
    writeBack();
    EXPECT_EQ(center()->getSetting(QStringLiteral("k")), hostile);
    EXPECT_EQ(QSettings(folder(account) + QStringLiteral("/WebSettings.ini"), QSettings::IniFormat)
                  .value(QStringLiteral("k"))
                  .toString(),
              hostile);
}

TEST_F(SettingsTest, AreSafeFromSeveralThreads)
{
    WebMsgCenter *shared = center();
    std::atomic<int> ready{0};
    const auto work = [shared, &ready](const QString &key) {
        for (++ready; ready < 2;) {
        }
        for (int i = 0; i < 500; ++i) {
            shared->saveSetting(key, QString::number(i));
            EXPECT_EQ(shared->getSetting(key), QString::number(i));
        }
    };
    std::thread other(work, QStringLiteral("a"));
    work(QStringLiteral("b"));
    other.join();
    EXPECT_EQ(shared->getSetting(QStringLiteral("a")), QStringLiteral("499"));
}

TEST_F(SettingsTest, OfAnotherThreadAreOnDiskWhenTheEventLoopIsIdle)
{
    // Each round ends with a save that may meet the write-back of the one before it.
    constexpr int rounds = 60;
    constexpr int saves = 300;
    WebMsgCenter *shared = center();
    for (int round = 1; round <= rounds; ++round) {
        const auto value = [round](int i) { return QStringLiteral("%1.%2").arg(round).arg(i); };
        std::atomic<bool> done{false};
        std::thread other([&] {
            for (int i = 1; i <= saves; ++i)
                shared->saveSetting(QStringLiteral("k"), value(i));
            done = true;
        });
        while (!done)
            writeBack();
        other.join();
        writeBack();
        // The bytes of the file: a second QSettings would share what is not on disk yet.
        QFile file(folder(account) + QStringLiteral("/WebSettings.ini"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QByteArray text = file.readAll();
        EXPECT_TRUE(text.contains("k=" + value(saves).toLatin1() + '\n')) << text.constData();
    }
}

TEST_F(SettingsTest, WithoutALoginLieInTheFolderWithAnEmptyName)
{
    start.loginAccount = QString();
    center()->saveSetting(QStringLiteral("k"), QStringLiteral("v"));
    writeBack();
    const QString file = QCoreApplication::applicationDirPath() + QStringLiteral("/work//WebSettings.ini");
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_TRUE(QFile::remove(file));
}

} // namespace
