#pragma once

#include "HostApi.h"
#include "HostBus.h"
#include "HostMock.h"
#include "HostTypes.h"

#include <QList>
#include <QString>
#include <QVariantMap>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// How the terminal looks when the library starts. Each variation has one switch here.
struct HostStart {
    QString loginAccount = QStringLiteral("mock-account"); ///< names the settings folder; empty: nobody is logged in
    int pid = 7301;                                        ///< bus address of the message center
    int strategyOutEventId = 0x5A5A5;                      ///< the bus's id for VELOX_TRANS_MSG_OUT
    ShowType showType = GroupedShowType;                   ///< not the one that is zero
    int dataDispatchers = 1; ///< how many are going to be created; each reads the show type

    // The load of the permissions, which is the last thing at start. Without a login it ends before the server is
    // asked.
    bool permissionLoadIsFree = true; ///< false: the host says that it is under way or done elsewhere
    QList<QVariantMap> permissions;   ///< what the server answers
    QString permissionError;          ///< what it says went wrong; the load fails unless this is empty
};

/// Base of the tests that need a host. Every test has a mock of its own, verified when the test object is
/// destroyed, after the members of the test's class. Meant for one test in each process: the library's
/// singletons start once.
class VARNEL_HOST_API HostTest : public testing::Test {
protected:
    HostTest();

    /// Also fails the test when a message that the library created was not handed over.
    ~HostTest() override;

    /// Expects exactly the host calls of a first start: what the message center calls while it is being
    /// constructed, and what each data dispatcher calls. Its bus address may be asked any time after.
    void expectStart(const HostStart &start = {});

    /// Expects exactly the host calls of one load of the permissions, after what the sequence holds already. Of the
    /// start only login and permissions count.
    void expectPermissionLoad(const HostStart &start, const testing::Sequence &order = {});

    testing::StrictMock<HostMock> host;
    HostBus bus;

private:
    const int m_messagesBefore;
};
