import { assetKeys, entrustKeys, executionKeys, positionKeys } from '../src/index.js';

/** Sample arguments and answers. */

export const filter = { symbol: ['s'], orderStatus: ['1', '2'] };
export const page = { filter, start: 40, count: 20 };
export const order = Object.fromEntries(entrustKeys.map((key) => [key, { displayRole: key, userRole: 1 }]));
export const execution = Object.fromEntries(executionKeys.map((key) => [key, { displayRole: null, userRole: null }]));
export const position = { ...Object.fromEntries(positionKeys.map((key) => [key, 1.5])), stockInterest: 0 };
export const asset = Object.fromEntries(assetKeys.map((key) => [key, '0.00']));
export const detail = {
  symbol: 's',
  securityId: '1',
  exchange: 'X',
  displayName: '一',
  spellName: 'Y',
  qtyUnit: 100,
  precision: 2,
  priceUnit: 0.01,
  qtyStep: 100,
  qtyPrecision: 1,
  minQty: '100',
  maxQty: '1000000',
  securityType: 'a',
  securitySubType: 'b',
  priceLimitType: false,
  stockInterest: 1.25,
};
export const classes = [{ securityType: 'a', securitySubType: ['b'], securityPost: [] }];

export const line = { symbol: 's', exchange: 'X', orderSide: 'Buy', priceType: 'Limit', price: '1.50', qty: '100' };
export const order1 = { ...line, fundAccount: 'f', orderTag: 'tag' };
export const placed = { ...line, fundAccount: 'f', orderID: 'O1' };
export const strategy = { strategyID: 'S1', strategyStatus: 'running', ExtField: ['x'] };
export const stopped = { strategyID: 'S1', extension: ['x'] };
