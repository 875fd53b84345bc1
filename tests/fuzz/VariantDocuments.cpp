#include "VariantParts.h"

#include <QCborArray>
#include <QCborMap>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>
#include <QUuid>

namespace {

int anyCount(Decisions &decisions)
{
    return decisions.below(5);
}

QJsonArray anyJsonArray(Decisions &decisions)
{
    QJsonArray array;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count)
        array.append(anyJson(decisions));
    return array;
}

QJsonObject anyJsonObject(Decisions &decisions)
{
    QJsonObject object;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count) {
        const QString key = anyKey(decisions);
        object.insert(key, anyJson(decisions));
    }
    return object;
}

QJsonDocument anyJsonDocument(Decisions &decisions)
{
    switch (decisions.below(4)) {
    case 1:
        return QJsonDocument(anyJsonArray(decisions));
    case 2:
        return QJsonDocument(anyJsonObject(decisions));
    case 3:
        return QJsonDocument::fromJson(anyBytes(decisions));
    default:
        return QJsonDocument();
    }
}

QCborArray anyCborArray(Decisions &decisions)
{
    QCborArray array;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count)
        array.append(anyCbor(decisions));
    return array;
}

QCborMap anyCborMap(Decisions &decisions)
{
    QCborMap map;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count) {
        const QCborValue key = decisions.oneIn(2) ? anyCbor(decisions) : QCborValue(anyKey(decisions));
        map.insert(key, anyCbor(decisions));
    }
    return map;
}

/// Tags that say what their value means, and tags that nobody knows.
QCborValue anyTagged(Decisions &decisions)
{
    static const quint64 known[] = {0, 1, 2, 4, 21, 22, 23, 24, 32, 33, 35, 37, 99, 55799};
    const auto tag = QCborTag(decisions.oneIn(8) ? decisions.bits<quint64>() : decisions.oneOf(known));
    return QCborValue(tag, anyCbor(decisions));
}

/// As others may write it: keys twice, texts in pieces. What ends too soon is left out: Qt gives a map that has a key
/// without a value then, and reads past its end when it turns that into JSON.
QCborValue anyCborOfAWire(Decisions &decisions)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(anyBytes(decisions), &error);
    return error.error == QCborError::NoError ? value : QCborValue();
}

QCborSimpleType anySimpleType(Decisions &decisions)
{
    return QCborSimpleType(decisions.bits<uchar>());
}

} // namespace

QJsonValue anyJson(Decisions &decisions)
{
    switch (decisions.below(8)) {
    case 1:
        return QJsonValue(QJsonValue::Undefined);
    case 2:
        return decisions.oneIn(2);
    case 3:
        return anyDouble(decisions);
    case 4:
        return qint64(anyWhole(decisions));
    case 5:
        return anyText(decisions);
    case 6:
        return anyJsonArray(decisions);
    case 7:
        return anyJsonObject(decisions);
    default:
        return QJsonValue();
    }
}

QCborValue anyCbor(Decisions &decisions)
{
    static QCborValue (*const kinds[])(Decisions &) = {
        [](Decisions &) { return QCborValue(); }, // undefined
        [](Decisions &) { return QCborValue(nullptr); },
        [](Decisions &) { return QCborValue(QCborValue::Invalid); },
        [](Decisions &d) { return QCborValue(d.oneIn(2)); },
        [](Decisions &d) { return QCborValue(qint64(anyWhole(d))); },
        [](Decisions &d) { return QCborValue(anyDouble(d)); },
        [](Decisions &d) { return QCborValue(anyBytes(d)); },
        [](Decisions &d) { return QCborValue(anyText(d)); },
        [](Decisions &d) { return QCborValue(anySimpleType(d)); },
        [](Decisions &d) { return QCborValue(anyCborArray(d)); },
        [](Decisions &d) { return QCborValue(anyCborMap(d)); },
        anyTagged,
        [](Decisions &d) { return QCborValue(anyDateTime(d)); },
        [](Decisions &d) { return QCborValue(anyUrl(d)); },
        [](Decisions &d) { return QCborValue(anyUuid(d)); },
        [](Decisions &d) { return QCborValue(QRegularExpression(anyText(d))); },
        anyCborOfAWire,
    };
    return decisions.oneOf(kinds)(decisions);
}

QVariant anyDocument(Decisions &decisions)
{
    static QVariant (*const kinds[])(Decisions &) = {
        [](Decisions &d) { return QVariant::fromValue(anyJson(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyJson(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyJsonArray(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyJsonObject(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyJsonDocument(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyCbor(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyCbor(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyCborArray(d)); },
        [](Decisions &d) { return QVariant::fromValue(anyCborMap(d)); },
        [](Decisions &d) { return QVariant::fromValue(anySimpleType(d)); },
    };
    return decisions.oneOf(kinds)(decisions);
}
