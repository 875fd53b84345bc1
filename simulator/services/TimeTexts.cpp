#include "services/TimeTexts.h"

#include <algorithm>
#include <iterator>

namespace sim {

namespace {

constexpr int kLength = 14;

/// Returns where the next number goes.
QChar *writeDigits(QChar *to, int number, int count)
{
    for (int i = count - 1; i >= 0; --i, number /= 10)
        to[i] = QChar(u'0' + number % 10);
    return to + count;
}

} // namespace

QString TimeTexts::write(const QDateTime &time)
{
    if (!time.isValid())
        return {};
    int year = 0;
    int month = 0;
    int day = 0;
    time.date().getDate(&year, &month, &day);
    const QTime ofDay = time.time();
    QString text(kLength, Qt::Uninitialized);
    QChar *next = writeDigits(text.data(), year, 4);
    for (const int number : {month, day, ofDay.hour(), ofDay.minute(), ofDay.second()})
        next = writeDigits(next, number, 2);
    return text;
}

QString TimeTexts::timeOfDay(const QString &text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (text.size() != kLength || !std::all_of(text.begin(), text.end(), isDigit))
        return {};
    const auto number = [&](int from, int count) {
        int read = 0;
        for (int i = from; i < from + count; ++i)
            read = read * 10 + text[i].digitValue();
        return read;
    };
    if (!QDate::isValid(number(0, 4), number(4, 2), number(6, 2)) ||
        !QTime::isValid(number(8, 2), number(10, 2), number(12, 2)))
        return {};
    const QChar shown[] = {text[8], text[9], u':', text[10], text[11], u':', text[12], text[13]};
    return QString(shown, int(std::size(shown)));
}

} // namespace sim
