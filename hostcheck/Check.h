#pragma once

#include "hostcheck/HostCheck.h"

#include <QDebug>
#include <QString>
#include <QStringList>

#include <vector>

namespace HostCheck {

/// When a check runs: always, or only when the command line asks for its part or names it.
enum class Part { Basic, Login, Orders };

/// The known values that a check needs.
enum Need : unsigned {
    Nothing = 0,
    Symbol = 1,
    Bond = 2,
    FundAccount = 4,
    TradingAccount = 8,
    OrderTerms = 16,
    RowPacker = 32,
};

/// One expectation that the library has of a host.
struct Check {
    const char *name;   ///< topic and expectation
    const char *breaks; ///< one sentence: what breaks if it fails
    void (*run)(const KnownValues &known);
    Part part = Part::Basic;
    unsigned needs = Nothing;
};

using CheckTable = std::vector<Check>;

/// All checks, in the order in which they run.
const CheckTable &allChecks();

/// Null when there is none.
const Check *findCheck(const QString &name);

/// What has to be given for a check, as the options of the command line: "--with login", "--symbol".
QStringList requirements(const Check &check);

/// The first check: the host starts. Every process begins with it.
extern const char *const kStartCheck;

/// The last check: it has succeeded when the process has ended well.
extern const char *const kEndCheck;

enum class Outcome { Ok, Failed, Skipped, Crashed, TimedOut };

struct Result {
    QString name;
    Outcome outcome = Outcome::Ok;
    QString expected; ///< of a check that failed
    QString seen;     ///< of a check that failed; the reason of one that was skipped; else a remark, possibly empty
    qint64 milliseconds = 0;
};

/// Runs one check on this thread, or skips it when a known value is missing.
Result runCheck(const Check &check, const KnownValues &known);

// For the bodies of checks. They leave the body by an exception that runCheck catches, so they may only be called on
// its thread.

/// Fails the check unless the condition holds. expected: what the host should have done; seen: what it did.
void expect(bool holds, const char *expected, const QString &seen);

/// Ends the check without a verdict.
[[noreturn]] void skip(const QString &reason);

/// Adds a remark to the line of a check that succeeds.
void remark(const QString &text);

/// The value as the report shows it.
template <typename Value>
QString shown(const Value &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

/// A text that no account, symbol or order of a host can have.
extern const QString kUnknown;

/// Whether JSON can carry the value: one of an unknown type would reach the page as null.
bool fitsJson(const QVariant &value);

/// Fails the check unless JSON can carry every field.
void expectFitsJson(const QVariantMap &fields);

/// The value as a number; the check fails when it is none.
double numberIn(const QVariantMap &fields, const QString &field, const char *expected);

/// The instance, which another check says must not be null.
template <typename Service>
Service &present(Service *instance)
{
    if (!instance)
        skip(QStringLiteral("there is no instance: see instances.present"));
    return *instance;
}

} // namespace HostCheck
