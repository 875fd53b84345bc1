#include "hostcheck/Probe.h"
#include "hostcheck/checks/Tables.h"

#include "CPackMessageCommon.h"
#include "VarnelCefView.h"
#include "common/WebConstants.h"

#include <QJsonValue>

#include <limits>

// Each type that a page can put into a strategy call must arrive at the platform, and come back, as it was.

namespace HostCheck {

namespace {

using WebConstants::Strategy::extField;
using WebConstants::Strategy::panelPtr;

QVariant packedAndRead(const QString &key, const QVariant &value)
{
    CPackMessageCommon pack;
    pack.AddVaule(key, value);
    return rowOf(pack.GetPackedMsg(0)).value(key);
}

void expectSame(const QVariantList &values)
{
    for (const QVariant &value : values) {
        const QVariant seen = packedAndRead(extField, value);
        // QVariant compares a number with its text as equal; pages get JSON, which does not.
        expect(seen == value && QJsonValue::fromVariant(seen) == QJsonValue::fromVariant(value),
               "a packed value is read as it was", QStringLiteral("%1 became %2").arg(shown(value), shown(seen)));
    }
}

void texts(const KnownValues &)
{
    expectSame({QStringLiteral("text"), QStringLiteral(" with blanks at its ends "),
                QStringLiteral("a=b;c|d,\"e\"\n{\"f\":1}\\")});
}

void chineseTexts(const KnownValues &)
{
    expectSame({QStringLiteral("东岚重工"), QString::fromUtf8("\xF0\xA0\xAE\xB7")}); // the second is a surrogate pair
}

void emptyTexts(const KnownValues &)
{
    const QVariant seen = packedAndRead(extField, QString());
    expect(seen.isValid() && seen.toString().isEmpty() && seen.canConvert<QString>(), "an empty text stays a text",
           shown(seen));
}

void integers(const KnownValues &)
{
    for (const int value : {0, 1, -1, 319, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const QVariant seen = packedAndRead(extField, value);
        expect(fitsJson(seen) && seen.toString().toLongLong() == value, "a packed integer is read as it was",
               QStringLiteral("%1 became %2").arg(value).arg(shown(seen)));
    }
}

void longIntegers(const KnownValues &)
{
    using Limits = std::numeric_limits<qint64>;
    for (const qint64 value : {Limits::max(), Limits::min(), (qint64(1) << 53) + 1}) {
        const QVariant seen = packedAndRead(extField, value);
        expect(seen.toLongLong() == value, "a packed 64-bit integer is read as it was",
               QStringLiteral("%1 became %2").arg(value).arg(shown(seen)));
    }
}

void doubles(const KnownValues &)
{
    expectSame({18.36, 0.1, -1e-9, 1e300, 1.0 / 3});
}

void booleans(const KnownValues &)
{
    expectSame({true, false});
}

void nulls(const KnownValues &)
{
    const QVariant seen = packedAndRead(extField, QVariant());
    expect(seen.isNull() && seen.userType() != QMetaType::QString, "an invalid variant stays without a value",
           shown(seen));
}

void bytes(const KnownValues &)
{
    const QByteArray value("\x00\xFF\x80 bytes", 9);
    const QVariant seen = packedAndRead(extField, value);
    expect(seen.toByteArray() == value, "a packed byte array is read as it was", shown(seen));
}

void lists(const KnownValues &)
{
    const QStringList accounts{QStringLiteral("a"), QString(), QStringLiteral("c")};
    const QVariant seen = packedAndRead(extField, accounts);
    expect(seen.toStringList() == accounts, "a packed list of texts is read as it was", shown(seen));
    expectSame({QVariantList(), QVariantList{1.5, QStringLiteral("text"), true}});
}

void maps(const KnownValues &)
{
    expectSame({QVariantMap(), QVariantMap{{QStringLiteral("键"), QStringLiteral("text")}, {QString(), 2.5}}});
}

void nested(const KnownValues &)
{
    QVariant value = QVariantMap{{QStringLiteral("leaf"), QStringLiteral("叶")}};
    for (int depth = 0; depth < 10; ++depth)
        value = QVariantMap{{QStringLiteral("inner"), QVariantList{value, depth % 2 == 0}}};
    expectSame({value});
}

void views(const KnownValues &)
{
    // The library's own reading: the type must be the same one, and the pointer is never followed.
    VarnelCefView view;
    for (VarnelCefView *const value : {&view, static_cast<VarnelCefView *>(nullptr)}) {
        const QVariant seen = packedAndRead(panelPtr, QVariant::fromValue(value));
        expect(seen.userType() == qMetaTypeId<VarnelCefView *>() &&
                   *static_cast<VarnelCefView *const *>(seen.constData()) == value,
               "a packed VarnelCefView* is read as the same pointer of the same type",
               QStringLiteral("a value of the type %1").arg(QLatin1String(seen.typeName())));
    }
}

} // namespace

CheckTable packingTypeChecks()
{
    return {
        {"packing.texts", "Texts in strategy calls and K-line requests arrive changed.", texts},
        {"packing.chinese-texts", "Chinese texts arrive changed.", chineseTexts},
        {"packing.empty-texts", "Fields that are empty on purpose are lost.", emptyTexts},
        {"packing.integers", "Periods, languages and message types arrive changed.", integers},
        {"packing.long-integers", "Large quantities lose their last digits.", longIntegers},
        {"packing.doubles", "Prices in the parameters of strategies lose digits.", doubles},
        {"packing.booleans", "Switches in the parameters of strategies arrive as numbers or texts.", booleans},
        {"packing.nulls", "A null of a page becomes a value.", nulls},
        {"packing.bytes", "Byte arrays are cut or changed.", bytes},
        {"packing.lists", "A strategy gets other fund accounts than the page has named.", lists},
        {"packing.maps", "The parameters of strategies are lost.", maps},
        {"packing.nested", "The inner parts of a strategy's parameters are lost.", nested},
        {"packing.views", "No page gets the answers to its strategy calls.", views},
    };
}

} // namespace HostCheck
