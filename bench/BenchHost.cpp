#include "BenchHost.h"

#include <QJsonDocument>

const QString uuid = QStringLiteral("3f2b6c1e-8d0a-4a5e-9b57-6f1f0c2f7a11");

QVariantMap envelope(const QVariant &resultData)
{
    return {{QStringLiteral("uuid"), uuid},
            {QStringLiteral("code"), QStringLiteral("0")},
            {QStringLiteral("msg"), QString()},
            {QStringLiteral("resultData"), resultData}};
}

QString qtText(const QVariant &value)
{
    return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
}

std::unique_ptr<sim::Terminal> makeTerminal()
{
    sim::Scenario scenario;
    QString error;
    if (!sim::Scenario::read(sim::Scenario::defaultFile(), scenario, error))
        qFatal("%s", qUtf8Printable(error));
    return std::make_unique<sim::Terminal>(scenario, scenario.logins.first(), 1.0);
}
