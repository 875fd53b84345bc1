import { orderStatuses, priceTypes, securityTypes, sides, strategyStatuses } from '@varnel/web-client';
import type { Text } from './table';

type Code<Table> = Table[keyof Table] & string;

/** Names of the codes of the simulator. A code of another terminal has no name here and is shown as it is. */
export const codes = {
  side: {
    [sides.buy]: ['买入', 'Buy'],
    [sides.sell]: ['卖出', 'Sell'],
    [sides.buyOpen]: ['买入开仓', 'Buy to open'],
    [sides.sellOpen]: ['卖出开仓', 'Sell to open'],
    [sides.buyClose]: ['买入平仓', 'Buy to close'],
    [sides.sellClose]: ['卖出平仓', 'Sell to close'],
    [sides.afterHoursBuy]: ['盘后买入', 'After-hours buy'],
    [sides.afterHoursSell]: ['盘后卖出', 'After-hours sell'],
  } satisfies Record<Code<typeof sides>, Text>,
  priceType: {
    [priceTypes.limit]: ['限价', 'Limit'],
    [priceTypes.market]: ['市价', 'Market'],
    [priceTypes.afterHours]: ['盘后定价', 'After hours'],
  } satisfies Record<Code<typeof priceTypes>, Text>,
  status: {
    [orderStatuses.toBeSent]: ['待报', 'To be sent'],
    [orderStatuses.sent]: ['正报', 'Sent'],
    [orderStatuses.reported]: ['已报', 'Reported'],
    [orderStatuses.partlyFilled]: ['部分成交', 'Partly filled'],
    [orderStatuses.filled]: ['全部成交', 'Filled'],
    [orderStatuses.toBeCancelled]: ['待撤', 'To be cancelled'],
    [orderStatuses.partlyCancelled]: ['部成部撤', 'Partly cancelled'],
    [orderStatuses.cancelled]: ['已撤', 'Cancelled'],
    [orderStatuses.rejected]: ['废单', 'Rejected'],
  } satisfies Record<Code<typeof orderStatuses>, Text>,
  securityType: {
    [securityTypes.share]: ['股票', 'Share'],
    [securityTypes.fund]: ['基金', 'Fund'],
    [securityTypes.bond]: ['债券', 'Bond'],
    [securityTypes.future]: ['期货', 'Future'],
  } satisfies Record<Code<typeof securityTypes>, Text>,
  strategyStatus: {
    [strategyStatuses.starting]: ['启动中', 'Starting'],
    [strategyStatuses.running]: ['运行中', 'Running'],
    [strategyStatuses.stopping]: ['停止中', 'Stopping'],
    [strategyStatuses.stopped]: ['已停止', 'Stopped'],
  } satisfies Record<Code<typeof strategyStatuses>, Text>,
};

export type CodeKind = keyof typeof codes;
