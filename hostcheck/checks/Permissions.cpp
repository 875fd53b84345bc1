#include "hostcheck/Probe.h"
#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "Algo_Fields.h"
#include "Algo_Values.h"
#include "CBusinessDataBase.h"
#include "Tessar_Fields.h"
#include "VarnelUtils.h"
#include "Varnel_Fields.h"
#include "Varnel_MsgType.h"

namespace HostCheck {

namespace {

using Algo_Fields::VarnelStrategy::supportType;

struct Answer {
    QList<QVariantMap> records;
    QString error;
};

Answer query(QvPresenterClass &presenter, const QString &msgType)
{
    CBusinessDataBase *const data = CBusinessDataBase::GetInstance();
    Answer answer;
    answer.records = VarnelUtils::QueryDatasFromServer(
        &presenter, msgType,
        {{Tessar_Fields::UserAccount::userID, data ? data->GetLoginAccount() : QString()},
         {supportType, Algo_Values::SupprotType::KFZ_SNB}},
        BlockingQueryDataMode, answer.error);
    return answer;
}

/// Asks as the library does: while the presenter is being constructed.
class Asking : public Probe, public Answer {
public:
    explicit Asking(const QString &msgType)
    {
        QMetaObject::invokeMethod(
            this, [this] { turnedTheLoop = true; }, Qt::QueuedConnection);
        static_cast<Answer &>(*this) = query(*this, msgType);
    }

    bool turnedTheLoop = false; ///< an event was handled during the query
};

/// The query for the permissions. Made once for all checks that look at it.
const Asking &permissions()
{
    // Never destroyed: a crash at the end of the process is another check's.
    static const auto *const asking = new Asking(Varnel_MsgType::QueryAlgoPermissionsByConditionRequest);
    return *asking;
}

void succeeds(const KnownValues &)
{
    expect(permissions().error.isEmpty(), "the query for the permissions succeeds", permissions().error);
    remark(QStringLiteral("%1 permissions").arg(permissions().records.size()));
}

void keepsTheEventLoop(const KnownValues &)
{
    // Only what was handled during the query counts: no event loop has turned since.
    const Asking asking(Varnel_MsgType::QueryAlgoPermissionsByConditionRequest);
    expect(!asking.turnedTheLoop, "the query does not turn the event loop",
           QStringLiteral("another event was handled in it"));
}

void onThread(const KnownValues &)
{
    // As a dispatcher without a view asks, while this thread turns no event loop.
    if (!permissions().error.isEmpty())
        skip(QStringLiteral("the query fails: see permissions.query"));
    Probe probe;
    QString error;
    onThreads(1, [&](int) { error = query(probe, Varnel_MsgType::QueryAlgoPermissionsByConditionRequest).error; });
    expect(error.isEmpty(), "the query succeeds on every thread, while the user-interface thread is busy", error);
}

void recordFields(const KnownValues &)
{
    for (const QVariantMap &record : permissions().records)
        expect(!record.value(supportType).toString().isEmpty() &&
                   !record.value(Varnel_Fields::FastFocus::fundAccount).toString().isEmpty(),
               "a permission has a support type and a fund account", shown(record));
}

void failureHasAnError(const KnownValues &)
{
    const Asking asking(kUnknown);
    expect(!asking.error.isEmpty(), "a query that the server does not know ends with an error text",
           QStringLiteral("no text and %1 records").arg(asking.records.size()));
}

} // namespace

CheckTable permissionChecks()
{
    return {
        {"permissions.query", "Pages are told that the user may not use any algorithm.", succeeds, Part::Login},
        {"permissions.keep-the-event-loop",
         "The terminal ends at its start: a page call comes while the message center is being made.", keepsTheEventLoop,
         Part::Login},
        {"permissions.on-threads", "The terminal stands still when a page without a view asks for a permission.",
         onThread, Part::Login},
        {"permissions.record-fields", "Pages are told that an account may not use an algorithm, though it may.",
         recordFields, Part::Login},
        {"permissions.failure-has-an-error",
         "After a query that failed the library believes that the user has no permissions, and never asks again.",
         failureHasAnError, Part::Login},
    };
}

} // namespace HostCheck
