#include "BenchHost.h"

#include "platform/Terminal.h"

#include <QApplication>
#include <QJsonDocument>
#include <QLoggingCategory>

const QString uuid = QStringLiteral("3f2b6c1e-8d0a-4a5e-9b57-6f1f0c2f7a11");

QString bareReply(const QVariant &resultData)
{
    const QVariantMap map{{QStringLiteral("uuid"), uuid},
                          {QStringLiteral("code"), QStringLiteral("0")},
                          {QStringLiteral("msg"), QString()},
                          {QStringLiteral("resultData"), resultData}};
    return QString::fromUtf8(QJsonDocument::fromVariant(map).toJson(QJsonDocument::Compact));
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));

    sim::Scenario scenario;
    QString error;
    if (!sim::Scenario::read(sim::Scenario::defaultFile(), scenario, error)) {
        qCritical("%s", qUtf8Printable(error));
        return 2;
    }
    const sim::Terminal terminal(scenario, scenario.logins.first(), 1.0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
