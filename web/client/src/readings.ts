import * as records from './records.js';
import * as securities from './securities.js';
import { keysOf, list, nothing, oneOrZero, optional, text } from './shapes.js';
import type { Json, JsonSchema, Shape } from './shapes.js';
import { candle, orderStatuses, priceTypes, securityTypes, sides, tick } from './vocabulary.js';
import type { Candle, SimulatorVocabulary, Tick, Vocabulary } from './vocabulary.js';

/**
 * How values travel: `parameters` turn arguments into the form that the terminal reads, `answers` check answers before a
 * page gets them as their type. Both throw on a value of the wrong form.
 */

/** Conditions on orders and executions, each a list of accepted values. A missing or empty list sets no condition. */
export interface OrderFilter<V extends Vocabulary = SimulatorVocabulary> {
  /** Fund accounts. If the terminal knows none of them, the answer has the orders of all accounts. */
  readonly fundAccount?: readonly string[];
  /** Symbols, such as "609801.SH". */
  readonly symbol?: readonly string[];
  /** Identifiers of traders, as `getTraderList` tells them. */
  readonly trader?: readonly string[];
  /** States of the order, as codes. */
  readonly orderStatus?: readonly V['orderStatus'][];
  /** Tags that pages gave to their orders. */
  readonly orderSource?: readonly string[];
  /** Instances of strategies. */
  readonly instanceID?: readonly string[];
}

/** A class of securities. The terminal decides which securities it holds. A missing entry sets no condition. */
export interface SecurityClass<V extends Vocabulary = SimulatorVocabulary> {
  /** Type of the securities, a code. */
  readonly securityType?: V['securityType'];
  /** Sub-types, codes of the terminal. */
  readonly securitySubType?: readonly string[];
  /** Boards, codes of the terminal. */
  readonly securityPost?: readonly string[];
}

/** An order of a list. All values are texts, also quantity and price. */
export interface OrderLine<V extends Vocabulary = SimulatorVocabulary> {
  /** The symbol, such as "609801.SH". */
  readonly symbol: string;
  /** The exchange of the security, such as "SH". */
  readonly exchange: string;
  /** Side as a code. */
  readonly orderSide: V['side'];
  /** Price type as a code. */
  readonly priceType: V['priceType'];
  /** Limit in the currency of the security: a number as text, such as "18.36". */
  readonly price: string;
  /** Quantity in shares, bonds or contracts: a whole number as text, such as "100". Any other text arrives as 0. */
  readonly qty: string;
}

/** What a page passes, by the reading that the table of calls names. */
export interface ArgumentTypes<V extends Vocabulary = SimulatorVocabulary> {
  text: string;
  side: V['side'];
  priceType: V['priceType'];
  integer: number;
  commaList: readonly string[];
  orderFilter: OrderFilter<V>;
  securityClasses: readonly SecurityClass<V>[];
  orderLines: readonly OrderLine<V>[];
  json: Json;
  subscription: boolean;
}

/** What a page gets, by the answer that the table of calls names. */
export interface AnswerTypes<V extends Vocabulary = SimulatorVocabulary> {
  text: string;
  texts: string[];
  nothing: void;
  /** A number, not true or false. */
  permission: 0 | 1;
  fundAccounts: securities.FundAccount[];
  securityEntries: securities.SecurityEntry[];
  securityDetails: securities.SecurityDetail<V>[];
  /** Empty when the terminal does not know the symbol. */
  tick: Partial<Tick<V>>;
  candles: Candle<V>[];
  entrustList: records.EntrustList<V>;
  executionList: records.ExecutionList<V>;
  positions: records.Position[];
  assets: records.Asset[];
  /** Undefined when the terminal has no such fund account. */
  tradableQty: records.TradableQty | undefined;
  placedOrder: records.PlacedOrder<V>;
  listedOrders: records.ListedOrder<V>[];
  cancelledOrders: records.CancelledOrder[];
  strategyAnswer: records.StrategyAnswer;
}

// ---- Arguments -----------------------------------------------------------------------------------------------------

const largestInteger = 2 ** 31 - 1;

const isText = (value: unknown) => typeof value === 'string';
const isTexts = (value: unknown) => Array.isArray(value) && value.every(isText);

interface Expected {
  holds: (value: unknown) => boolean;
  is: string;
  schema: JsonSchema;
}

const aText: Expected = { holds: isText, is: 'a string', schema: { type: 'string' } };
const texts: Expected = { holds: isTexts, is: 'a list of strings', schema: list(text).schema };

const codeSchema = (codes: Readonly<Record<string, string>>): JsonSchema => ({
  type: 'string',
  examples: Object.values(codes),
});
const aCode = (codes: Readonly<Record<string, string>>): Expected => ({ ...aText, schema: codeSchema(codes) });

type Entries<T> = { readonly [Key in keyof T]-?: Expected };

const orderFilterEntries: Entries<OrderFilter> = {
  fundAccount: texts,
  symbol: texts,
  trader: texts,
  orderStatus: { ...texts, schema: { type: 'array', items: codeSchema(orderStatuses) } },
  orderSource: texts,
  instanceID: texts,
};
const securityClassEntries: Entries<SecurityClass> = {
  securityType: aCode(securityTypes),
  securitySubType: texts,
  securityPost: texts,
};
const orderLineEntries: Entries<OrderLine> = {
  symbol: aText,
  exchange: aText,
  orderSide: aCode(sides),
  priceType: aCode(priceTypes),
  price: aText,
  qty: aText,
};

export const orderFilterKeys = keysOf(orderFilterEntries);
export const orderLineKeys = keysOf(orderLineEntries);

