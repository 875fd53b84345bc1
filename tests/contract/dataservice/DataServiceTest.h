#pragma once

#include "dataservice/DataProcess.h"

#include "HostAnswers.h"
#include "HostTest.h"
#include "LogRecorder.h"
#include "Replies.h"

/// Base of the tests of the data service. No dispatcher is made, so the display mode is the one at start.
class DataServiceTest : public HostTest {
protected:
    /// Expects exactly one log line, of that level and operation, whose message continues with the text.
    void expectOnlyLine(QtMsgType type, const QString &operation, const QString &text) const
    {
        ASSERT_EQ(log.lines().size(), 1);
        const LogLine line = log.lines().first();
        EXPECT_EQ(line.type, type);
        EXPECT_EQ(line.category, u"varnel.websdk"_qs);
        EXPECT_EQ(line.file, u"DataProcess.cpp"_qs);
        EXPECT_GT(line.line, 0);
        EXPECT_TRUE(line.function.contains(u"DataProcess::"_qs + operation + u'(')) << qPrintable(line.function);
        EXPECT_TRUE(line.message.startsWith(u"DataProcess::"_qs + operation + u' ' + text)) << qPrintable(line.message);
    }

    LogRecorder log;
    DataProcess *process = DataProcess::instance();
};
