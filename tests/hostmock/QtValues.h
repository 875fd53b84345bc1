#pragma once

#include "HostMessages.h"
#include "HostTypes.h"

#include <QDebug>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVariant>
#include <gmock/gmock.h>
#include <ostream>

/// Prints values of Qt and of the host in failure messages, and compares them without Qt's conversions.

namespace printing {

template <class T>
void viaQDebug(const T &value, std::ostream *os)
{
    QString text;
    QDebug(&text).noquote().nospace() << value;
    *os << text.toStdString();
}

} // namespace printing

inline void PrintTo(const QString &value, std::ostream *os)
{
    *os << '"' << value.toStdString() << '"';
}

inline void PrintTo(const QVariant &value, std::ostream *os)
{
    printing::viaQDebug(value, os);
}

template <class K, class V>
void PrintTo(const QMap<K, V> &value, std::ostream *os)
{
    *os << '{';
    for (auto it = value.cbegin(); it != value.cend(); ++it)
        *os << (it == value.cbegin() ? "" : ", ") << testing::PrintToString(it.key()) << ": "
            << testing::PrintToString(it.value());
    *os << '}';
}

template <class A, class B>
void PrintTo(const QPair<A, B> &value, std::ostream *os)
{
    *os << '(' << testing::PrintToString(value.first) << ", " << testing::PrintToString(value.second) << ')';
}

inline void PrintTo(const MessageRecord &value, std::ostream *os)
{
    *os << "message of type " << testing::PrintToString(value.type) << " from " << value.srcid << ", id "
        << testing::PrintToString(value.clientMsgId) << ", fields " << testing::PrintToString(value.fields);
}

/// Whether type and value are the same, also inside lists and maps. QVariant's own comparison converts: for it the
/// number 10 equals the text "10".
VARNEL_HOST_API bool identical(const QVariant &a, const QVariant &b);
VARNEL_HOST_API bool identical(const QVariantMap &a, const QVariantMap &b);
VARNEL_HOST_API bool identical(const MessageFields &a, const MessageFields &b);

MATCHER_P(Identical, expected, "")
{
    Q_UNUSED(result_listener)
    return identical(arg, expected);
}

/// A message with exactly these fields in exactly this order.
MATCHER_P3(IsMessage, type, srcid, fields, "")
{
    Q_UNUSED(result_listener)
    return identical(arg.type, type) && arg.srcid == srcid && identical(arg.fields, fields);
}
