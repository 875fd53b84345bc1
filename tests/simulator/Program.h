#pragma once

#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

// To run the simulator's program.

constexpr int kPatienceMs = 30000;

struct Outcome {
    int status;
    QString out;
    QString err;
};

inline QString text(QByteArray output)
{
    return QString::fromUtf8(output.replace("\r\n", "\n")); // on Windows lines end so
}

inline Outcome run(const QStringList &options, const QString &program = QStringLiteral(SIMULATOR_BINARY))
{
    QProcess simulator;
    simulator.start(program, options);
    EXPECT_TRUE(simulator.waitForFinished(kPatienceMs));
    EXPECT_EQ(QProcess::NormalExit, simulator.exitStatus());
    return {simulator.exitCode(), text(simulator.readAllStandardOutput()), text(simulator.readAllStandardError())};
}

inline QByteArray readLine(QProcess &process)
{
    while (!process.canReadLine() && process.waitForReadyRead(kPatienceMs)) {
    }
    return process.readLine();
}
