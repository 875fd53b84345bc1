// Whatever a page sends in an argument, as JSON over its WebSocket: its call is answered as any other, and no other
// page notices. tests/contract has the same for what JSON cannot carry.
#include "HostileValues.h"
#include "RawPage.h"
#include "TerminalTest.h"
#include "bridge/DataThread.h"
#include "bridge/TradeThread.h"
#include "gateway/CallFrame.h"
#include "msgcenter/WebMsgCenter.h"

#include <QMetaMethod>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace sim;

namespace {

enum class Answered { AtOnce, Later, Never };

/// A call as a page makes it.
struct Call {
    const char *method;
    std::vector<const char *> good; ///< the arguments behind the uuid, as JSON
    Answered answered = Answered::AtOnce;
};

void PrintTo(const Call &call, std::ostream *out)
{
    *out << call.method;
}

constexpr const char *kFund = R"("880010001")";
constexpr const char *kSymbol = R"("609801.SH")";
constexpr const char *kFilter = R"("{\"symbolFilter\":[{\"symbol\":[\"609801.SH\"]}]}")";
constexpr const char *kOrders = R"("{\"symbol\":[\"609801.SH\"]}")";
constexpr const char *kText = R"("text")";
constexpr const char *kDay = R"("20250303")";

const Call kCalls[] = {
    {"Data_getToken_REQ", {}},
    {"Data_getSymbolDetail_REQ", {kSymbol}},
    {"Data_getCurrentTick_REQ", {kSymbol}},
    {"Data_getFundAccountList_REQ", {"1"}},
    {"Data_getTraderList_REQ", {}},
    {"Data_getLoginTrader_REQ", {}},
    {"Data_getSymbolList_REQ", {kFilter}},
    {"Data_getSymbolListWithDetail_REQ", {kFilter}},
    {"Data_getEntrustList_REQ", {kOrders, "0", "10"}},
    {"Data_getExecutionList_REQ", {kOrders, "0", "10"}},
    {"Data_getPositionList_REQ", {kFund, kSymbol}},
    {"Data_getAsset_REQ", {kFund}},
    {"Data_getTradableQty_REQ", {kFund, kSymbol, R"("SH")", R"("Buy")", R"("Limit")", R"("18.00")", kText}},
    {"Data_getSetting_REQ", {kText}},
    {"Data_saveSetting_REQ", {kText, kText}},
    {"Data_getPermission_REQ", {kFund, R"("TWAP")"}},
    {"Data_openPermissionMenu_REQ", {}},
    {"Data_getUpsDownsAnalysis_REQ", {kText, kText, kText}},
    {"Data_getKLineData_REQ", {kSymbol, kDay, kDay, R"("1")"}, Answered::Later},
    {"Data_getOPStation_REQ", {kText, kText}},
    {"Trade_reqCancelOrder_REQ", {R"("1,2")"}},
    {"Trade_insertOrder_REQ", {kFund, kSymbol, R"("SH")", R"("Buy")", R"("Limit")", R"("18.00")", R"("100")", kText}},
    {"Trade_insertOrderList_REQ", {kFund, kText, R"("[{\"symbol\":\"609801.SH\",\"qty\":\"100\"}]")"}},
    {"Sub_subscribe_REQ", {kSymbol}},
    {"UnSub_subscribe_REQ", {kSymbol}},
    {"UnSub_subscribeAll_REQ", {}},
    {"Vlx_startStrategy_REQ", {kText, "1", kFund, kText, kText}, Answered::Later},
    {"Vlx_stopStrategy_REQ", {kText, kText}, Answered::Later},
    {"Vlx_subStrategyMsg_REQ", {kText, R"("1")"}, Answered::Never},
    {"Vlx_sendCustomInfo_REQ", {kText, kText}, Answered::Never},
    {"Vlx_queryStrategyStatus_REQ", {kText, kText}, Answered::Later},
};

/// A value as it stands in a frame.
struct WireValue {
    QByteArray name;
    QByteArray json;
    QString text; ///< what a reply says where it repeats the argument
};

/// In ASCII, so that lone surrogates can be said.
QByteArray jsonOf(const QString &text)
{
    QByteArray json = "\"";
    for (const QChar character : text) {
        if (character >= QLatin1Char(' ') && character <= QLatin1Char('~') && character != QLatin1Char('"') &&
            character != QLatin1Char('\\'))
            json += character.toLatin1();
        else
            json += "\\u" + QByteArray::number(character.unicode(), 16).rightJustified(4, '0');
    }
    return json + '"';
}

/// Empty for what JSON cannot carry.
QByteArray jsonOf(const QVariant &value)
{
    QByteArrayList parts;
    switch (value.userType()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return "null";
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toByteArray();
    case QMetaType::Double:
        return std::isfinite(value.toDouble()) ? QByteArray::number(value.toDouble(), 'g', 17) : QByteArray();
    case QMetaType::QString:
        return jsonOf(value.toString());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList())
            parts += jsonOf(element);
        return '[' + parts.join(',') + ']';
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            parts += jsonOf(it.key()) + ':' + jsonOf(it.value());
        return '{' + parts.join(',') + '}';
    }
    default:
        return {};
    }
}

std::vector<WireValue> wireValues()
{
    std::vector<WireValue> values;
    const QList<HostileValue> all = hostileValues();
    for (const HostileValue &value : all) {
        if (const QByteArray json = jsonOf(value.value); !json.isEmpty())
            values.push_back({value.name, json, value.text});
    }
    // In JSON a whole number past 2^63 is a double.
    const auto past =
        std::find_if(values.begin(), values.end(), [](const auto &value) { return value.name == "2^64 - 1"; });
    past->text = QStringLiteral("18446744073709552000");
    const auto add = [&](const char *name, const QByteArray &json, const QString &text) {
        values.push_back({name, json, text});
    };
    add("the first number past 2^63", "9223372036854775808", QStringLiteral("9223372036854776000"));
    add("the largest double", "1.7976931348623157e308", QStringLiteral("1.7976931348623157e+308"));
    add("minus zero", "-0", QStringLiteral("0"));
    add("a number of 300 digits", QByteArray(300, '9'), QStringLiteral("1e+300"));
    add("a key twice", R"({"a":1,"a":2})", QString());
    add("U+FEFF in UTF-8", "\"a\xef\xbb\xbf\"", QStringLiteral("a\ufeff"));
    add("an escaped slash and a pair of escaped surrogates", R"("\/\ud83d\ude00")", QStringLiteral("/\U0001F600"));
    add("a text of nearly the longest frame", '"' + QByteArray(CallFrame::kMaxSize - 500, 'x') + '"',
        QString(CallFrame::kMaxSize - 500, QLatin1Char('x')));
    return values;
}

class HostileCallsTest : public QuietTerminalTest, public testing::WithParamInterface<Call> {
protected:
    HostileCallsTest()
    {
        EXPECT_TRUE(gateway.listen(0));
        page = std::make_unique<RawPage>(gateway);
        other = std::make_unique<RawPage>(gateway);
        EXPECT_TRUE(page->awaitOpen());
        EXPECT_TRUE(other->awaitOpen());
    }

    static QByteArray frameOf(const QByteArrayList &args, const char *method = GetParam().method)
    {
        return QByteArray("{\"invoke\":\"") + method + "\",\"args\":[" + args.join(',') + "]}";
    }

    static QByteArrayList goodArgs()
    {
        QByteArrayList args{R"("u1")"};
        for (const char *good : GetParam().good)
            args += good;
        return args;
    }

    /// The replies that a page has got, without what is pushed to all pages.
    static QVector<QJsonObject> repliesOf(const RawPage &page)
    {
        QVector<QJsonObject> replies;
        for (int i = 0; i < page.frames.size(); ++i) {
            EXPECT_EQ(RawPage::Text, page.frames[i].opcode) << page.closeCode();
            if (page.event(i).value(QStringLiteral("event")).toString().endsWith(QLatin1String("_RES")))
                replies += page.event(i);
        }
        return replies;
    }

    static QString textOf(const QJsonObject &reply)
    {
        return reply.value(QStringLiteral("args")).toArray().at(0).toString();
    }

    static QString uuidOf(const QJsonObject &reply)
    {
        return QJsonDocument::fromJson(textOf(reply).toUtf8()).object().value(QStringLiteral("uuid")).toString();
    }

    void send(RawPage &to, const QByteArray &call)
    {
        to.socket.write(RawPage::frame(RawPage::Text | RawPage::kLast, call));
    }

    /// What a page has got before the answer to a call that it makes now.
    QVector<QJsonObject> repliesBefore(RawPage &asking, QByteArrayList args, const char *method)
    {
        const QString mark = QStringLiteral("mark %1").arg(++m_marks);
        args[0] = jsonOf(mark);
        send(asking, frameOf(args, method));
        QVector<QJsonObject> replies;
        EXPECT_TRUE(await([&] {
            replies = repliesOf(asking);
            return (!replies.isEmpty() && uuidOf(replies.last()) == mark) || asking.closeCode();
        }));
        asking.frames.clear();
        return replies.mid(0, replies.size() - 1);
    }

    /// What the page gets for one call. Answers that come later keep their order.
    QVector<QJsonObject> repliesTo(const QByteArrayList &args)
    {
        send(*page, frameOf(args));
        return GetParam().answered == Answered::Later ? repliesBefore(*page, goodArgs(), GetParam().method)
                                                      : repliesBefore(*page, {{}}, "Data_getToken_REQ");
    }

    void expectReply(const QJsonObject &reply, const QString &uuid) const
    {
        const QString event =
            QString::fromLatin1(GetParam().method).replace(QLatin1String("_REQ"), QLatin1String("_RES"));
        EXPECT_EQ(event, reply.value(QStringLiteral("event")).toString());
        if (qstrcmp(GetParam().method, "Data_getUpsDownsAnalysis_REQ") != 0) { // which has no envelope
            EXPECT_EQ(uuid, uuidOf(reply)) << qPrintable(uuidOf(reply).left(100));
        }
    }

    Gateway gateway{QString(), {}};
    std::unique_ptr<RawPage> page;
    std::unique_ptr<RawPage> other;

private:
    int m_marks = 0;
};

std::string nameOf(const testing::TestParamInfo<Call> &call)
{
    return QString::fromLatin1(call.param.method).remove(QLatin1Char('_')).toStdString();
}

} // namespace

TEST_P(HostileCallsTest, AreAnsweredOnceWhateverAnArgumentIs)
{
    // It has no envelope when its list is no JSON.
    const bool isOrderList = qstrcmp(GetParam().method, "Trade_insertOrderList_REQ") == 0;
    for (const WireValue &value : wireValues()) {
        for (int position = 0; position < goodArgs().size(); ++position) {
            SCOPED_TRACE(testing::Message() << value.name.toStdString() << " at " << position);
            QByteArrayList args = goodArgs();
            args[position] = value.json;
            const QVector<QJsonObject> replies = repliesTo(args);
            // Some requests to servers are never answered, for example those for candles of an unknown symbol.
            const int least = GetParam().answered == Answered::AtOnce ? 1 : 0;
            const int most = GetParam().answered == Answered::Never ? 0 : 1;
            ASSERT_GE(replies.size(), least);
            ASSERT_LE(replies.size(), most);
            if (!replies.isEmpty() && !(isOrderList && position == 3 && textOf(replies[0]).isEmpty()))
                expectReply(replies[0], position == 0 ? value.text : QStringLiteral("u1"));
        }
        EXPECT_EQ(0, repliesBefore(*other, {{}}, "Data_getToken_REQ").size()) << value.name.toStdString();
    }
}

TEST_P(HostileCallsTest, MayHaveAnyNumberOfArguments)
{
    for (int count = 0; count < goodArgs().size() + 3; ++count) {
        SCOPED_TRACE(count);
        QByteArrayList args = goodArgs();
        while (args.size() < count)
            args += "[null,{}]";
        const QVector<QJsonObject> replies = repliesTo(args.mid(0, count));
        ASSERT_LE(replies.size(), GetParam().answered == Answered::Never ? 0 : 1);
        if (count >= goodArgs().size() && !replies.isEmpty())
            expectReply(replies[0], QStringLiteral("u1"));
        EXPECT_EQ(0, repliesBefore(*other, {{}}, "Data_getToken_REQ").size());
    }
}

INSTANTIATE_TEST_SUITE_P(Of, HostileCallsTest, testing::ValuesIn(kCalls), nameOf);

TEST(HostileCallsTableTest, HasEveryCall)
{
    QStringList calls{QStringLiteral("Sub_subscribe_REQ"), QStringLiteral("UnSub_subscribe_REQ"),
                      QStringLiteral("UnSub_subscribeAll_REQ")};
    for (const QMetaObject *meta :
         {&DataThread::staticMetaObject, &TradeThread::staticMetaObject, &WebMsgCenter::staticMetaObject}) {
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QString name = QString::fromLatin1(meta->method(i).name());
            if (name.endsWith(QLatin1String("_REQ")))
                calls += name;
        }
    }
    QStringList tested;
    for (const Call &call : kCalls)
        tested += QString::fromLatin1(call.method);
    EXPECT_THAT(tested, testing::UnorderedElementsAreArray(calls));
}

