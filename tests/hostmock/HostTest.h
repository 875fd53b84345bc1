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

/// The state of the terminal when the library starts.
struct HostStart {
    QString loginAccount = QStringLiteral("mock-account"); ///< names the settings folder; empty: nobody is logged in
    int pid = 7301;                                        ///< bus address of the message center
    int strategyOutEventId = 0x5A5A5;                      ///< the bus's id for VELOX_TRANS_MSG_OUT
    ShowType showType = GroupedShowType;                   ///< not the zero value
    int dataDispatchers = 1;                               ///< how many will be created; each reads the show type

    // The load of the permissions, which is the last step of a start. Without a login the server is not asked.
    bool permissionLoadIsFree = true; ///< false: the host answers that it is running or done elsewhere
    QList<QVariantMap> permissions;   ///< the answer of the server
    QString permissionError;          ///< the error of the server; the load fails unless this is empty
};

/// Base of the tests that need a host. Every test has its own mock, which is verified when the test object is
/// destroyed, after the members of the test's class. Run one test in each process: the library's singletons start only
/// once.
class VARNEL_HOST_API HostTest : public testing::Test {
protected:
    HostTest();

    /// Fails the test when the library created a message and did not hand it over.
    ~HostTest() override;

    /// Expects exactly the host calls of a first start: those of the constructors of the message center and of each
    /// data dispatcher. The bus address may be read at any time afterwards.
    void expectStart(const HostStart &start = {});

    /// Expects exactly the host calls of one load of the permissions, after the calls that are in the sequence already.
    /// Uses only the login and the permissions of start.
    void expectPermissionLoad(const HostStart &start, const testing::Sequence &order = {});

    testing::StrictMock<HostMock> host;
    HostBus bus;

private:
    const int m_messagesBefore;
};
