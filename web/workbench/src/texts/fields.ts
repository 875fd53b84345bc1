import type { assetKeys, entrustKeys, executionKeys, positionKeys, SecurityDetail } from '@varnel/web-client';
import type { Text } from './table';

export type FieldKey =
  | (typeof entrustKeys | typeof executionKeys | typeof positionKeys | typeof assetKeys)[number]
  | 'stockInterest'
  | keyof SecurityDetail;

/** Names of the fields of the terminal's records. */
export const fields: Readonly<Record<FieldKey, Text>> = {
  // Orders and executions
  entrustTime: ['委托时间', 'Order time'],
  dealTime: ['成交时间', 'Execution time'],
  securityId: ['证券代码', 'Code'],
  securityName: ['证券名称', 'Name'],
  side: ['买卖', 'Side'],
  sideUnion: ['买卖类别', 'Side and effect'],
  status: ['状态', 'Status'],
  priceType: ['价格类型', 'Price type'],
  price: ['委托价格', 'Order price'],
  entrustQty: ['委托数量', 'Order quantity'],
  leaveQty: ['剩余数量', 'Remaining quantity'],
  dealQty: ['成交数量', 'Filled quantity'],
  dealPrice: ['成交价格', 'Fill price'],
  entrustAmount: ['委托金额', 'Order amount'],
  dealAmount: ['成交金额', 'Filled amount'],
  fundAccountName: ['账号名称', 'Account name'],
  fundAccount: ['资产账号', 'Account'],
  exchangeOrderId: ['交易所编号', 'Exchange number'],
  orderId: ['委托编号', 'Order number'],
  execId: ['成交编号', 'Execution number'],
  traderName: ['交易员', 'Trader'],
  remark: ['备注', 'Remark'],
  orderSource: ['来源', 'Source'],
  instanceID: ['策略实例', 'Strategy instance'],
  // Positions
  securityAccount: ['股东账号', 'Securities account'],
  exchange: ['交易所', 'Exchange'],
  lastPrice: ['最新价', 'Last'],
  riseDownRate: ['涨跌幅', 'Change'],
  currentQty: ['当前数量', 'Quantity'],
  tradableQty: ['可用数量', 'Tradable'],
  costPrice: ['成本价', 'Cost price'],
  cost: ['成本', 'Cost'],
  costCNY: ['成本/元', 'Cost, CNY'],
  marketValue: ['市值', 'Market value'],
  marketValueCNY: ['市值/元', 'Market value, CNY'],
  totalCost: ['总成本', 'Total cost'],
  profit: ['盈亏', 'Profit'],
  profitRate: ['盈亏率', 'Profit rate'],
  stockInterest: ['债券利息', 'Bond interest'],
  // Assets
  holdingCost: ['持仓成本', 'Holding cost'],
  fetchableCash: ['可取资金', 'Withdrawable cash'],
  totalAsset: ['总资产', 'Total assets'],
  tradableCash: ['可用资金', 'Available cash'],
  closePosProfitDate: ['逐日平仓盈亏', 'Closed profit, by day'],
  closePosProfitTrade: ['逐笔平仓盈亏', 'Closed profit, by trade'],
  floatingProfit: ['浮动盈亏', 'Floating profit'],
  // Securities
  symbol: ['合约标识', 'Symbol'],
  displayName: ['名称', 'Name'],
  spellName: ['拼音码', 'Spelling'],
  securityType: ['类别', 'Type'],
  securitySubType: ['子类别', 'Sub-type'],
  qtyUnit: ['数量单位', 'Quantity unit'],
  precision: ['价格位数', 'Price decimals'],
  priceUnit: ['最小变动价位', 'Price step'],
  qtyStep: ['数量步长', 'Display quantity step'],
  qtyPrecision: ['业务数量步长', 'Order quantity step'],
  minQty: ['最小委托量', 'Smallest order'],
  maxQty: ['最大委托量', 'Largest order'],
  priceLimitType: ['有涨跌停', 'Price limits'],
};