namespace {

class NoCallsTest : public QuietTerminalTest {};

} // namespace

TEST_F(NoCallsTest, TextsThatAreNotJsonCloseTheirPageAndNoOther)
{
    Gateway gateway{QString(), {}};
    ASSERT_TRUE(gateway.listen(0));
    RawPage other(gateway);
    ASSERT_TRUE(other.awaitOpen());
    constexpr int kWrongData = 1007;
    for (const QByteArray &value :
         {QByteArray("1e999"), QByteArray("-1e999"), QByteArray("1e-999"), QByteArray("NaN"), QByteArray("Infinity"),
          QByteArray("01"), QByteArray("+1"), QByteArray("0x10"), QByteArray("undefined"), QByteArray("'a'"),
          QByteArray("[1,]"), QByteArray("{a:1}"), QByteArray("\"a"), QByteArray("\"\\u12\""),
          QByteArray("\"\xed\xa0\x80\""), QByteArray("\"\xc3\""), QByteArray("/**/1"),
          QByteArray(1100, '[') + QByteArray(1100, ']')}) {
        RawPage page(gateway);
        ASSERT_TRUE(page.awaitOpen());
        page.socket.write(RawPage::frame(RawPage::Text | RawPage::kLast,
                                         R"({"invoke":"Data_getToken_REQ","args":["u1",)" + value + "]}"));
        const auto isAnswered = [&] {
            return std::any_of(page.frames.begin(), page.frames.end(),
                               [](const RawPage::Frame &frame) { return frame.payload.contains("_RES"); });
        };
        EXPECT_TRUE(await([&] { return page.closeCode() || isAnswered(); }));
        EXPECT_EQ(kWrongData, page.closeCode()) << value.left(100).toStdString();
        EXPECT_FALSE(isAnswered());
        other.invoke("Data_getToken_REQ", {QStringLiteral("mine")});
        ASSERT_TRUE(other.awaitFrames(1));
        other.frames.clear();
    }
}
