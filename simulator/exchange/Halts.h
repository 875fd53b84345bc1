#pragma once

#include <QDateTime>
#include <QString>

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace sim {

/// A time in which a security does not trade, as a scenario gives it. A plain value.
struct Halt {
    QString symbol;
    QDateTime from;
    QDateTime until; ///< invalid: for good
};

/// The steps at which securities do not trade. All threads may use it at the same time.
class Halts {
public:
    struct Span {
        qint64 first; ///< the first step without trading
        qint64 end;   ///< the first step with trading again
    };

    /// security: its index. Spans that touch become one.
    void add(int security, Span span);

    /// Ends what is not over at that step: trading goes on there.
    void cut(int security, qint64 end);

    bool isEmpty() const { return m_isEmpty; }

    /// The latest span that begins at that step or before it.
    std::optional<Span> begunBy(int security, qint64 step) const;

    /// The span that has that step.
    std::optional<Span> at(int security, qint64 step) const;

private:
    std::atomic<bool> m_isEmpty{true}; ///< spares the lock where nothing is ever halted
    mutable std::mutex m_mutex;
    std::map<int, std::vector<Span>> m_spans; ///< by security, sorted, apart from each other
};

} // namespace sim
