#pragma once

#include "recording/PlayedPage.h"
#include "recording/Recording.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace sim {

class Terminal;

/// Plays a recording on a fresh terminal of its scenario, faults, seed and login: its pages make their calls again, and
/// commands act again, in their order and at the exchange times that were recorded. Made and destroyed by main or a
/// test; user-interface thread only.
class Replay : public QObject {
    Q_OBJECT
public:
    enum Mode {
        Verify,   ///< at once; compares each reply with the recorded one, and ends at the first difference
        Timed,    ///< at the pace of the terminal's clock
        Stepwise, ///< a call for each step()
    };

    struct Outcome {
        enum Kind { Done, Different, Broken };

        Kind kind;
        QString text; ///< what was played, the difference, or what is broken: one line or some
    };

    /// The terminal's time must stand at the start. patience: how long to wait for a reply to be compared.
    Replay(RecordingReader &recording, Terminal &terminal, Mode mode,
           std::chrono::milliseconds patience = std::chrono::seconds(30));
    ~Replay() override;

    void start();

    /// Stepwise: makes the next call, and takes the other entries before it.
    void step();

    /// Stepwise: ends when the steps that were asked for have been made.
    void endAfterSteps();

    bool hasEnded() const { return m_hasEnded; }

signals:
    void called(int line, const sim::RecordedEntry &call); ///< a call has been made
    void ended(const sim::Replay::Outcome &outcome);       ///< once

private:
    void proceedLater();
    void proceed();
    bool isDue();
    bool play();
    std::optional<RecordedEntry> next();
    void open();
    void call();
    void carryOut(const RecordedEntry &entry);
    void carryOutCommandsInCall();
    bool compareReply();
    void wait(std::chrono::milliseconds time);
    void end(Outcome::Kind kind, const QString &text);
    void endWithCount();
    bool endWithUntaken();
    QString placeOf(const RecordedEntry &entry) const;

    RecordingReader &m_recording;
    Terminal &m_terminal;
    const Mode m_mode;
    const std::chrono::milliseconds m_patience;
    std::optional<RecordedEntry> m_entry; ///< the next one to play
    std::deque<RecordedEntry> m_ahead;    ///< that were read and come after it
    QString m_broken;                     ///< why no more can be read
    std::map<int, std::unique_ptr<PlayedPage>> m_pages;
    QTimer m_timer;
    bool m_isWaiting = false; ///< for a reply
    bool m_isPosted = false;  ///< proceed() will run
    bool m_hasEnded = false;
    bool m_endsAfterSteps = false;
    int m_steps = 0; ///< that were asked for and not made yet
    int m_calls = 0;
    int m_replies = 0;
};

} // namespace sim
