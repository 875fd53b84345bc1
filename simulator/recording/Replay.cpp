#include "recording/Replay.h"

#include "terminal/Terminal.h"

#include <algorithm>

namespace sim {

namespace {

/// The text around a place, for a line of a screen.
QString excerpt(const QString &text, int place)
{
    constexpr int kBefore = 40;
    constexpr int kAfter = 60;
    const int begin = std::max(0, place - kBefore);
    return (begin > 0 ? QStringLiteral("…") : QString()) + text.mid(begin, place - begin + kAfter) +
           (place + kAfter < text.size() ? QStringLiteral("…") : QString());
}

QString counted(int number, const QString &one, const QString &many)
{
    return QStringLiteral("%1 %2").arg(number).arg(number == 1 ? one : many);
}

QString methodOf(const QString &reply)
{
    return reply.chopped(3) + QStringLiteral("REQ"); // …_RES
}

/// Whether it makes other things happen.
bool isCause(RecordedEntry::Kind kind)
{
    return kind == RecordedEntry::PageOpened || kind == RecordedEntry::PageClosed || kind == RecordedEntry::Call ||
           kind == RecordedEntry::Command;
}

} // namespace

Replay::Replay(RecordingReader &recording, Terminal &terminal, Mode mode, std::chrono::milliseconds patience)
    : m_recording(recording), m_terminal(terminal), m_mode(mode), m_patience(patience)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Replay::proceed);
}

Replay::~Replay() = default;

void Replay::start()
{
    proceedLater();
}

void Replay::step()
{
    ++m_steps;
    proceedLater();
}

void Replay::endAfterSteps()
{
    m_endsAfterSteps = true;
    proceedLater();
}

void Replay::proceedLater()
{
    if (std::exchange(m_isPosted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isPosted = false;
            proceed();
        },
        Qt::QueuedConnection);
}

void Replay::proceed()
{
    if (m_hasEnded)
        return;
    if (!m_entry) {
        m_entry = next();
        if (!m_entry)
            return m_broken.isEmpty() ? endWithCount() : end(Outcome::Broken, m_broken);
    }
    if (!isDue() || !play() || m_hasEnded)
        return;
    m_entry.reset();
    m_timer.stop();
    proceedLater();
}

/// Moves the time to that of the entry. False when it has not come yet.
bool Replay::isDue()
{
    const RecordedEntry::Kind kind = m_entry->kind;
    // All else follows from the calls, the commands and the time; a reply must have the time to come.
    if (!isCause(kind) && (kind != RecordedEntry::Reply || m_mode != Verify))
        return true;
    if (m_mode == Timed) {
        m_terminal.setTimeLimit(m_entry->time);
        const auto time = m_terminal.realTimeUntil(m_entry->time);
        if (time.count() > 0)
            m_timer.start(time);
        return time.count() == 0;
    }
    if (m_mode == Stepwise && kind == RecordedEntry::Call) {
        if (m_steps == 0) {
            if (m_endsAfterSteps)
                endWithCount();
            return false;
        }
        --m_steps;
    }
    m_terminal.skipTo(m_entry->time);
    return true;
}

/// False when it waits for a reply, or has ended.
bool Replay::play()
{
    switch (m_entry->kind) {
    case RecordedEntry::PageOpened:
        open();
        return true;
    case RecordedEntry::PageClosed:
        if (endWithUntaken())
            return false;
        m_pages.erase(m_entry->page);
        return true;
    case RecordedEntry::Call:
        if (endWithUntaken())
            return false;
        call();
        return true;
    case RecordedEntry::Command:
        carryOut(*m_entry);
        return true;
    case RecordedEntry::Reply:
        return m_mode != Verify || compareReply();
    default:
        return true;
    }
}

void Replay::open()
{
    const auto whenAnswered = [this] {
        if (m_isWaiting)
            proceedLater();
    };
    // For the first page the library asks the servers.
    m_terminal.repeat([&] { m_pages[m_entry->page] = std::make_unique<PlayedPage>(m_entry->page, whenAnswered); },
                      [] {});
}

void Replay::call()
{
    const auto page = m_pages.find(m_entry->page);
    if (page == m_pages.end())
        return end(Outcome::Broken, placeOf(*m_entry) + QStringLiteral("a call of a page that is not open"));
    ++m_calls;
    m_terminal.repeat([&] { page->second->call(*m_entry); }, [this] { carryOutCommandsInCall(); });
    emit called(m_entry->line, *m_entry);
}

