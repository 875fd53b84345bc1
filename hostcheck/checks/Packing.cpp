#include "hostcheck/Probe.h"
#include "hostcheck/Waiting.h"
#include "hostcheck/checks/Tables.h"

#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "Tessar_Fields.h"
#include "common/WebConstants.h"

#include <QSet>

namespace HostCheck {

namespace {

using Tessar_Fields::System::clientMsgID;
using WebConstants::Strategy::extField;
using WebConstants::Strategy::uuid;

QString idOf(const CPackMessageCommon &pack)
{
    return pack.GetValue(clientMsgID).toString();
}

void hasClientId(const KnownValues &)
{
    const CPackMessageCommon pack;
    expect(!idOf(pack).isEmpty(), "a new message has a client message id, which GetValue gives as text",
           shown(pack.GetValue(clientMsgID)));
}

void clientIdsDiffer(const KnownValues &)
{
    constexpr int kThreads = 4;
    constexpr int kMessages = 200;
    std::vector<QStringList> ids(kThreads);
    onThreads(kThreads, [&](int number) {
        for (int i = 0; i < kMessages; ++i)
            ids[size_t(number)].append(idOf(CPackMessageCommon()));
    });
    QSet<QString> distinct;
    for (const QStringList &ofThread : ids)
        distinct.unite(QSet<QString>(ofThread.begin(), ofThread.end()));
    if (distinct.size() == 1 && distinct.contains(QString()))
        skip(QStringLiteral("there are no ids: see packing.client-id"));
    expect(distinct.size() == kThreads * kMessages, "each message has an id of its own, on every thread",
           QStringLiteral("%1 messages share %2 ids").arg(kThreads * kMessages).arg(distinct.size()));
}

void givesValues(const KnownValues &)
{
    CPackMessageCommon pack;
    pack.AddVaule(uuid, QStringLiteral("u1"));
    expect(pack.GetValue(uuid) == QVariant(QStringLiteral("u1")), "GetValue gives what AddVaule has added",
           shown(pack.GetValue(uuid)));
    expect(!pack.GetValue(kUnknown).isValid(), "GetValue gives an invalid variant for a key that was not added",
           shown(pack.GetValue(kUnknown)));
}

void messagesStayApart(const KnownValues &)
{
    CPackMessageCommon first;
    CPackMessageCommon second;
    first.AddVaule(uuid, QStringLiteral("first"));
    second.AddVaule(uuid, QStringLiteral("second"));
    const QString seen = rowOf(first.GetPackedMsg(0)).value(uuid).toString();
    expect(seen == QLatin1String("first"), "a message holds what was added to it, not what was added to another",
           shown(seen));
}

void emptyMessages(const KnownValues &)
{
    CUnPackMessageCommon unread;
    expect(unread.GetRowValue().isEmpty(), "a reader that was given no message has an empty row",
           shown(unread.GetRowValue()));
    for (const QVariant &message : {QVariant(), QVariant(QString()), QVariant(QVariantList())})
        expect(rowOf(message).isEmpty(), "a message without rows gives an empty row", shown(rowOf(message)));
}

void readsAgain(const KnownValues &)
{
    const auto message = [](const QString &key) {
        CPackMessageCommon pack;
        pack.AddVaule(key, QStringLiteral("text"));
        return pack.GetPackedMsg(0);
    };
    CUnPackMessageCommon unpack;
    unpack.SetUnPackMsg(message(uuid), false);
    unpack.GetRowValue();
    unpack.SetUnPackMsg(message(extField), false);
    const QVariantMap row = unpack.GetRowValue();
    expect(row.contains(extField) && !row.contains(uuid), "a reader that is given a second message forgets the first",
           shown(row));
}

void firstRow(const KnownValues &known)
{
    const QVariantMap first{{uuid, QStringLiteral("first")}};
    const QVariantMap second{{uuid, QStringLiteral("second")}};
    const QVariantMap row = rowOf(known.packRows({first, second}));
    expect(row.value(uuid) == first.value(uuid), "of a message with several rows GetRowValue gives the first",
           shown(row));
}

} // namespace

CheckTable packingChecks()
{
    return {
        {"packing.client-id", "Pages get no answer to their K-line calls.", hasClientId},
        {"packing.client-ids-differ", "A page gets the K-lines that another page has asked for.", clientIdsDiffer},
        {"packing.values", "The library cannot read the id of the request that it has made.", givesValues},
        {"packing.messages-apart", "Requests carry fields of other requests.", messagesStayApart},
        {"packing.empty-messages", "The terminal crashes on an event without a body, or pages get invented records.",
         emptyMessages},
        {"packing.reads-again", "Events carry fields of earlier events.", readsAgain},
        {"packing.first-row", "Pages get another record of an event than the first.", firstRow, Part::Basic, RowPacker},
    };
}

} // namespace HostCheck
