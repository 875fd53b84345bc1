// What a page's call costs on the terminal's user-interface thread: arguments in, reply event out.

#include "CheapHost.h"
#include "Texts.h"
#include "WebChannelPeer.h"

#include "bridge/DataThread.h"

#include "VarnelCefView.h"

#include <QLoggingCategory>

#include <benchmark/benchmark.h>

namespace {

/// A page and its dispatcher, which goes with it.
struct Page {
    VarnelCefView view;
    DataThread *const dispatcher = new DataThread(&view);
};

using MakeArguments = std::function<QVariantList()>;

void callLibrary(benchmark::State &state, const QString &method, const QVariantList &args)
{
    Page page;
    while (state.KeepRunning())
        page.dispatcher->onInvokeMethod(0, 0, method, args);
}

void callWebChannel(benchmark::State &state, const char *method, const QVariantList &list)
{
    WebChannelPeer peer(1);
    peer.host.list = list;
    const QJsonObject message = peer.invocation(method, uuid);
    while (state.KeepRunning())
        peer.receive(message);
}

void dropLogLine(QtMsgType, const QMessageLogContext &, const QString &) {}

/// A call whose result is a list, beside the same records from Qt's bridge and as bare texts.
void addListCall(const std::string &name, const QString &method, const MakeArguments &makeArguments, int count,
                 QVariantMap (*makeRecord)(), const QString &listKey)
{
    const MakeValue list = madeOnce([count, makeRecord]() -> QVariant {
        QVariantList records;
        for (int i = 0; i < count; ++i)
            records.append(makeRecord());
        return records;
    });
    const auto result = [list, count, listKey]() -> QVariant {
        if (listKey.isEmpty())
            return list();
        return QVariantMap{{listKey, list()}, {QStringLiteral("size"), count}, {QStringLiteral("totalSize"), count}};
    };
    benchmark::RegisterBenchmark((name + "/library").c_str(), [method, makeArguments](benchmark::State &state) {
        callLibrary(state, method, makeArguments());
    });
    benchmark::RegisterBenchmark((name + "/QWebChannel").c_str(), [list](benchmark::State &state) {
        callWebChannel(state, "records(QString)", list().toList());
    });
    addTexts(name, [result] { return envelope(result()); });
}

const bool added = [] {
    const QString token = QStringLiteral("Data_getToken_REQ");
    benchmark::RegisterBenchmark("trivial call/library",
                                 [token](benchmark::State &state) { callLibrary(state, token, {uuid}); });
    benchmark::RegisterBenchmark("trivial call/QWebChannel",
                                 [](benchmark::State &state) { callWebChannel(state, "token(QString)", {}); });
    benchmark::RegisterBenchmark("trivial call/library, unknown name", [](benchmark::State &state) {
        callLibrary(state, QStringLiteral("Data_getBuffer_REQ"), {uuid});
    });
    addTexts("trivial call", [] { return envelope(ChannelHost().token(uuid)); });

    const auto positions = [] { return QVariantList{uuid, QStringLiteral("880010001"), QString()}; };
    addListCall("list of 100 positions", QStringLiteral("Data_getPositionList_REQ"), positions, 100,
                CheapHost::positionRecord, QString());
    for (const int count : {100, 1000, 10000}) {
        const auto orders = [count] { return QVariantList{uuid, QStringLiteral("{}"), 0, count}; };
        addListCall("list of " + std::to_string(count) + " orders", QStringLiteral("Data_getEntrustList_REQ"), orders,
                    count, CheapHost::orderRecord, QStringLiteral("entrustInfoList"));
    }
    for (const int count : {1000, 50000}) {
        const auto securities = [count] {
            CheapHost::listSecurities(count);
            return QVariantList{uuid, QStringLiteral("{}")};
        };
        addListCall("details of " + std::to_string(count) + " securities",
                    QStringLiteral("Data_getSymbolListWithDetail_REQ"), securities, count, CheapHost::securityRecord,
                    QString());
    }
    return true;
}();

/// A terminal that has the debug lines of the library on, into a log that costs nothing.
void callWithDebugLines(benchmark::State &state)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false\nvarnel.websdk.debug=true"));
    const QtMessageHandler before = qInstallMessageHandler(dropLogLine);
    callLibrary(state, QStringLiteral("Data_getEntrustList_REQ"), {uuid, QStringLiteral("{}"), 0, 1});
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
}
BENCHMARK(callWithDebugLines)->Name("list of 1 order/library, debug lines on");

void callWithoutDebugLines(benchmark::State &state)
{
    callLibrary(state, QStringLiteral("Data_getEntrustList_REQ"), {uuid, QStringLiteral("{}"), 0, 1});
}
BENCHMARK(callWithoutDebugLines)->Name("list of 1 order/library");

} // namespace
