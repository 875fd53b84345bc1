/** Texts that the simulator uses; docs/vocabulary.md explains them, a test compares the two. */

/** Fields of a candle. */
export const candleFields = {
  symbol: 'symbol',
  time: 'time',
  open: 'open',
  high: 'high',
  low: 'low',
  close: 'close',
  volume: 'volume',
  amount: 'amount',
  clientMsgID: 'clientMsgID',
} as const;

/** Period flags of getKLineData; every text but the first means days. */
export const klinePeriods = { minute: '1', day: '2' } as const;

/** Values of getFundAccountList's fundProp. */
export const fundProperties = { all: 0, stock: 1, futures: 2 } as const;
