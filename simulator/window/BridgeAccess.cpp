#include "window/BridgeAccess.h"

#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>
#include <QUuid>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

// Resources of a static library are linked only when they are named. Qt requires this outside of namespaces.
static void initResources()
{
    Q_INIT_RESOURCE(window);
}

namespace sim {

namespace {

const QString kScriptName = QStringLiteral("call bridge");

QString resource(const QString &name)
{
    QFile file(name);
    const bool isThere = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isThere);
    Q_UNUSED(isThere)
    return QString::fromUtf8(file.readAll());
}

/// As the page's own location.origin has it.
QString originOf(const QUrl &page)
{
    QUrl origin = page.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    if (origin.port() == (origin.scheme() == QLatin1String("https") ? 443 : 80))
        origin.setPort(-1);
    return origin.toString(QUrl::FullyEncoded);
}

bool isOfThisMachine(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

BridgeAccess::BridgeAccess(QWebEngineProfile &profile, const QStringList &origins)
    : m_profile(profile), m_key(QUuid::createUuid().toString()), m_origins(origins.cbegin(), origins.cend())
{
    initResources();
    putIntoProfile();
}

void BridgeAccess::allowOwn(const QUrl &page)
{
    if (!isOfThisMachine(page.host()) || isAllowed(page))
        return;
    m_origins.insert(originOf(page));
    putIntoProfile();
}

bool BridgeAccess::isAllowed(const QUrl &page) const
{
    return m_origins.contains(originOf(page));
}

void BridgeAccess::putIntoProfile() const
{
    const QString origins =
        QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(m_origins.values())).toJson(QJsonDocument::Compact));
    QWebEngineScript script;
    script.setName(kScriptName);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(QStringLiteral("(() => {\nif (!%1.includes(location.origin)) return;\nconst key = '%2';\n")
                             .arg(origins, m_key) +
                         resource(QStringLiteral(":/qtwebchannel/qwebchannel.js")) +
                         resource(QStringLiteral(":/window/bridge.js")) + QStringLiteral("})();\n"));
    QWebEngineScriptCollection *const scripts = m_profile.scripts();
    for (const QWebEngineScript &before : scripts->findScripts(kScriptName))
        scripts->remove(before);
    scripts->insert(script);
}

} // namespace sim
