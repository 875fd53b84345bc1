#include "VariantParts.h"

#include <QBitArray>
#include <QDateTime>
#include <QEasingCurve>
#include <QLine>
#include <QLocale>
#include <QObject>
#include <QPersistentModelIndex>
#include <QRect>
#include <QRegExp>
#include <QRegularExpression>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>
#include <QVector>

/// Types that Qt does not know: one that nothing turns into a text, and one that says its own.
struct Mute {
    int value;
};
struct Speaking {
    QString text;
    QString toText() const { return text; }
};
enum class Unnamed { First, Second };
Q_DECLARE_METATYPE(Mute)
Q_DECLARE_METATYPE(Speaking)
Q_DECLARE_METATYPE(Unnamed)

namespace {

using TextOfTexts = QMap<QString, QString>;

QDate anyDate(Decisions &decisions)
{
    static const int years[] = {2024, 1970, 1, 0, -1, 9999, 10000, -4713, 1582, 30000};
    return QDate{decisions.oneOf(years), decisions.below(14), decisions.below(32)}; // some of them are none
}

QTime anyTime(Decisions &decisions)
{
    return QTime{decisions.below(25), decisions.below(61), decisions.below(61), decisions.below(1001)};
}

QVariant speaking(Decisions &decisions)
{
    static const bool registered = QMetaType::registerConverter(&Speaking::toText);
    Q_ASSERT(registered);
    return QVariant::fromValue(Speaking{anyText(decisions)});
}

/// A variant that holds a variant: QVariant::fromValue would give the inner one.
QVariant variantOfVariant(Decisions &decisions)
{
    const QVariant inner = anyValue(decisions);
    return QVariant(QMetaType::QVariant, &inner);
}

/// The default value of any of Qt's own types, in a variant that is null or in one that is not.
QVariant defaultValue(Decisions &decisions)
{
    const int type = decisions.below(QMetaType::LastCoreType + 1);
    if (type == QMetaType::Void)
        return QVariant();
    return decisions.oneIn(2) ? QVariant(QVariant::Type(type)) : QVariant(type, nullptr);
}

} // namespace

QDateTime anyDateTime(Decisions &decisions)
{
    static const char *const zones[] = {"Asia/Shanghai", "America/New_York", "no zone"};
    const QDate date = anyDate(decisions);
    const QTime time = anyTime(decisions);
    switch (decisions.below(5)) {
    case 1:
        return QDateTime(date, time, Qt::UTC);
    case 2:
        return QDateTime(date, time, Qt::OffsetFromUTC, (decisions.below(57) - 28) * 1801);
    case 3:
        return QDateTime(date, time, QTimeZone(decisions.oneOf(zones)));
    case 4:
        return QDateTime(date, time, Qt::LocalTime);
    default:
        return QDateTime();
    }
}

QUrl anyUrl(Decisions &decisions)
{
    static const char *const urls[] = {"",          "http://a/",     "http://用户:p w@例.example:1/中 %20%zz?a=\"#é",
                                       "//[::1]/x", "http://[",      "a:b?c",
                                       "/a/../b",   "file:///C:/a b"};
    if (decisions.oneIn(3))
        return QUrl(anyText(decisions));
    return QUrl(QString::fromUtf8(decisions.oneOf(urls)));
}

QUuid anyUuid(Decisions &decisions)
{
    const auto high = decisions.bits<quint64>();
    const auto low = decisions.bits<quint64>();
    return QUuid(uint(high), ushort(high >> 32), ushort(high >> 48), uchar(low), uchar(low >> 8), uchar(low >> 16),
                 uchar(low >> 24), uchar(low >> 32), uchar(low >> 40), uchar(low >> 48), uchar(low >> 56));
}

QVariant anyOther(Decisions &decisions)
{
    static QVariant (*const kinds[])(Decisions &) = {
        [](Decisions &) { return QVariant(); },
        [](Decisions &) { return QVariant::fromValue(nullptr); },
        [](Decisions &d) { return QVariant::fromValue<void *>(d.oneIn(2) ? &d : nullptr); },
        [](Decisions &) { return QVariant::fromValue<QObject *>(nullptr); },
        defaultValue,
        defaultValue,
        [](Decisions &d) -> QVariant { return QChar(d.bits<quint16>()); },
        [](Decisions &d) -> QVariant { return anyDate(d); },
        [](Decisions &d) -> QVariant { return anyTime(d); },
        [](Decisions &d) -> QVariant { return anyDateTime(d); },
        [](Decisions &d) -> QVariant { return anyUrl(d); },
        [](Decisions &d) -> QVariant { return anyUuid(d); },
        [](Decisions &d) -> QVariant { return QRegularExpression(anyText(d)); },
        [](Decisions &d) -> QVariant { return QRegExp(anyText(d)); },
        [](Decisions &d) -> QVariant { return QSize(d.below(3), 1); },
        [](Decisions &d) -> QVariant { return QPointF(d.below(3), 0.5); },
        [](Decisions &d) -> QVariant { return QRect(d.below(3), 1, 2, 3); },
        [](Decisions &d) -> QVariant { return QLine(d.below(3), 1, 2, 3); },
        [](Decisions &) -> QVariant { return QLocale(QLocale::Chinese); },
        [](Decisions &) -> QVariant { return QEasingCurve(QEasingCurve::InQuad); },
        [](Decisions &d) -> QVariant { return QBitArray(d.below(9), true); },
        [](Decisions &) -> QVariant { return QVariant::fromValue(QPersistentModelIndex()); },
        // Enumerations, with and without known names.
        [](Decisions &d) { return QVariant::fromValue(QLocale::Language(d.below(400))); },
        [](Decisions &d) { return QVariant::fromValue(Qt::Alignment(d.bits<uchar>())); },
        [](Decisions &d) { return QVariant::fromValue(Unnamed(d.below(3))); },
        [](Decisions &d) { return QVariant::fromValue(Mute{d.below(3)}); },
        speaking,
        // Containers that JSON does not know.
        [](Decisions &d) { return QVariant::fromValue(QList<QVariantMap>{anyMap(d)}); },
        [](Decisions &d) {
            return QVariant::fromValue(TextOfTexts{{anyKey(d), anyText(d)}});
        },
        [](Decisions &d) { return QVariant::fromValue(QVector<QString>{anyText(d)}); },
        [](Decisions &d) { return QVariant::fromValue(QList<int>{d.below(3)}); },
        [](Decisions &d) { return QVariant::fromValue(QByteArrayList{anyBytes(d)}); },
        [](Decisions &d) {
            return QVariant::fromValue(QPair<QVariant, QVariant>{anyValue(d), anyValue(d)});
        },
        variantOfVariant,
    };
    return decisions.oneOf(kinds)(decisions);
}
