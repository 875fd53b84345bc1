#pragma once

#include "HostApi.h"

#include <QDateTime>
#include <QStringList>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace sim {

/// What can go wrong in the simulated terminal when it is told to.
enum class Fault {
    SlowAnswers,
    SilentKLines,
    RefuseOrders,
    RefuseOrdersSilently,
    LateCancels,
    FillInParts,
    AnswerAfterPush,
    LatePushes,
    FailPermissions,
    SilentStrategies,
    DropInCall,
};

/// What the value of a fault means. 0 always means that the fault is off.
enum class FaultKind {
    Switch,       ///< 1: it is on
    Count,        ///< it happens so many times more
    Milliseconds, ///< of exchange time
};

/// A line of the table of the faults.
struct FaultInfo {
    Fault fault;
    const char *name; ///< as in scenarios and commands
    FaultKind kind;
    int most;             ///< the largest value
    const char *sentence; ///< what it does, for a person
};

/// A fault and the value that it is to have.
struct FaultSetting {
    Fault fault = Fault::SlowAnswers;
    int value = 0;
};

/// The faults of one terminal. Any thread.
class VARNEL_HOST_API Faults {
public:
    static constexpr int kCount = int(Fault::DropInCall) + 1;

    /// The table, in the order of the enumeration.
    static const std::array<FaultInfo, kCount> &all();

    /// Null for an unknown name.
    static const FaultInfo *find(const QString &name);

    /// What a value of the fault must be, for a person: "a whole number from 1 to 100".
    static QString valuesOf(const FaultInfo &info);

    /// Reads NAME or NAME=VALUE. Without a value a fault is on, or happens once; milliseconds need a value. Returns why
    /// the text is no fault; empty when it is one.
    static QString parse(const QString &text, FaultSetting &setting);

    /// time: from which on it has that value; from the beginning when it is left out.
    void set(const FaultSetting &setting, const QDateTime &time = {});

    /// A thread whose time stands still (FrozenTime) gets the value of that time, also if it has been changed since: a
    /// message that is handled late is handled as of its time.
    int value(Fault fault) const;
    bool isOn(Fault fault) const { return value(fault) > 0; }

    /// Uses up one of the times that the fault is to happen. False when there is none left.
    bool take(Fault fault);

    std::chrono::milliseconds delay(Fault fault) const { return std::chrono::milliseconds(value(fault)); }

    /// Holds this thread in real time for as long as the server is slow, or until the fault ends. speed: of the
    /// exchange time.
    void awaitSlowServer(double speed);

private:
    struct Value {
        int latest = 0;
        int before = 0;  ///< until the time below
        QDateTime since; ///< invalid: always
    };

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::array<Value, kCount> m_values{}; ///< guarded by m_mutex
};

} // namespace sim
