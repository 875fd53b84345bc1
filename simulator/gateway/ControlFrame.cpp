#include "gateway/ControlFrame.h"

#include "gateway/ByteOrderMarks.h"
#include "terminal/Terminal.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

const QString kId = QStringLiteral("id");
const QString kKind = QStringLiteral("kind");

QByteArray textOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

const char *nameOf(FaultKind kind)
{
    switch (kind) {
    case FaultKind::Switch:
        return "switch";
    case FaultKind::Count:
        return "count";
    case FaultKind::Milliseconds:
        break;
    }
    return "milliseconds";
}

} // namespace

ControlFrame ControlFrame::read(const QByteArray &text)
{
    const QJsonObject request = QJsonDocument::fromJson(withEscapedMarks(text)).object();
    const QJsonValue words = request.value(QStringLiteral("command"));
    ControlFrame frame;
    frame.id = request.value(kId);
    frame.problem = words.isString() ? Command::parse(words.toString(), frame.command)
                                     : QStringLiteral("a command is a JSON object with a text \"command\"");
    return frame;
}

QByteArray resultFrame(const QJsonValue &id, const QString &problem)
{
    return textOf({{kKind, QStringLiteral("result")}, {kId, id}, {QStringLiteral("problem"), problem}});
}

QJsonObject controlState(Terminal &terminal)
{
    QJsonArray faults;
    for (const FaultInfo &info : Faults::all()) {
        faults.append(QJsonObject{{QStringLiteral("name"), QLatin1String(info.name)},
                                  {kKind, QLatin1String(nameOf(info.kind))},
                                  {QStringLiteral("most"), info.most},
                                  {QStringLiteral("sentence"), QLatin1String(info.sentence)},
                                  {QStringLiteral("value"), terminal.faults().value(info.fault)}});
    }
    return {{kKind, QStringLiteral("state")},
            {QStringLiteral("isPaused"), terminal.isPaused()},
            {QStringLiteral("speed"), terminal.speed()},
            {QStringLiteral("faults"), faults}};
}

QByteArray stateFrame(QJsonObject state, const Terminal &terminal)
{
    state.insert(QStringLiteral("time"), terminal.now().toMSecsSinceEpoch());
    return textOf(state);
}

} // namespace sim
