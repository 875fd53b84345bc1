#include "VariantTree.h"

#include "VariantParts.h"

#include <QMultiHash>
#include <QMultiMap>

namespace {

int anyCount(Decisions &decisions)
{
    return decisions.oneIn(16) ? decisions.below(64) : decisions.below(6);
}

QStringList anyStringList(Decisions &decisions)
{
    QStringList list;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count)
        list.append(anyText(decisions));
    return list;
}

/// Fills a map or a hash that may hold a key more than once, as one that was filled by insertMulti.
template <class Multi>
void fill(Decisions &decisions, Multi &multi)
{
    QString key;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count) {
        if (!decisions.oneIn(4)) // else the key of before once more
            key = anyKey(decisions);
        const QVariant value = anyValue(decisions);
        if (decisions.oneIn(2))
            multi.insert(key, value);
        else
            multi.replace(key, value);
    }
}

/// A list of doubles, as a chart has them.
QVariantList series(Decisions &decisions)
{
    QVariantList list;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count)
        list.append(anyDouble(decisions));
    return list;
}

QVariant container(Decisions &decisions)
{
    switch (decisions.below(8)) {
    case 1:
    case 2:
        return anyMap(decisions);
    case 3:
    case 4:
        return anyHash(decisions);
    case 5:
        return anyStringList(decisions);
    case 6:
        return series(decisions);
    default:
        return anyList(decisions);
    }
}

/// The same container many times around a value, or different ones in turn.
QVariant chain(Decisions &decisions)
{
    const int levels = decisions.allowsMuch() ? decisions.below(256) : 1;
    const int kind = decisions.below(4);
    QVariant value = anyValue(decisions);
    for (int level = 0; level < levels; ++level) {
        switch (kind < 3 ? kind : level % 3) {
        case 1:
            value = QVariantMap{{QStringLiteral("m"), value}};
            break;
        case 2:
            value = QVariantHash{{QStringLiteral("h"), value}};
            break;
        default:
            value = QVariantList{value};
        }
    }
    return value;
}

QVariant text(Decisions &decisions)
{
    return anyText(decisions);
}

QVariant bytes(Decisions &decisions)
{
    return anyBytes(decisions);
}

QVariant number(Decisions &decisions)
{
    return anyDouble(decisions);
}

} // namespace

QVariantList anyList(Decisions &decisions)
{
    QVariantList list;
    for (int count = anyCount(decisions); count > 0 && !decisions.over(); --count)
        list.append(anyValue(decisions));
    return list;
}

QVariantMap anyMap(Decisions &decisions)
{
    QMultiMap<QString, QVariant> map;
    fill(decisions, map);
    return map;
}

QVariantHash anyHash(Decisions &decisions)
{
    QMultiHash<QString, QVariant> hash;
    fill(decisions, hash);
    return hash;
}

QVariant anyValue(Decisions &decisions)
{
    static QVariant (*const kinds[])(Decisions &) = {anyOther, anyOther, anyNumber,   anyNumber, anyNumber, text, text,
                                                     bytes,    number,   anyDocument, container, container, chain};
    return decisions.oneOf(kinds)(decisions);
}

QVariant variantTree(const uchar *bytes, std::size_t size)
{
    Decisions decisions(bytes, size);
    return decisions.oneIn(16) ? anyValue(decisions) : container(decisions);
}
