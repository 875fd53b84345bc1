/**
 * How a value travels: `parameters` are written the way the terminal reads them, `answers` are checked before a page
 * gets them as their type. Both throw on a value that would not arrive as meant.
 */

export type Json = null | boolean | number | string | Json[] | { [key: string]: Json };
export type JsonObject = { [key: string]: Json };

export interface FundAccount {
  fundAccount: string;
  fundAccountName: string;
}

/** The fields of a candle are the quote service's; `candleFields` lists them. */
export type Candle = JsonObject;

const largestInteger = 2 ** 31 - 1;

export const parameters = {
  text(value: string): string {
    if (typeof value !== 'string') throw new TypeError('must be a string');
    return value;
  },

  /** The terminal reads what does not fit 32 bits as 0. */
  integer(value: number): number {
    if (!Number.isInteger(value)) throw new TypeError('must be an integer');
    if (Math.abs(value) > largestInteger) throw new RangeError('must fit 32 bits');
    return value;
  },
};

function text(data: unknown): string {
  if (typeof data !== 'string') throw new TypeError('resultData is no text');
  return data;
}

function list<Item>(item: (data: unknown) => Item): (data: unknown) => Item[] {
  return (data) => {
    if (!Array.isArray(data)) throw new TypeError('resultData is no list');
    return data.map((entry) => item(entry));
  };
}

function object(data: unknown): JsonObject {
  if (typeof data !== 'object' || data === null || Array.isArray(data)) throw new TypeError('an entry is no object');
  return data as JsonObject;
}

function fundAccount(data: unknown): FundAccount {
  const { fundAccount, fundAccountName } = object(data);
  return { fundAccount: text(fundAccount), fundAccountName: text(fundAccountName) };
}

export const answers = {
  text,
  texts: list(text),
  fundAccounts: list(fundAccount),
  candles: list<Candle>(object),
};
