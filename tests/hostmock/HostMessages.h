#pragma once

#include "CEventMessageCommon.h"
#include "CMessageCommon.h"
#include "HostApi.h"

#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVariantMap>

/// The fields of a body in the order of their adding.
using MessageFields = QList<QPair<QString, QVariant>>;

/// The wire form of a body: what CPackMessageCommon gives and CUnPackMessageCommon reads.
struct PackedMessage {
    QString clientMsgId;       ///< empty in what the host itself packed
    QList<MessageFields> rows; ///< the library packs exactly one
};
Q_DECLARE_METATYPE(PackedMessage)

/// A message as the host received it.
struct MessageRecord {
    QVariant type;
    QVariant msg;
    int srcid = 0;
    QString clientMsgId;  ///< empty when the body is not packed
    MessageFields fields; ///< what the library added, without the client message id; empty when not packed
};

/// Bodies for the library to unpack.
VARNEL_HOST_API QVariant packedRow(const QVariantMap &row);
VARNEL_HOST_API QVariant packedRows(const QList<QVariantMap> &rows);

/// The client message id that the packer constructed next will have; ahead = 1 for the one after it.
VARNEL_HOST_API QString nextClientMessageId(int ahead = 0);

/// Messages that were created and not deleted yet.
VARNEL_HOST_API int messagesAlive();

/// Messages deleted so far. Deleting one that is not alive, or handing it over again, aborts.
VARNEL_HOST_API int messagesDeleted();

/// Takes a message over as the bus does: records it and deletes it.
VARNEL_HOST_API MessageRecord takeMessage(CMessageCommon *message);
VARNEL_HOST_API MessageRecord takeMessage(CEventMessageCommon *message);
