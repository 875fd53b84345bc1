#include "exchange/TradingCalendar.h"
#include "platform/Command.h"
#include "platform/FrozenTime.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <thread>

using namespace sim;

namespace {

QString problemOf(const char *fault)
{
    FaultSetting setting;
    return Faults::parse(QString::fromUtf8(fault), setting);
}

FaultSetting settingOf(const char *fault)
{
    FaultSetting setting;
    EXPECT_EQ(QString(), Faults::parse(QString::fromUtf8(fault), setting));
    return setting;
}

QString problemOfCommand(const char *text)
{
    Command command;
    return Command::parse(QString::fromUtf8(text), command);
}

Command commandOf(const char *text)
{
    Command command;
    EXPECT_EQ(QString(), Command::parse(QString::fromUtf8(text), command)) << text;
    return command;
}

QString jump(const char *time, const char *now)
{
    const QString form = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    QDateTime from = QDateTime::fromString(QLatin1String(now), form);
    from.setTimeSpec(Qt::UTC);
    return jumpTarget(QLatin1String(time), from, TradingCalendar()).toString(form);
}

QByteArray contentsOf(const char *path)
{
    QFile file(QStringLiteral(PROJECT_FOLDER "/") + QLatin1String(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

QString argumentOf(const FaultInfo &info)
{
    return info.kind == FaultKind::Switch ? QString() : QLatin1String(info.kind == FaultKind::Count ? "[=N]" : "=MS");
}

} // namespace

TEST(Faults, AreReadWithAndWithoutAValue)
{
    EXPECT_EQ(1, settingOf("refuse-orders").value);
    EXPECT_EQ(3, settingOf("refuse-orders=3").value);
    EXPECT_EQ(Fault::RefuseOrders, settingOf("refuse-orders=3").fault);
    EXPECT_EQ(1, settingOf("silent-klines").value);
    EXPECT_EQ(0, settingOf("silent-klines=0").value);
    EXPECT_EQ(500, settingOf("slow-answers=500").value);
}

TEST(Faults, MistakesAreExplained)
{
    EXPECT_TRUE(
        problemOf("").startsWith(QLatin1String("\"\" is not a fault: there are slow-answers, silent-klines, ")));
    EXPECT_TRUE(problemOf("nothing=1").startsWith(QLatin1String("\"nothing\" is not a fault: there are ")));
    const QString slow = QStringLiteral("the value of slow-answers must be a whole number from 0 to 600000, such as "
                                        "slow-answers=1000");
    for (const char *wrong :
         {"slow-answers", "slow-answers=", "slow-answers=-1", "slow-answers=1.5", "slow-answers=600001"})
        EXPECT_EQ(slow, problemOf(wrong)) << wrong;
    EXPECT_EQ(QStringLiteral("the value of silent-klines must be 1, or 0 to switch it off, such as silent-klines=1"),
              problemOf("silent-klines=2"));
}

TEST(Faults, ACountIsUsedUp)
{
    Faults faults;
    EXPECT_FALSE(faults.take(Fault::RefuseOrders));
    faults.set({Fault::RefuseOrders, 2});
    EXPECT_TRUE(faults.take(Fault::RefuseOrders));
    EXPECT_EQ(1, faults.value(Fault::RefuseOrders));
    EXPECT_TRUE(faults.take(Fault::RefuseOrders));
    EXPECT_FALSE(faults.take(Fault::RefuseOrders));
    EXPECT_FALSE(faults.isOn(Fault::RefuseOrders));
}

TEST(Faults, WhatIsHandledLateSeesTheFaultsOfItsTime)
{
    const QDateTime changed(QDate(2025, 3, 3), QTime(10, 0), Qt::UTC);
    Faults faults;
    faults.set({Fault::SilentKLines, 1}, changed);
    EXPECT_TRUE(faults.isOn(Fault::SilentKLines));
    const FrozenTime earlier(changed.addMSecs(-1));
    EXPECT_FALSE(faults.isOn(Fault::SilentKLines));
    faults.set({Fault::SilentKLines, 0}, changed); // twice at one time
    EXPECT_FALSE(faults.isOn(Fault::SilentKLines));
    const FrozenTime then(changed);
    EXPECT_FALSE(faults.isOn(Fault::SilentKLines));
    faults.set({Fault::SilentKLines, 1}, changed);
    EXPECT_TRUE(faults.isOn(Fault::SilentKLines));
}

TEST(Faults, WhoeverWaitsForASlowServerGoesOnWhenTheFaultEnds)
{
    Faults faults;
    faults.awaitSlowServer(1); // returns at once
    faults.set({Fault::SlowAnswers, 600000});
    std::thread waits([&] { faults.awaitSlowServer(1); });
    faults.set({Fault::SlowAnswers, 0});
    waits.join();
}

TEST(Commands, AreReadWithTheirArguments)
{
    EXPECT_EQ(CommandName::Pause, commandOf("pause").name);
    EXPECT_EQ(2.5, commandOf("  speed   2.5 ").speed);
    EXPECT_EQ(Fault::LatePushes, commandOf("fault late-pushes=20").fault.fault);
    EXPECT_EQ(20, commandOf("fault late-pushes=20").fault.value);
    EXPECT_TRUE(commandOf("clear").isOfAll);
    EXPECT_FALSE(commandOf("clear late-pushes").isOfAll);
    EXPECT_EQ(QStringLiteral("609801.SH"), commandOf("halt 609801.SH").symbol);
    EXPECT_EQ(QStringLiteral("609801.SH"), commandOf("resume 609801.SH").symbol);
    EXPECT_EQ(QString(), commandOf("resume").symbol);
    EXPECT_EQ(2000, commandOf("burst 2000").count);
    EXPECT_TRUE(commandOf("drop").isOfAll);
    EXPECT_EQ(7, commandOf("drop 7").count);
    EXPECT_EQ(QStringLiteral("2025-03-04 09:30:00"), commandOf("jump 2025-03-04 09:30:00").time);
}

TEST(Commands, WhatConcernsThePaceIsNotPlayedAgain)
{
    for (const char *again :
         {"fault silent-klines", "clear", "halt 609801.SH", "resume 609801.SH", "burst 2", "jump close"})
        EXPECT_TRUE(commandOf(again).isPlayedAgain()) << again;
    for (const char *once : {"pause", "resume", "step", "speed 2", "drop", "drop 1"})
        EXPECT_FALSE(commandOf(once).isPlayedAgain()) << once;
    EXPECT_EQ(QStringLiteral("speed 2"), commandOf("  speed   2 ").text);
}

TEST(Commands, MistakesAreExplained)
{
    EXPECT_EQ(QStringLiteral("pause takes nothing behind it"), problemOfCommand("pause now"));
    EXPECT_EQ(QStringLiteral("speed needs a number from 0.01 to 1000"), problemOfCommand("speed 0"));
    EXPECT_EQ(QStringLiteral("halt needs a symbol such as 609801.SH"), problemOfCommand("halt"));
    EXPECT_EQ(QStringLiteral("burst needs a number of orders from 1 to 100000"), problemOfCommand("burst 0"));
    EXPECT_EQ(QStringLiteral("drop needs the number of a page, or nothing behind it to drop them all"),
              problemOfCommand("drop all"));
    EXPECT_EQ(QStringLiteral("jump needs \"close\", a time such as 14:57:00, or one such as 2025-03-04 09:30:00"),
              problemOfCommand("jump tomorrow"));
    EXPECT_TRUE(problemOfCommand("fault x").startsWith(QLatin1String("fault needs a fault: \"x\" is not a fault: ")));
    for (const char *none : {"", "Pause", "stop"})
        EXPECT_TRUE(problemOfCommand(none).contains(QLatin1String(" is not a command: there are pause, "))) << none;
}

TEST(Commands, AJumpGoesForward)
{
    EXPECT_EQ(QStringLiteral("2025-03-03 15:00:00"), jump("close", "2025-03-03 10:00:00"));
    EXPECT_EQ(QStringLiteral("2025-03-04 15:00:00"), jump("close", "2025-03-03 15:00:00"));
    EXPECT_EQ(QStringLiteral("2025-03-10 15:00:00"), jump("close", "2025-03-08 10:00:00"));
    EXPECT_EQ(QStringLiteral("2025-03-03 14:57:00"), jump("14:57:00", "2025-03-03 10:00:00"));
    EXPECT_EQ(QString(), jump("10:00:00", "2025-03-03 10:00:00"));
    EXPECT_EQ(QStringLiteral("2025-03-04 09:30:00"), jump("2025-03-04 09:30:00", "2025-03-03 10:00:00"));
    EXPECT_EQ(QString(), jump("2025-03-02 09:30:00", "2025-03-03 10:00:00"));
}

TEST(Faults, TheDocumentAndTheSchemaHaveTheSameTable)
{
    const QString document = QString::fromUtf8(contentsOf("docs/simulator.md"));
    const QJsonObject schema =
        QJsonDocument::fromJson(contentsOf("simulator/scenarios/scenario.schema.json"))
            .object()
            .value(QLatin1String("properties"))[QLatin1String("faults")][QLatin1String("properties")]
            .toObject();
    EXPECT_EQ(Faults::kCount, schema.size());
    for (const FaultInfo &info : Faults::all()) {
        const QString line = QStringLiteral("\n| `%1` | %2 |\n")
                                 .arg(QLatin1String(info.name) + argumentOf(info), QLatin1String(info.sentence));
        EXPECT_TRUE(document.contains(line)) << info.name;
        const QJsonObject key = schema[QLatin1String(info.name)].toObject();
        EXPECT_EQ(QLatin1String(info.sentence), key[QLatin1String("description")].toString()) << info.name;
        EXPECT_EQ(info.kind == FaultKind::Switch ? QStringLiteral("boolean") : QStringLiteral("integer"),
                  key[QLatin1String("type")].toString())
            << info.name;
        EXPECT_EQ(info.kind == FaultKind::Switch ? 0 : info.most, key[QLatin1String("maximum")].toInt()) << info.name;
    }
}

TEST(Commands, TheDocumentHasTheSameTable)
{
    const QString document = QString::fromUtf8(contentsOf("docs/simulator.md"));
    for (const CommandInfo &info : Command::all()) {
        const QString form = (QLatin1String(info.word) + QLatin1Char(' ') + QLatin1String(info.argument)).trimmed();
        EXPECT_TRUE(document.contains(QStringLiteral("\n| `%1` | %2 |\n").arg(form, QLatin1String(info.sentence))))
            << info.word;
    }
}
