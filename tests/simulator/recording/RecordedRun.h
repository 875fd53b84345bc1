#pragma once

#include "TerminalTest.h"
#include "recording/Recorder.h"
#include "recording/SettingsFolder.h"

#include <QProcess>
#include <QTemporaryDir>

/// A run of the built-in scenario that a test records in this process, and plays again with the real program.
class RecordedRun {
public:
    struct Outcome {
        int status;
        QString out;
        QString error; ///< the sentences of the simulator, without its log
    };

    explicit RecordedRun(double speed)
    {
        QFile scenarioFile(sim::Scenario::defaultFile());
        EXPECT_TRUE(scenarioFile.open(QIODevice::ReadOnly));
        head.scenario = scenarioFile.readAll();
        head.speed = speed;
    }

    /// Makes the terminal of the head, and records what the function does in it.
    template <typename Session>
    void record(Session session)
    {
        sim::Scenario scenario;
        QString error;
        EXPECT_TRUE(sim::Scenario::parse(head.scenario, QStringLiteral("scenario"), scenario, error))
            << qPrintable(error);
        for (const QString &text : head.faults) {
            sim::FaultSetting fault;
            EXPECT_EQ(QString(), sim::Faults::parse(text, fault));
            scenario.faults.append(fault);
        }
        head.seed = scenario.seed;
        head.login = scenario.logins.first().account;
        head.settings = sim::SettingsFolder::read(head.login);
        sim::Recorder recorder(file, head, [](const QString &problem) { FAIL() << qPrintable(problem); });
        EXPECT_TRUE(recorder.isOpen());
        {
            sim::Terminal terminal(scenario, scenario.logins.first(), head.speed);
            session(terminal);
        }
        EXPECT_TRUE(recorder.finish());
    }

    Outcome verify() const
    {
        constexpr int kPatienceMs = 60000;
        QProcess simulator;
        simulator.start(QStringLiteral(SIMULATOR_BINARY), {QStringLiteral("replay"), file, QStringLiteral("--verify")});
        EXPECT_TRUE(simulator.waitForFinished(kPatienceMs));
        QStringList sentences;
        for (const QString &line : QString::fromUtf8(simulator.readAllStandardError()).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("varnel-simulator: ")) || line.startsWith(QLatin1String("  ")))
                sentences.append(line);
        }
        return {simulator.exitCode(), QString::fromUtf8(simulator.readAllStandardOutput()),
                sentences.join(QLatin1Char('\n'))};
    }

    /// The lines of the recording of that kind.
    QList<QByteArray> lines(const char *kind) const
    {
        QFile recording(file);
        EXPECT_TRUE(recording.open(QIODevice::ReadOnly));
        QList<QByteArray> found;
        for (const QByteArray &line : recording.readAll().split('\n')) {
            if (line.contains(QByteArray("\"kind\":\"") + kind + '"'))
                found.append(line);
        }
        return found;
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("session.jsonl"));
    sim::RecordingHead head;
};
