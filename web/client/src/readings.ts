import * as records from './records.js';
import { list, nothing, oneOrZero, optional, text, type Json } from './shapes.js';

/**
 * How values travel: `parameters` turn arguments into the form that the terminal reads, `answers` check answers before a
 * page gets them as their type. Both throw on a value of the wrong form.
 */

/** Conditions on orders and executions, each a list of accepted values. A missing list sets no condition. */
export const orderFilterKeys = ['fundAccount', 'symbol', 'trader', 'orderStatus', 'orderSource', 'instanceID'] as const;

export type OrderFilter = { readonly [Key in (typeof orderFilterKeys)[number]]?: readonly string[] };

/** A class of securities, as the terminal's search knows it. */
export interface SecurityClass {
  readonly securityType?: string;
  readonly securitySubType?: readonly string[];
  readonly securityPost?: readonly string[];
}

/** An order of a list. All values are texts, also quantity and price. */
export const orderLineKeys = ['symbol', 'exchange', 'orderSide', 'priceType', 'price', 'qty'] as const;

export type OrderLine = { readonly [Key in (typeof orderLineKeys)[number]]: string };

const largestInteger = 2 ** 31 - 1;

const isText = (value: unknown) => typeof value === 'string';
const isTexts = (value: unknown) => Array.isArray(value) && value.every(isText);

interface Expected {
  holds: (value: unknown) => boolean;
  is: string;
}

const aText: Expected = { holds: isText, is: 'a string' };
const texts: Expected = { holds: isTexts, is: 'a list of strings' };

const orderFilterEntries = new Map<string, Expected>(orderFilterKeys.map((key) => [key, texts]));
const securityClassEntries = new Map<string, Expected>([
  ['securityType', aText],
  ['securitySubType', texts],
  ['securityPost', texts],
] satisfies [keyof SecurityClass, Expected][]);
const orderLineEntries = new Map<string, Expected>(orderLineKeys.map((key) => [key, aText]));

/** The terminal ignores unknown keys and unreadable values, so a mistake would go unnoticed there. */
function checkEntries(value: unknown, entries: ReadonlyMap<string, Expected>): void {
  if (typeof value !== 'object' || value === null || Array.isArray(value)) throw new TypeError('must be an object');
  for (const [key, entry] of Object.entries(value)) {
    const expected = entries.get(key);
    if (!expected) throw new TypeError(`has the unknown key "${key}"`);
    if (entry !== undefined && !expected.holds(entry)) throw new TypeError(`"${key}" must be ${expected.is}`);
  }
}

export const parameters = {
  text(value: string): string {
    if (typeof value !== 'string') throw new TypeError('must be a string');
    return value;
  },

  /** The terminal reads a number beyond 32 bits as 0. */
  integer(value: number): number {
    if (!Number.isInteger(value)) throw new TypeError('must be an integer');
    if (Math.abs(value) > largestInteger) throw new RangeError('must fit 32 bits');
    return value;
  },

  /** Travels as one text with commas. The terminal would read an empty list as one empty entry. */
  commaList(value: readonly string[]): string {
    if (!isTexts(value)) throw new TypeError('must be a list of strings');
    if (value.length === 0) throw new RangeError('must not be empty');
    if (value.some((entry) => entry.includes(','))) throw new RangeError('must have no comma in an entry');
    return value.join(',');
  },

  /** Travels as JSON text: the terminal refuses an object. */
  orderFilter(value: OrderFilter): string {
    checkEntries(value, orderFilterEntries);
    return JSON.stringify(value);
  },

  securityClasses(value: readonly SecurityClass[]): string {
    if (!Array.isArray(value)) throw new TypeError('must be a list');
    value.forEach((each) => checkEntries(each, securityClassEntries));
    return JSON.stringify({ symbolFilter: value });
  },

  /** Travels as JSON text. Every key is required, because the terminal reads a missing one as an empty text. */
  orderLines(value: readonly OrderLine[]): string {
    if (!Array.isArray(value)) throw new TypeError('must be a list');
    for (const line of value as readonly OrderLine[]) {
      checkEntries(line, orderLineEntries);
      const missing = orderLineKeys.find((key) => line[key] === undefined);
      if (missing) throw new TypeError(`"${missing}" must be a string`);
    }
    return JSON.stringify(value);
  },

  /** Travels unchanged; the strategy reads it. */
  json(value: Json): Json {
    if (JSON.stringify(value) === undefined) throw new TypeError('must be JSON');
    return value;
  },

  /** "1" subscribes; any other text ends the subscription. */
  subscription(value: boolean): string {
    if (typeof value !== 'boolean') throw new TypeError('must be true or false');
    return value ? '1' : '0';
  },
};

export const answers = {
  text,
  texts: list(text),
  fundAccounts: list(records.fundAccount),
  candles: list(records.candle),
  tick: records.tick,
  securityEntries: list(records.securityEntry),
  securityDetails: list(records.securityDetail),
  entrustList: records.entrustList,
  executionList: records.executionList,
  positions: list(records.position),
  assets: list(records.asset),
  /** Undefined when the terminal has no such fund account. */
  tradableQty: optional(records.tradableQty),
  /** A number, not true or false. */
  permission: oneOrZero,
  nothing,
  placedOrder: records.placedOrder,
  listedOrders: list(records.listedOrder),
  cancelledOrders: list(records.cancelledOrder),
  strategyAnswer: records.strategyAnswer,
};
