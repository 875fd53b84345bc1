#include "Texts.h"

#include "common/JsonWriter.h"

#include <memory>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <benchmark/benchmark.h>

namespace {

using Utf16 = rapidjson::UTF16<char16_t>;
using Buffer = rapidjson::GenericStringBuffer<Utf16>;
using Writer = rapidjson::Writer<Buffer, Utf16, Utf16>;

template <typename T>
const T &held(const QVariant &value)
{
    return *static_cast<const T *>(value.constData());
}

void writeString(Writer &writer, const QString &text)
{
    writer.String(reinterpret_cast<const char16_t *>(text.constData()), rapidjson::SizeType(text.size()));
}

/// The kinds of values that the benchmarks have.
void write(Writer &writer, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QString:
        return writeString(writer, held<QString>(value));
    case QMetaType::Double:
        return void(writer.Double(held<double>(value)));
    case QMetaType::Int:
        return void(writer.Int(held<int>(value)));
    case QMetaType::LongLong:
        return void(writer.Int64(held<qint64>(value)));
    case QMetaType::Bool:
        return void(writer.Bool(held<bool>(value)));
    case QMetaType::QVariantMap: {
        writer.StartObject();
        const auto &map = held<QVariantMap>(value);
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            writer.Key(reinterpret_cast<const char16_t *>(it.key().constData()), rapidjson::SizeType(it.key().size()));
            write(writer, it.value());
        }
        writer.EndObject();
        return;
    }
    case QMetaType::QVariantList: {
        writer.StartArray();
        for (const QVariant &element : held<QVariantList>(value))
            write(writer, element);
        writer.EndArray();
        return;
    }
    default:
        qFatal("no value of the benchmarks: %s", value.typeName());
    }
}

QString rapidJsonText(const QVariant &value)
{
    Buffer buffer;
    Writer writer(buffer);
    write(writer, value);
    return QString(reinterpret_cast<const QChar *>(buffer.GetString()), int(buffer.GetSize() / sizeof(char16_t)));
}

} // namespace

MakeValue madeOnce(const MakeValue &makeValue)
{
    const auto made = std::make_shared<QVariant>();
    return [made, makeValue] {
        if (!made->isValid())
            *made = makeValue();
        return *made;
    };
}

void addTexts(const std::string &name, const MakeValue &makeValue)
{
    const MakeValue tree = madeOnce(makeValue);
    const auto add = [&](const char *way, QString (*makeText)(const QVariant &)) {
        benchmark::RegisterBenchmark((name + "/" + way).c_str(), [tree, makeText](benchmark::State &state) {
            const QVariant value = tree();
            while (state.KeepRunning())
                benchmark::DoNotOptimize(makeText(value));
        });
    };
    add("QJsonDocument text", qtText);
    add("writer text", compactJson);
    add("RapidJSON text", rapidJsonText);
}
