#pragma once

#include <QStringList>
#include <QVariantList>

#include <functional>
#include <utility>

/// How the arguments of a page call are read. Position 0 is the call identifier, a text; a handler names one reading
/// for each position after it. No reading fails.
namespace PageArguments {

struct Text {
    static QString read(const QVariant &argument) { return argument.toString(); }
};

/// Always through the text: a page's 100.5 is 0, not 101. A text that is not a base-10 integer is 0.
struct Integer {
    static int read(const QVariant &argument) { return argument.toString().toInt(nullptr, 10); }
};

struct Variant {
    static QVariant read(const QVariant &argument) { return argument; }
};

/// Empty parts are kept: the empty text is a list of one empty item.
struct CommaList {
    static QStringList read(const QVariant &argument)
    {
        return argument.toString().split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    }
};

template <typename... Readings, typename Operation, typename Service, std::size_t... Index>
QString answerAt(std::index_sequence<Index...>, const QVariantList &args, Operation operation, Service *service)
{
    return std::invoke(operation, service, Text::read(args.at(0)), Readings::read(args.at(int(Index) + 1))...);
}

/// Reads the uuid and the arguments, calls the service's operation with them and returns its answer. When there are too
/// few arguments, the operation is not called and the answer is the empty text. Surplus arguments are ignored.
template <typename... Readings, typename Operation, typename Service>
QString answer(const QVariantList &args, Operation operation, Service *service)
{
    if (args.size() < 1 + int(sizeof...(Readings)))
        return QString();
    return answerAt<Readings...>(std::index_sequence_for<Readings...>(), args, operation, service);
}

} // namespace PageArguments
