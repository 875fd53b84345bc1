#include "QtValues.h"

#include <algorithm>

namespace {

template <class Container>
bool sameElements(const Container &a, const Container &b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const auto &x, const auto &y) { return identical(x, y); });
}

} // namespace

bool identical(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    // QVariant compares values of this type by address. The type is compared by name, because asking for its id would
    // register it, and that is the library's task.
    if (qstrcmp(a.typeName(), "QList<QVariantMap>") == 0)
        return sameElements(a.value<QList<QVariantMap>>(), b.value<QList<QVariantMap>>());
    switch (a.userType()) {
    case QMetaType::QVariantList:
        return sameElements(a.toList(), b.toList());
    case QMetaType::QVariantMap:
        return identical(a.toMap(), b.toMap());
    default:
        return a == b;
    }
}

bool identical(const QVariantMap &a, const QVariantMap &b)
{
    return a.keys() == b.keys() && sameElements(a, b);
}

bool identical(const MessageFields &a, const MessageFields &b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const auto &x, const auto &y) { return x.first == y.first && identical(x.second, y.second); });
}
