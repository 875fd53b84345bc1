import type { assetKeys, entrustKeys, executionKeys, positionKeys, SecurityDetail } from '@varnel/web-client';

type RecordKey =
  | (typeof entrustKeys | typeof executionKeys | typeof positionKeys | typeof assetKeys)[number]
  | 'stockInterest'
  | keyof SecurityDetail;

/** Display names of the fields of the terminal's records. */
export const fieldNames: Readonly<Record<RecordKey, string>> = {
  // Orders and executions
  entrustTime: '委托时间',
  dealTime: '成交时间',
  securityId: '证券代码',
  securityName: '证券名称',
  side: '买卖',
  sideUnion: '买卖类别',
  status: '状态',
  priceType: '价格类型',
  price: '委托价格',
  entrustQty: '委托数量',
  leaveQty: '剩余数量',
  dealQty: '成交数量',
  dealPrice: '成交价格',
  entrustAmount: '委托金额',
  dealAmount: '成交金额',
  fundAccountName: '账号名称',
  fundAccount: '资产账号',
  exchangeOrderId: '交易所编号',
  orderId: '委托编号',
  execId: '成交编号',
  traderName: '交易员',
  remark: '备注',
  orderSource: '来源',
  instanceID: '策略实例',
  // Positions
  securityAccount: '股东账号',
  exchange: '交易所',
  lastPrice: '最新价',
  riseDownRate: '涨跌幅',
  currentQty: '当前数量',
  tradableQty: '可用数量',
  costPrice: '成本价',
  cost: '成本',
  costCNY: '成本/元',
  marketValue: '市值',
  marketValueCNY: '市值/元',
  totalCost: '总成本',
  profit: '盈亏',
  profitRate: '盈亏率',
  stockInterest: '债券利息',
  // Assets
  holdingCost: '持仓成本',
  fetchableCash: '可取资金',
  totalAsset: '总资产',
  tradableCash: '可用资金',
  closePosProfitDate: '逐日平仓盈亏',
  closePosProfitTrade: '逐笔平仓盈亏',
  floatingProfit: '浮动盈亏',
  // Securities
  symbol: '合约标识',
  displayName: '名称',
  spellName: '拼音码',
  securityType: '类别',
  securitySubType: '子类别',
  qtyUnit: '数量单位',
  precision: '价格位数',
  priceUnit: '最小变动价位',
  qtyStep: '数量步长',
  qtyPrecision: '业务数量步长',
  minQty: '最小委托量',
  maxQty: '最大委托量',
  priceLimitType: '有涨跌停',
};
