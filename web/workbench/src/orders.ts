import { orderStatuses, priceTypes, sides } from '@varnel/web-client';

/** Display names of the codes of orders. */

export const sideNames: Readonly<Record<string, string>> = {
  [sides.buy]: '买入',
  [sides.sell]: '卖出',
  [sides.afterHoursBuy]: '盘后买入',
  [sides.afterHoursSell]: '盘后卖出',
};

export const futureSideNames: Readonly<Record<string, string>> = {
  [sides.buyOpen]: '买入开仓',
  [sides.sellOpen]: '卖出开仓',
  [sides.buyClose]: '买入平仓',
  [sides.sellClose]: '卖出平仓',
};

export const priceTypeNames: Readonly<Record<string, string>> = {
  [priceTypes.limit]: '限价',
  [priceTypes.market]: '市价',
  [priceTypes.afterHours]: '盘后定价',
};

export const statusNames: Readonly<Record<string, string>> = {
  [orderStatuses.reported]: '已报',
  [orderStatuses.partlyFilled]: '部分成交',
  [orderStatuses.filled]: '全部成交',
  [orderStatuses.partlyCancelled]: '部成部撤',
  [orderStatuses.cancelled]: '已撤',
  [orderStatuses.rejected]: '废单',
};
