#include "CheckProcess.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Names = CheckRun::Names;

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(fileName);
    return file.readAll();
}

} // namespace

TEST(CrashIsolation, ACheckThatCrashesTakesNoOtherDown)
{
    const CheckRun sound = runSample("--with login");
    const CheckRun run = runSample("--with login", "UnknownMenuCrashes");
    const std::string beginning =
        "CRASHED    login.unknown-menu\n"
        "           The terminal crashes when a page opens a menu that this user does not have.\n"
        "           seen: the process ";
    EXPECT_EQ(run.entry("login.unknown-menu").substr(0, beginning.size()), beginning);
    EXPECT_EQ(run.checks(), sound.checks());
    EXPECT_EQ(run.checksThat({"ok"}).size(), sound.checks().size() - 1);
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(CrashIsolation, ACheckThatHangsIsEndedAtItsTimeLimit)
{
    const CheckRun run = runSample("--run unknown.* --time-limit 0.5", "UnknownOrderHangs");
    EXPECT_EQ(run.entry("unknown.order"),
              "TIMED OUT  unknown.order\n"
              "           The cancellation of a mistyped order goes to the account of another order.\n"
              "           expected: an end within 0.5 seconds\n"
              "           seen: none");
    EXPECT_EQ(run.word("unknown.security-details"), "ok");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(CrashIsolation, AnExceptionOfTheHostIsAFailure)
{
    const CheckRun run = runSample("--run unknown.order", "UnknownOrderThrows");
    EXPECT_EQ(run.entry("unknown.order"),
              "FAILED     unknown.order\n"
              "           The cancellation of a mistyped order goes to the account of another order.\n"
              "           expected: no host operation throws\n"
              "           seen: the exception \"no such order\"");
}

TEST(CrashIsolation, WhatTheHostPrintsStaysOutOfTheReport)
{
    const CheckRun run = runSample("--run host.start --run packing.texts", "PrintsHalfALine");
    EXPECT_EQ(run.output, "ok         host.start\nok         packing.texts\n\n2 checks: 2 ok\n");
    EXPECT_TRUE(run.errors.find("half a line") != std::string::npos) << run.errors;
}

TEST(Start, SkipsAllChecksWhenItFails)
{
    const CheckRun run = runSample("", "StartFails");
    EXPECT_EQ(run.entry("host.start"), "FAILED     host.start\n"
                                       "           Nothing else can be checked.\n"
                                       "           expected: the host starts\n"
                                       "           seen: no login");
    EXPECT_EQ(run.checksThat({"skipped"}).size(), run.checks().size() - 1);
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(Start, IsToldWhenItFailsAlsoIfNobodyAskedForIt)
{
    const CheckRun run = runSample("--run packing.texts", "StartFails");
    EXPECT_EQ(run.word("host.start"), "FAILED");
    EXPECT_EQ(run.word("packing.texts"), "skipped");
}

TEST(Start, MayCrash)
{
    const CheckRun run = runSample("--run packing.texts", "StartCrashes");
    EXPECT_EQ(run.word("host.start"), "CRASHED");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(Start, HasATimeLimitOfItsOwn)
{
    const CheckRun run = runSample("--run packing.texts --start-limit 0.3", "StartHangs");
    EXPECT_EQ(run.word("host.start"), "TIMED OUT");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(KnownValues, ThatAreMissingSkipTheirChecks)
{
    const CheckRun run = runSample("--with orders -- missing");
    EXPECT_TRUE(run.prints("skipped    securities.precision: needs --symbol\n")) << run.output;
    EXPECT_TRUE(run.prints("skipped    accounts.cash: needs --trading-account\n"));
    EXPECT_TRUE(run.prints("skipped    accounts.trading-account-of-fund: needs --fund-account\n"));
    EXPECT_TRUE(run.prints("skipped    securities.bond-has-base-info: needs --bond\n"));
    EXPECT_TRUE(run.prints("skipped    packing.first-row: needs KnownValues::packRows\n"));
    EXPECT_TRUE(run.prints("skipped    trade.response: needs --symbol, --trading-account, --order\n"));
    EXPECT_EQ(run.exitStatus, 0);
}

TEST(KnownValues, ComeFromTheCommandLineToo)
{
    const CheckRun run = runSample("--with login --with orders --symbol 600001.X --bond 100001.X --fund-account fund1 "
                                   "--trading-account trading1 --order buy,limit,18.00,100,X -- missing");
    EXPECT_EQ(run.checksThat({"skipped"}), Names{"packing.first-row"});
    EXPECT_EQ(run.exitStatus, 0) << run.output;
}

TEST(KnownValues, OfTheCommandLineWin)
{
    const CheckRun run = runSample("--run securities.details --symbol 999999.X");
    EXPECT_EQ(run.word("securities.details"), "FAILED");
}

TEST(Parts, ThatNeedALoginOrPlaceOrdersAreOff)
{
    const CheckRun run = runSample("");
    EXPECT_EQ(run.word("k-lines.answer"), "");
    EXPECT_EQ(run.word("trade.response"), "");
    EXPECT_EQ(run.word("packing.texts"), "ok");
}

TEST(Parts, AreSwitchedOnOneByOne)
{
    const CheckRun run = runSample("--with login");
    EXPECT_EQ(run.word("k-lines.answer"), "ok");
    EXPECT_EQ(run.word("trade.response"), "");
}

TEST(Run, RunsAnExactNameWhateverItsPart)
{
    const CheckRun run = runSample("--run trade.response --run packing.texts");
    EXPECT_EQ(run.checksThat({"ok"}), (Names{"packing.texts", "trade.response"}));
    EXPECT_EQ(run.checks().size(), 2u);
}

TEST(Run, RunsWhatAWildcardMatchesOfThePartsThatAreOn)
{
    const CheckRun run = runSample("--run login.* --run init-states.start-o*");
    EXPECT_EQ(run.checks(),
              (Names{"init-states.start-on-one-thread", "init-states.start-once", "login.client-order-ids-differ"}));
}

TEST(InProcess, RunsTheSameChecksApartFromTheEnd)
{
    const CheckRun run = runSample("--in-process --with login --with orders");
    EXPECT_EQ(run.checksThat({"skipped"}), Names{"host.end"});
    EXPECT_EQ(run.checks(), runSample("--with login --with orders").checks());
    EXPECT_EQ(run.exitStatus, 0) << run.output;
}

TEST(InProcess, FailsWithTheSameStatus)
{
    const CheckRun run = runSample("--in-process --run packing.texts", "TextsTrimmed");
    EXPECT_EQ(run.word("packing.texts"), "FAILED");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST(JUnit, HasEveryResult)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("results.xml"));
    runSample("--run host.start --run unknown.* --run packing.first-row --time-limit 0.5 --junit " +
                  path.toStdString() + " -- missing",
              "UnknownOrderHangs");
    QXmlStreamReader xml(contentOf(path));
    std::map<std::string, std::string> results;
    std::string counts;
    std::string current;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attribute = [&](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toString().toStdString();
        };
        const std::string element = xml.name().toString().toStdString();
        if (element == "testsuite") {
            counts = attribute("tests") + attribute("failures") + attribute("errors") + attribute("skipped");
        } else if (element == "testcase") {
            current = attribute("name");
            results[current] = "ok";
        } else {
            results[current] = element;
        }
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    EXPECT_EQ(counts, "19011");
    EXPECT_EQ(results.size(), 19u);
    EXPECT_EQ(results["host.start"], "ok");
    EXPECT_EQ(results["unknown.order"], "error");
    EXPECT_EQ(results["packing.first-row"], "skipped");
}

TEST(JUnit, CallsAFailureAFailure)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("results.xml"));
    runSample("--run packing.texts --junit " + path.toStdString(), "TextsTrimmed");
    const QByteArray xml = contentOf(path);
    EXPECT_TRUE(
        xml.contains("<failure message=\"Texts in strategy calls and K-line requests arrive changed.; expected: "))
        << xml.constData();
}

namespace {

struct BadLine {
    const char *name;
    const char *arguments;
    const char *reason;
};

class BadCommandLine : public testing::TestWithParam<BadLine> {};

} // namespace

TEST_P(BadCommandLine, IsRefusedWithOneLine)
{
    const CheckRun run = runSample(GetParam().arguments);
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, std::string("varnel-host-check: ") + GetParam().reason + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Each, BadCommandLine,
    testing::Values(BadLine{"UnknownOption", "--what", "Unknown option 'what'."},
                    BadLine{"NoOption", "what", "\"what\" is no option"},
                    BadLine{"UnknownCheck", "--run what", "no check is named \"what\"; --list shows them all"},
                    BadLine{"UnknownWildcard", "--run what.*", "no check is named \"what.*\"; --list shows them all"},
                    BadLine{"PartIsOff", "--run trade.*",
                            "--run chooses only checks whose part is off; --with switches parts on"},
                    BadLine{"UnknownPart", "--with what", "--with takes login or orders, not \"what\""},
                    BadLine{"NoNumber", "--time-limit soon", "a limit must be a number of seconds above zero"},
                    BadLine{"Zero", "--start-limit 0", "a limit must be a number of seconds above zero"},
                    BadLine{"OrderOfFourParts", "--order buy,limit,18,100",
                            "--order takes side,price type,price,quantity,exchange"},
                    BadLine{"OrderWithoutQuantity", "--order buy,limit,18,none,X",
                            "--order takes side,price type,price,quantity,exchange"},
                    BadLine{"FileCannotBeWritten", "--junit no/such/folder/results.xml",
                            "cannot write no/such/folder/results.xml"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(Help, NamesTheOptions)
{
    const CheckRun run = runSample("--help");
    for (const char *option : {"--list", "--run", "--with", "--symbol", "--bond", "--fund-account", "--trading-account",
                               "--order", "--junit", "--time-limit", "--start-limit", "--in-process"})
        EXPECT_TRUE(run.prints(option)) << option;
    EXPECT_FALSE(run.prints("--child"));
    EXPECT_EQ(run.exitStatus, 0);
}

namespace {

/// The first groups of all matches.
std::vector<QStringList> matchesIn(const QString &text, const QString &pattern)
{
    std::vector<QStringList> found;
    QRegularExpressionMatchIterator matches =
        QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext())
        found.push_back(matches.next().capturedTexts().mid(1));
    return found;
}

} // namespace

// The page has one row for each check, as --list shows it.
TEST(Document, ListsTheChecks)
{
    const auto listed = matchesIn(QString::fromStdString(runSample("--list").output),
                                  QStringLiteral("^([a-z.-]+)(?: \\(([^)]*)\\))?\\n    (.*)$"));
    const auto rows = matchesIn(QString::fromUtf8(contentOf(QStringLiteral(DOCUMENT))),
                                QStringLiteral("^\\| `([a-z.-]+)` \\| ([^|]*)\\| (.*) \\|$"));
    ASSERT_GT(listed.size(), 100u);
    for (size_t i = 0; i < std::max(listed.size(), rows.size()); ++i) {
        const QStringList check = i < listed.size() ? listed[i] : QStringList();
        QStringList row = i < rows.size() ? rows[i] : QStringList(QString());
        if (row.size() > 1)
            row[1] = row[1].remove(QLatin1Char('`')).trimmed();
        ASSERT_EQ(row.join(QLatin1Char('\n')).toStdString(), check.join(QLatin1Char('\n')).toStdString());
    }
}

TEST(Main, OfTheArchiveRunsTheChecks)
{
    const CheckRun run = runProgram(DEFAULT_CHECK, "--run packing.* --run securities.* --symbol 600001.X");
    EXPECT_EQ(run.checksThat({"skipped"}), (Names{"packing.first-row", "securities.bond-has-base-info"}));
    EXPECT_EQ(run.exitStatus, 0) << run.output;
}
