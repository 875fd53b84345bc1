#include "VariantParts.h"

namespace {

/// Characters that a writer of JSON or UTF-8 may treat differently from their neighbours, or should not.
const ushort notable[] = {0,      1,      8,      9,      10,     11,     12,     13,     0x1b,   0x1f,
                          ' ',    '"',    '\\',   '/',    '\'',   '<',    '&',    'u',    0x7f,   0x80,
                          0x9f,   0xff,   0x100,  0x7ff,  0x800,  0x2028, 0x2029, 0xd7ff, 0xd800, 0xdbff,
                          0xdc00, 0xdfff, 0xe000, 0xfdd0, 0xfeff, 0xfffd, 0xfffe, 0xffff};

void appendCharacter(Decisions &decisions, QString &text)
{
    switch (decisions.below(5)) {
    case 1:
        text += QChar(decisions.oneOf(notable));
        break;
    case 2: // Chinese
        text += QChar(ushort(0x4e00 + decisions.below(0x51a5)));
        break;
    case 3: { // a surrogate pair
        const uint plane = 1 + uint(decisions.below(16));
        const uint codePoint = plane * 0x10000 + decisions.bits<quint16>();
        text += QChar(QChar::highSurrogate(codePoint));
        text += QChar(QChar::lowSurrogate(codePoint));
        break;
    }
    case 4:
        text += QChar(decisions.bits<quint16>());
        break;
    default:
        text += QChar(ushort('a' + decisions.below(26)));
    }
}

/// The same awkward character over and over.
QString run(Decisions &decisions)
{
    const int length = decisions.below(16);
    return QString(length, QChar(decisions.oneOf(notable)));
}

/// As long as the buffers are that a writer may have, with one awkward character anywhere.
QString longText(Decisions &decisions)
{
    static const int lengths[] = {64, 128, 256, 512, 1024, 1024, 2048, 2048, 4096};
    static const ushort fillings[] = {'a', 'a', '"', 1, 0xe9, 0x4e2d, 0xdc00};
    const int about = decisions.oneOf(lengths);
    const int length = about + decisions.below(17) - 8;
    QString text(length, QChar(decisions.oneOf(fillings)));
    QString awkward;
    appendCharacter(decisions, awkward);
    return text.insert(decisions.below(length), awkward);
}

} // namespace

QString anyText(Decisions &decisions)
{
    QString text;
    switch (decisions.below(8)) {
    case 0:
        return QString(); // the null text
    case 1:
        return QLatin1String("");
    case 2:
        text += QChar(decisions.oneOf(notable));
        return text;
    case 3:
        return run(decisions);
    case 4:
        if (decisions.allowsMuch())
            return longText(decisions);
        Q_FALLTHROUGH();
    default:
        for (int count = decisions.below(10); count > 0 && !decisions.over(); --count)
            appendCharacter(decisions, text);
        return text;
    }
}

QString anyKey(Decisions &decisions)
{
    // A pair sorts before U+E000 in UTF-16 and after U+FFFF in UTF-8; lone surrogates are all the same in UTF-8.
    static const QChar pieces[] = {QLatin1Char('a'),  QLatin1Char('A'),  QLatin1Char('b'), QLatin1Char('"'),
                                   QLatin1Char('\\'), QLatin1Char('\n'), QChar(0),         QChar(0x7f),
                                   QChar(0xe9),       QChar(0x4e2d),     QChar(0xd7ff),    QChar(0xd800),
                                   QChar(0xd801),     QChar(0xdbff),     QChar(0xdc00),    QChar(0xdfff),
                                   QChar(0xe000),     QChar(0xfeff),     QChar(0xfffd),    QChar(0xffff)};
    if (decisions.oneIn(8))
        return anyText(decisions);
    QString key;
    for (int count = decisions.below(4); count > 0; --count)
        key += decisions.oneOf(pieces);
    return key;
}

QByteArray anyBytes(Decisions &decisions)
{
    // Invalid UTF-8: cut short, overlong, an encoded surrogate. Then nothing, a byte order mark, and valid texts.
    static const char *const pieces[] = {"a",    "\xff",     "\xc3",         "\xe4\xb8",     "\xf0\x9f\x98",
                                         "\x80", "\xc0\x80", "\xed\xa0\x80", "\xef\xbb\xbf", "\xe4\xb8\xad"};
    QByteArray bytes;
    switch (decisions.below(5)) {
    case 0:
        return QByteArray(); // null
    case 1:
        return QByteArray("");
    case 2:
        return anyText(decisions).toUtf8();
    case 3:
        for (int count = decisions.below(6); count > 0 && !decisions.over(); --count)
            bytes += decisions.oneOf(pieces);
        return bytes;
    default:
        for (int count = decisions.below(12); count > 0 && !decisions.over(); --count)
            bytes += decisions.bits<char>();
        return bytes;
    }
}
