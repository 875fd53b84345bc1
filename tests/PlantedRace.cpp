// A program of the thread sanitizer's build with one race, or with none. What QueuedSignalOrder.cpp tells the sanitizer
// must hide no race of our own: the sanitizer must report each of these, and must not report the run without a race.

#include <QCoreApplication>
#include <QVariantMap>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

using List = QList<QVariantMap>;

class Sender : public QObject {
    Q_OBJECT
public:
    void send(const List &list) { emit sent(QStringLiteral("text"), {{QStringLiteral("key"), 1}}, list); }

signals:
    void sent(const QString &text, const QVariantMap &map, const QList<QVariantMap> &list);
};

namespace {

/// Lets one thread wait for another, and orders nothing that the sanitizer could see.
class Flag {
public:
    void raise() { m_raised.store(true, std::memory_order_relaxed); }
    void wait() const
    {
        while (!m_raised.load(std::memory_order_relaxed))
            std::this_thread::yield();
    }

private:
    std::atomic<bool> m_raised{false};
};

int before = 0; ///< written before a signal
int after = 0;  ///< written after it
List source;    ///< what is sent
int received = 0;

void receive(Sender &sender, bool readsAfter)
{
    QObject::connect(
        &sender, &Sender::sent, QCoreApplication::instance(),
        [readsAfter](const QString &text, const QVariantMap &map, const List &list) {
            received += before + text.size() + map.size() + list.size();
            received += readsAfter ? after : 0;
        },
        Qt::QueuedConnection);
}

void runUntilReceived()
{
    while (received == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

const List list{{{QStringLiteral("key"), 1}}, {}};

/// What a thread writes before it emits a signal, and the arguments, belong to the receiver then.
void noRace()
{
    Sender sender;
    receive(sender, false);
    std::thread thread([&] {
        before = 1;
        sender.send(list);
    });
    runUntilReceived();
    thread.join();
}

/// What a thread writes after the signal does not.
void raceAfterTheSignal()
{
    Sender sender;
    receive(sender, true);
    std::thread thread([&] {
        sender.send(list);
        after = 1;
    });
    runUntilReceived();
    thread.join();
}

/// Nor what the thread of another sender writes.
void raceBesideAnotherSender()
{
    Sender sender;
    Sender other;
    receive(other, false);
    Flag written;
    std::thread thread([&] {
        before = 1;
        sender.send(list);
        written.raise();
    });
    std::thread otherThread([&] {
        written.wait();
        other.send(list);
    });
    runUntilReceived();
    thread.join();
    otherThread.join();
}

/// A list is changed on one thread while it is copied for a signal on another.
void raceInTheCopying()
{
    Sender sender;
    receive(sender, false);
    Flag sent;
    source = list;
    std::thread thread([&] {
        sender.send(source);
        sent.raise();
    });
    sent.wait();
    source = List();
    runUntilReceived();
    thread.join();
}

constexpr struct {
    const char *name;
    void (*run)();
} kinds[] = {{"none", noRace},
             {"after", raceAfterTheSignal},
             {"beside", raceBesideAnotherSender},
             {"copying", raceInTheCopying}};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    for (const auto &kind : kinds) {
        if (argc > 1 && std::strcmp(argv[1], kind.name) == 0) {
            kind.run();
            std::printf("received\n");
            return 0;
        }
    }
    return 2;
}

#include "PlantedRace.moc"
