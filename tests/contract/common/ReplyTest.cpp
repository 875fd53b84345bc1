#include "common/Reply.h"

#include "LogRecorder.h"
#include "RecordingView.h"

#include <gtest/gtest.h>

using namespace WebConstants;

namespace {

Operation sampleOperation()
{
    return Operation{"DataProcess::processSample", "DataProcess.cpp", 42, "the function"};
}

QString textOf(const QVariant &resultData)
{
    return Reply::text(QStringLiteral("u"), resultData);
}

TEST(Reply, ListsItsKeysInOrderAndWithoutWhiteSpace)
{
    EXPECT_EQ(Reply::text(QStringLiteral("abc"), QStringLiteral("T")),
              QStringLiteral(R"({"code":"0","msg":"","resultData":"T","uuid":"abc"})"));
}

TEST(Reply, CarriesTheOperationsCodeAndMessage)
{
    EXPECT_EQ(Reply::text(QStringLiteral("u"), QVariantList(), Code::failure, QStringLiteral("原因")),
              QStringLiteral(R"({"code":"-1","msg":"原因","resultData":[],"uuid":"u"})"));
}

TEST(Reply, TakesAResultThatWritesItself)
{
    const auto writeResult = [](JsonWriter &json) {
        json.array(QStringList{QStringLiteral("a"), QStringLiteral("\"")},
                   [&](const QString &text) { json.string(text); });
    };
    EXPECT_EQ(Reply::text(QStringLiteral("u"), writeResult),
              QStringLiteral(R"({"code":"0","msg":"","resultData":["a","\""],"uuid":"u"})"));
}

TEST(Reply, WithoutAResultHasNoKeyForIt)
{
    EXPECT_EQ(Reply::textWithoutResult(QStringLiteral("u"), Code::failure, QStringLiteral("m")),
              QStringLiteral(R"({"code":"-1","msg":"m","uuid":"u"})"));
}

TEST(Reply, EchoesAHostileUuidUnchanged)
{
    const QString uuid = QString::fromUtf8("\"\\\n\t") + QChar(0) + QString::fromUtf8("𝄞汉</script>");
    const QString text = Reply::text(uuid, QString());
    EXPECT_EQ(text, QStringLiteral(R"({"code":"0","msg":"","resultData":"","uuid":"\"\\\n\t\u0000𝄞汉</script>"})"));
}

TEST(Reply, WritesEveryKindOfValueAsJson)
{
    EXPECT_TRUE(textOf(QString()).contains(QStringLiteral(R"("resultData":"")")));
    EXPECT_TRUE(textOf(QVariant()).contains(QStringLiteral(R"("resultData":null)")));
    EXPECT_TRUE(textOf(QStringList{QStringLiteral("a")}).contains(QStringLiteral(R"("resultData":["a"])")));
    EXPECT_TRUE(textOf(qQNaN()).contains(QStringLiteral(R"("resultData":null)")));
    EXPECT_TRUE(textOf(12.5).contains(QStringLiteral(R"("resultData":12.5)")));
}

TEST(Reply, ThatJsonCannotExpressIsEmptyAndLoggedAsAWarning)
{
    LogRecorder log;
    EXPECT_EQ(Reply::toText(QStringLiteral("a scalar"), QtWarningMsg, sampleOperation()), QString());

    ASSERT_EQ(log.lines().size(), 1);
    const LogLine line = log.lines().first();
    EXPECT_EQ(line.type, QtWarningMsg);
    EXPECT_EQ(line.category, QStringLiteral("varnel.websdk"));
    EXPECT_EQ(line.file, QStringLiteral("DataProcess.cpp"));
    EXPECT_EQ(line.line, 42);
    EXPECT_EQ(line.function, QStringLiteral("the function"));
    EXPECT_TRUE(line.message.startsWith(QStringLiteral("DataProcess::processSample 参数转换错误 ")))
        << qPrintable(line.message);
    EXPECT_TRUE(line.message.contains(QStringLiteral("a scalar"))) << qPrintable(line.message);
}

TEST(Reply, ThatJsonCannotExpressIsLoggedAtTheOperationsLevel)
{
    LogRecorder log;
    EXPECT_EQ(Reply::toText(7, QtDebugMsg, sampleOperation()), QString());
    EXPECT_EQ(log.linesOfType(QtDebugMsg).size(), 1);
    EXPECT_TRUE(log.linesOfType(QtWarningMsg).isEmpty());
}

TEST(Reply, OperationNamesItselfAndTheFileOfItsClass)
{
    const Operation operation = VARNEL_OPERATION(DataProcess, processToken);
    EXPECT_STREQ(operation.name, "DataProcess::processToken");
    EXPECT_STREQ(operation.file, "DataProcess.cpp");
    EXPECT_EQ(operation.line, __LINE__ - 3);
    EXPECT_NE(QString::fromUtf8(operation.function).indexOf(QStringLiteral("OperationNamesItself")), -1);
}

TEST(Reply, ReachesThePageAsOneTextArgument)
{
    RecordingView view;
    view.answerBroadcasts(false); // the result of the broadcast is nobody's concern
    Reply::send(&view, ReplyEvent::Data_getToken, QStringLiteral("text"));

    ASSERT_EQ(view.events().size(), 1);
    EXPECT_EQ(view.events().first().name, QStringLiteral("Data_getToken_RES"));
    ASSERT_EQ(view.events().first().arguments.size(), 1);
    EXPECT_EQ(view.events().first().arguments.first().userType(), int(QMetaType::QString));
    EXPECT_EQ(view.events().first().arguments.first().toString(), QStringLiteral("text"));
}

} // namespace