/** The terminal ignores unknown keys and unreadable values, so a mistake would go unnoticed there. */
function checkEntries(value: unknown, entries: Readonly<Record<string, Expected>>): void {
  if (typeof value !== 'object' || value === null || Array.isArray(value)) throw new TypeError('must be an object');
  for (const [key, entry] of Object.entries(value)) {
    const expected = Object.prototype.hasOwnProperty.call(entries, key) ? entries[key] : undefined;
    if (!expected) throw new TypeError(`has the unknown key "${key}"`);
    if (entry !== undefined && !expected.holds(entry)) throw new TypeError(`"${key}" must be ${expected.is}`);
  }
}

function entriesSchema(title: string, entries: Readonly<Record<string, Expected>>, required: readonly string[]) {
  const properties = Object.fromEntries(Object.entries(entries).map(([key, { schema }]) => [key, schema]));
  return { title, type: 'object', properties, required, additionalProperties: false } satisfies JsonSchema;
}

function jsonText(contentSchema: JsonSchema): JsonSchema {
  return { type: 'string', description: 'JSON as a text.', contentMediaType: 'application/json', contentSchema };
}

/** Turns an argument into what travels. */
export interface Parameter<T> {
  (value: T): Json;
  /** How the library reads it: docs/protocol.md explains these words. */
  readonly reading: 'text' | 'integer' | 'list' | 'JSON' | 'any';
  /** What travels. */
  readonly wire: JsonSchema;
}

function parameter<T>(reading: Parameter<T>['reading'], wire: JsonSchema, write: (value: T) => Json): Parameter<T> {
  return Object.assign(write, { reading, wire });
}

const textParameter = (schema: JsonSchema) =>
  parameter('text', schema, (value: string) => {
    if (typeof value !== 'string') throw new TypeError('must be a string');
    return value;
  });

export const parameters: { readonly [Name in keyof ArgumentTypes]: Parameter<ArgumentTypes[Name]> } = {
  text: textParameter({ type: 'string' }),
  side: textParameter(codeSchema(sides)),
  priceType: textParameter(codeSchema(priceTypes)),

  /** The terminal reads a number beyond 32 bits as 0. */
  integer: parameter('integer', { type: 'integer', minimum: -largestInteger, maximum: largestInteger }, (value) => {
    if (!Number.isInteger(value)) throw new TypeError('must be an integer');
    if (Math.abs(value) > largestInteger) throw new RangeError('must fit 32 bits');
    return value;
  }),

  /** Travels as one text with commas. The terminal would read an empty list as one empty entry. */
  commaList: parameter('list', { type: 'string', description: 'The entries with commas between them.' }, (value) => {
    if (!isTexts(value)) throw new TypeError('must be a list of strings');
    if (value.length === 0) throw new RangeError('must not be empty');
    if (value.some((entry) => entry.includes(','))) throw new RangeError('must have no comma in an entry');
    return value.join(',');
  }),

  /** Travels as JSON text: the terminal refuses an object. */
  orderFilter: parameter('JSON', jsonText(entriesSchema('OrderFilter', orderFilterEntries, [])), (value) => {
    checkEntries(value, orderFilterEntries);
    return JSON.stringify(value);
  }),

  securityClasses: parameter(
    'JSON',
    jsonText({
      type: 'object',
      properties: { symbolFilter: { type: 'array', items: entriesSchema('SecurityClass', securityClassEntries, []) } },
      required: ['symbolFilter'],
    }),
    (value) => {
      if (!Array.isArray(value)) throw new TypeError('must be a list');
      value.forEach((each) => checkEntries(each, securityClassEntries));
      return JSON.stringify({ symbolFilter: value });
    },
  ),

  /** Travels as JSON text. Every key is required, because the terminal reads a missing one as an empty text. */
  orderLines: parameter(
    'text',
    jsonText({ type: 'array', items: entriesSchema('OrderLine', orderLineEntries, orderLineKeys) }),
    (value) => {
      if (!Array.isArray(value)) throw new TypeError('must be a list');
      for (const line of value) {
        checkEntries(line, orderLineEntries);
        const missing = orderLineKeys.find((key) => line[key] === undefined);
        if (missing) throw new TypeError(`"${missing}" must be a string`);
      }
      return JSON.stringify(value);
    },
  ),

  /** Travels unchanged; the strategy reads it. */
  json: parameter('any', {}, (value) => {
    if (JSON.stringify(value) === undefined) throw new TypeError('must be JSON');
    return value;
  }),

  /** "1" subscribes; any other text ends the subscription. */
  subscription: parameter(
    'text',
    { type: 'string', description: 'True is "1", false is "0".', enum: ['1', '0'] },
    (value) => {
      if (typeof value !== 'boolean') throw new TypeError('must be true or false');
      return value ? '1' : '0';
    },
  ),
};

// ---- Answers -------------------------------------------------------------------------------------------------------

export const answers: { readonly [Name in keyof AnswerTypes]: Shape<AnswerTypes[Name]> } = {
  text,
  texts: list(text),
  nothing,
  permission: oneOrZero,
  fundAccounts: list(securities.fundAccount),
  securityEntries: list(securities.securityEntry),
  securityDetails: list(securities.securityDetail),
  tick,
  candles: list(candle),
  entrustList: records.entrustList,
  executionList: records.executionList,
  positions: list(records.position),
  assets: list(records.asset),
  tradableQty: optional(records.tradableQty),
  placedOrder: records.placedOrder,
  listedOrders: list(records.listedOrder),
  cancelledOrders: list(records.cancelledOrder),
  strategyAnswer: records.strategyAnswer,
};