void Replay::carryOut(const RecordedEntry &entry)
{
    Command command;
    const QString problem = Command::parse(entry.name, command);
    if (!problem.isEmpty())
        return end(Outcome::Broken, placeOf(entry) + problem);
    if (command.isPlayedAgain())
        m_terminal.control().runAndWait(command); // a command that was refused then is refused again
}

/// The time of the call stands still, so they have the same. They may come after a few other entries.
void Replay::carryOutCommandsInCall()
{
    std::deque<RecordedEntry> others;
    while (const std::optional<RecordedEntry> entry = next()) {
        const bool isInCall = entry->kind == RecordedEntry::Command && entry->isInCall;
        if (isInCall)
            carryOut(*entry);
        else
            others.push_back(*entry);
        if (entry->time > m_entry->time || (isCause(entry->kind) && !isInCall))
            break;
    }
    m_ahead.insert(m_ahead.begin(), others.begin(), others.end());
}

std::optional<RecordedEntry> Replay::next()
{
    if (m_ahead.empty())
        return m_broken.isEmpty() ? m_recording.next(m_broken) : std::nullopt;
    RecordedEntry entry = std::move(m_ahead.front());
    m_ahead.pop_front();
    return entry;
}

bool Replay::compareReply()
{
    const auto page = m_pages.find(m_entry->page);
    const std::optional<PlayedPage::Reply> reply =
        page == m_pages.end() ? std::nullopt : page->second->take(m_entry->name);
    const QString what = placeOf(*m_entry) + QStringLiteral("the reply to %1 of page %2 (uuid \"%3\") ")
                                                 .arg(methodOf(m_entry->name))
                                                 .arg(m_entry->page)
                                                 .arg(m_entry->uuid);
    if (!reply) {
        if (m_isWaiting && !m_timer.isActive()) {
            end(Outcome::Different, what + QStringLiteral("does not come"));
        } else if (!m_isWaiting) {
            m_isWaiting = true;
            m_timer.start(m_patience);
        }
        return false;
    }
    m_isWaiting = false;
    ++m_replies;
    QStringList recorded;
    for (const QVariant &argument : qAsConst(m_entry->args))
        recorded.append(argument.toString());
    if (recorded == reply->args)
        return true;
    const QString before = recorded.join(QLatin1Char('\n'));
    const QString now = reply->args.join(QLatin1Char('\n'));
    const int end1 = std::min(before.size(), now.size());
    const int difference =
        int(std::mismatch(before.cbegin(), before.cbegin() + end1, now.cbegin()).first - before.cbegin());
    end(Outcome::Different, what + QStringLiteral("differs at character %1\n  recorded: %2\n  now:      %3")
                                       .arg(difference + 1)
                                       .arg(excerpt(before, difference), excerpt(now, difference)));
    return false;
}

/// Ends when the page of the entry got a reply that the recording does not have.
bool Replay::endWithUntaken()
{
    const auto page = m_pages.find(m_entry->page);
    const PlayedPage::Reply *const reply =
        m_mode != Verify || page == m_pages.end() ? nullptr : page->second->untaken();
    if (!reply)
        return false;
    end(Outcome::Different,
        placeOf(*m_entry) +
            QStringLiteral("before it page %1 gets a reply to %2 (uuid \"%3\") that was not "
                           "recorded\n  now:      %4")
                .arg(m_entry->page)
                .arg(methodOf(reply->name), reply->uuid, excerpt(reply->args.join(QLatin1Char('\n')), 0)));
    return true;
}

void Replay::end(Outcome::Kind kind, const QString &text)
{
    m_hasEnded = true;
    m_timer.stop();
    emit ended({kind, text});
}

void Replay::endWithCount()
{
    const QString calls = counted(m_calls, QStringLiteral("call"), QStringLiteral("calls"));
    end(Outcome::Done, m_mode == Verify
                           ? QStringLiteral("%1, %2: no difference")
                                 .arg(calls, counted(m_replies, QStringLiteral("reply"), QStringLiteral("replies")))
                           : calls + QStringLiteral(" played"));
}

QString Replay::placeOf(const RecordedEntry &entry) const
{
    return QStringLiteral("%1: line %2: ").arg(m_recording.fileName()).arg(entry.line);
}

} // namespace sim
