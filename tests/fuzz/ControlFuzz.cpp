#include "Require.h"

#include "gateway/ByteOrderMarks.h"
#include "gateway/ControlFrame.h"
#include "terminal/Terminal.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdint>
#include <future>
#include <memory>

using namespace sim;

namespace {

constexpr int kMostFrames = 20;
constexpr int kMostOrders = 20; ///< of a burst: more are not entered, because each takes its time
constexpr int kMostDays = 2;    ///< after the start: nobody jumps further, for the same reason

const char kScenario[] = R"({
    "name": "small", "seed": 1, "start": "2025-03-03 09:31:00", "station": "PC",
    "traders": [{"id": "T1", "name": "trader"}],
    "logins": [{"account": "T1", "token": "token"}],
    "fundAccounts": [{"account": "S1", "name": "fund", "property": "stock", "tradingAccounts": ["A1"]}],
    "algoPermissions": [],
    "securities": [{"symbol": "609001.SH", "securityId": "609001", "exchange": "SH", "name": "share",
        "spellCode": "S", "subType": "MainShare", "price": 10, "tick": 0.01, "multiplier": 1,
        "dailyVolume": 1000000, "listed": "2015-01-05"}],
    "generatedSecurities": 2
})";

Scenario smallScenario()
{
    Scenario scenario;
    QString error;
    require(Scenario::parse(kScenario, QStringLiteral("small"), scenario, error), error.toUtf8());
    return scenario;
}

QJsonObject objectIn(const QByteArray &frame)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(withEscapedMarks(frame), &error);
    require(document.isObject(), "not a JSON object: " + error.errorString().toUtf8() + ": " + frame);
    return document.object();
}

/// A world that stands still, so that only commands change it.
class World {
public:
    World()
    {
        m_terminal.control().setDrop([](int page) { require(page >= 0, "there is no such page"); });
    }

    /// Carries the command out, unless that would take long, and returns why it was not.
    QString run(const Command &command)
    {
        const bool isLong = command.name == CommandName::Burst && command.count > kMostOrders;
        if (isLong || isTooFar(command))
            return QString();
        const QDateTime before = m_terminal.now();
        const QByteArray stateBefore = state();
        std::promise<QString> result;
        m_terminal.control().run(command, [&](const QString &problem) { result.set_value(problem); });
        const QString problem = result.get_future().get();
        require(m_terminal.now() >= before, "time went backwards");
        require(problem.isEmpty() || state() == stateBefore, "a command that was not carried out changed the state");
        return problem;
    }

    /// The state as the peer gets it; without its values it is always the same.
    QByteArray state()
    {
        const QByteArray frame = stateFrame(controlState(m_terminal), m_terminal);
        const QJsonObject object = objectIn(frame);
        require(object.value(QLatin1String("kind")) == QLatin1String("state") &&
                    object.value(QLatin1String("isPaused")).isBool() && object.value(QLatin1String("time")).isDouble(),
                "a state lacks something: " + frame);
        const double speed = object.value(QLatin1String("speed")).toDouble();
        require(speed >= Command::kMinSpeed && speed <= Command::kMaxSpeed, "no such speed: " + frame);
        const QJsonArray faults = object.value(QLatin1String("faults")).toArray();
        require(faults.size() == Faults::kCount, "a fault is missing: " + frame);
        for (const QJsonValue fault : faults) {
            const int value = fault[QLatin1String("value")].toInt(-1);
            require(value >= 0 && value <= fault[QLatin1String("most")].toInt(), "no such value: " + frame);
        }
        return frame;
    }

private:
    bool isTooFar(const Command &command) const
    {
        if (command.name != CommandName::Jump && command.name != CommandName::Step)
            return false;
        const QDateTime now = m_terminal.now();
        const QDateTime limit = m_scenario.start.addDays(kMostDays);
        return now > limit || (command.name == CommandName::Jump &&
                               jumpTarget(command.time, now, m_terminal.exchange().calendar()) > limit);
    }

    const Scenario m_scenario = smallScenario();
    Terminal m_terminal{m_scenario, m_scenario.logins.first(), 1, true};
};

/// A frame is a JSON object as it is; what does not look like one is the text of a command.
QByteArray frameOf(const QByteArray &line, int number)
{
    if (line.startsWith('{') || line.startsWith('['))
        return line;
    return QJsonDocument(
               QJsonObject{{QStringLiteral("command"), QString::fromUtf8(line)}, {QStringLiteral("id"), number}})
        .toJson(QJsonDocument::Compact);
}

/// The same with numbers as doubles, whatever Qt has read them as.
bool isSame(const QJsonValue &one, const QJsonValue &other)
{
    if (one.isDouble() && other.isDouble())
        return one.toDouble() == other.toDouble();
    if (one.isArray() && other.isArray()) {
        const QJsonArray ones = one.toArray();
        const QJsonArray others = other.toArray();
        return std::equal(ones.begin(), ones.end(), others.begin(), others.end(), isSame);
    }
    if (one.isObject() && other.isObject()) {
        const QJsonObject ones = one.toObject();
        const QJsonObject others = other.toObject();
        return ones.keys() == others.keys() && std::equal(ones.begin(), ones.end(), others.begin(), isSame);
    }
    return one == other;
}

/// Each frame has one result, with its id.
void requireResult(const QByteArray &frame, const QJsonValue &id, const QString &problem)
{
    const QByteArray result = resultFrame(id, problem);
    const QJsonObject object = objectIn(result);
    const QJsonValue asked = QJsonDocument::fromJson(withEscapedMarks(frame)).object().value(QLatin1String("id"));
    require(object.value(QLatin1String("kind")) == QLatin1String("result") &&
                object.size() == (asked.isUndefined() ? 2 : 3),
            "no result: " + result);
    require(isSame(object.value(QLatin1String("id")), asked), "the result of another frame: " + result);
    require(object.value(QLatin1String("problem")).toString() == problem, "another problem: " + result);
}

/// What the terminal needs; never deleted, because the fuzzer ends the process by itself.
QCoreApplication *startApplication()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return new QCoreApplication(argc, argv);
}

} // namespace

/// Frames of somebody who controls the simulator, one a line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const QCoreApplication *const application = startApplication();
    Q_UNUSED(application)
    const QByteArray all(reinterpret_cast<const char *>(bytes), int(size));
    const QByteArrayList lines = all.split('\n').mid(0, kMostFrames);
    std::unique_ptr<World> world; // made for the first command, because it has threads
    int number = 0;
    for (const QByteArray &line : lines) {
        const QByteArray frame = frameOf(line, number++);
        const ControlFrame read = ControlFrame::read(frame);
        QString problem = read.problem;
        if (problem.isEmpty()) {
            if (!world)
                world = std::make_unique<World>();
            problem = world->run(read.command);
            world->state();
        }
        requireResult(frame, read.id, problem);
    }
    return 0;
}
