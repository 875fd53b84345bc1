import { flag, number, record, text, type Fields } from './shapes.js';
import type { SimulatorVocabulary, Vocabulary } from './vocabulary.js';

/** Fund accounts, and what they can trade. */

const fundAccountFields = {
  /** The identifier that calls take, such as "880010001". */
  fundAccount: text,
  /** The name for people. */
  fundAccountName: text,
};

/** A fund account. */
export interface FundAccount extends Fields<typeof fundAccountFields> {}

const securityEntryFields = {
  /** The symbol that calls take, such as "609801.SH". */
  symbol: text,
  /** The name for people. */
  displayName: text,
  /** The code by which people search for the name, such as "DLZZ". */
  spellName: text,
};

/** A security with its names. */
export interface SecurityEntry extends Fields<typeof securityEntryFields> {}

const securityDetailFields = {
  /** The symbol, such as "609801.SH". Empty when the terminal does not know the one that was asked for. */
  symbol: text,
  /** The exchange's own code of the security, such as "609801". Records of orders and positions have this one. */
  securityId: text,
  /** The exchange, such as "SH", as calls take it. */
  exchange: text,
  /** The name for people. */
  displayName: text,
  /** The code by which people search for the name. */
  spellName: text,
  /** How many shares, bonds or contracts a quantity of 1 stands for. */
  qtyUnit: number,
  /** Number of decimals of a price. */
  precision: number,
  /** The smallest step of a price, in the currency of the security, such as 0.01. */
  priceUnit: number,
  /** The step in which quantities are shown. */
  qtyStep: number,
  /** The step of a quantity, in shares, bonds or contracts. It is no number of decimals, despite its name. */
  qtyPrecision: number,
  /** The smallest order, in shares, bonds or contracts: a number as text. */
  minQty: text,
  /** The largest order, in shares, bonds or contracts: a number as text. */
  maxQty: text,
  /** The type of the security, a code of the terminal. */
  securityType: text,
  /** The sub-type of the security, a code of the terminal. */
  securitySubType: text,
  /** Whether the day's prices have a lowest and a highest limit. */
  priceLimitType: flag,
  /** A bond's accrued interest for 100 of face value, in its currency. 0 for other securities. */
  stockInterest: number,
};

/** What can be traded, and how. The details of an unknown symbol are empty texts, 0 and false. */
export interface SecurityDetail<V extends Vocabulary = SimulatorVocabulary> extends Fields<
  typeof securityDetailFields
> {
  securityType: V['securityType'];
}

export const fundAccount = record<FundAccount>('FundAccount', fundAccountFields);
export const securityEntry = record<SecurityEntry>('SecurityEntry', securityEntryFields);
export const securityDetail = record<SecurityDetail>('SecurityDetail', securityDetailFields);
