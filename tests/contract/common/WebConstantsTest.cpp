#include "common/WebConstants.h"

#include "HeaderTexts.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

QStringList sortedNames(const char *names)
{
    QStringList list = QString::fromLatin1(names).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    list.sort();
    return list;
}

QStringList textsThat(const QString &pattern)
{
    QStringList found = textsOfTheHeader().filter(QRegularExpression(pattern));
    found.sort();
    return found;
}

TEST(WebConstants, DefineEachTextOnce)
{
    // "0" and "1" are codes and flags, not names.
    QStringList texts = textsOfTheHeader();
    ASSERT_GT(texts.size(), 100);
    texts.sort();
    const auto twice = std::adjacent_find(texts.cbegin(), texts.cend());
    EXPECT_EQ(twice, texts.cend()) << "defined twice: " << qPrintable(twice == texts.cend() ? QString() : *twice);
}

TEST(WebConstants, HoldExactlyTheCallsOfTheProtocol)
{
    EXPECT_EQ(
        textsThat(QStringLiteral("_REQ$")),
        sortedNames(
            "Data_getToken_REQ Data_getSymbolDetail_REQ Data_getCurrentTick_REQ Data_getFundAccountList_REQ "
            "Data_getTraderList_REQ Data_getLoginTrader_REQ Data_getSymbolList_REQ Data_getSymbolListWithDetail_REQ "
            "Data_getEntrustList_REQ Data_getExecutionList_REQ Data_getPositionList_REQ Data_getAsset_REQ "
            "Data_getTradableQty_REQ Data_getSetting_REQ Data_saveSetting_REQ Data_getPermission_REQ "
            "Data_openPermissionMenu_REQ Data_getUpsDownsAnalysis_REQ Data_getKLineData_REQ Data_getOPStation_REQ "
            "Data_getBuffer_REQ Data_saveBuffer_REQ Trade_insertOrder_REQ Trade_insertOrderList_REQ "
            "Trade_reqCancelOrder_REQ Sub_subscribe_REQ UnSub_subscribe_REQ UnSub_subscribeAll_REQ "
            "Vlx_startStrategy_REQ Vlx_stopStrategy_REQ Vlx_queryStrategyStatus_REQ Vlx_sendCustomInfo_REQ "
            "Vlx_subStrategyMsg_REQ"));
}

TEST(WebConstants, HoldOneReplyForEveryCall)
{
    const QStringList calls = textsThat(QStringLiteral("_REQ$"));
    EXPECT_EQ(textsThat(QStringLiteral("_RES$")),
              QStringList(calls).replaceInStrings(QStringLiteral("_REQ"), QStringLiteral("_RES")));
}

TEST(WebConstants, HoldExactlyThePushesOfTheProtocol)
{
    EXPECT_EQ(textsThat(QStringLiteral("^(on_|Notify_)")),
              sortedNames("on_tickUpdate on_AssetUpdate on_entrustUpdate on_executionUpdate on_positionUpdate "
                          "on_orderLoaded on_vlxRcvCustomInfo on_vlxStrategyStatusUpdate on_callError "
                          "Notify_WebReady"));
}

TEST(WebConstants, ShareTheTextOfAColumnAndItsPageKey)
{
    EXPECT_EQ(&WebConstants::Column::side, &WebConstants::Key::side);
    EXPECT_NE(WebConstants::Column::priceType, WebConstants::Key::priceType);
}

} // namespace
