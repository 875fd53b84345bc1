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

/// The fields of a body in the order in which they were added.
using MessageFields = QList<QPair<QString, QVariant>>;

/// A packed body: CPackMessageCommon returns it, CUnPackMessageCommon reads it.
struct PackedMessage {
    QString clientMsgId;       ///< empty in bodies that the host packed
    QList<MessageFields> rows; ///< the library packs exactly one row
};
Q_DECLARE_METATYPE(PackedMessage)

/// A message as the host received it.
struct MessageRecord {
    QVariant type;
    QVariant msg;
    int srcid = 0;
    QString clientMsgId;  ///< empty when the body is not packed
    MessageFields fields; ///< the fields without the client message id; empty when not packed
};

/// Bodies for the library to unpack.
VARNEL_HOST_API QVariant packedRow(const QVariantMap &row);
VARNEL_HOST_API QVariant packedRows(const QList<QVariantMap> &rows);

/// The client message id of the next packer to be constructed; ahead = 1: of the one after it.
VARNEL_HOST_API QString nextClientMessageId(int ahead = 0);

/// How many messages exist.
VARNEL_HOST_API int messagesAlive();

/// How many messages were deleted so far. Deleting a message twice, or handing it over twice, aborts.
VARNEL_HOST_API int messagesDeleted();

/// Takes ownership of a message as the bus does: records it and deletes it.
VARNEL_HOST_API MessageRecord takeMessage(CMessageCommon *message);
VARNEL_HOST_API MessageRecord takeMessage(CEventMessageCommon *message);
