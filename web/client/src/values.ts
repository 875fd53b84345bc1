import type { Cell } from './records.js';
import type { Json } from './shapes.js';

/** Reads cells, and computes with amounts, which stay texts: floating-point numbers would lose cents. */

// ---- Cells ---------------------------------------------------------------------------------------------------------

/** The text that the terminal shows in a cell; the empty text when there is no value. */
export function displayText({ displayRole }: Cell): string {
  if (displayRole === null) return '';
  return typeof displayRole === 'object' ? JSON.stringify(displayRole) : String(displayRole);
}

/** The value behind a cell; null when there is none. */
export function rawValue<Value extends Json>({ userRole }: Cell<Value>): Value | null {
  return userRole;
}

/** The number behind a cell, also when it travels as text. Undefined when the value is no number. */
export function rawNumber({ userRole }: Cell): number | undefined {
  if (typeof userRole === 'number') return userRole;
  return typeof userRole === 'string' && amountForm.test(userRole) ? Number(userRole) : undefined;
}

// ---- Amounts -------------------------------------------------------------------------------------------------------

const amountForm = /^([+-]?)(\d+)(?:\.(\d+))?$/;

/** An amount in units of its last decimal. */
interface Units {
  units: bigint;
  decimals: number;
}

function unitsOf(amount: string): Units {
  const [, sign, whole, fraction = ''] = amountForm.exec(amount) ?? [];
  if (whole === undefined) throw new TypeError(`"${amount}" is no amount`);
  return { units: BigInt(`${sign === '-' ? '-' : ''}${whole}${fraction}`), decimals: fraction.length };
}

const withDecimals = ({ units, decimals }: Units, wanted: number): bigint => units * 10n ** BigInt(wanted - decimals);

function textOf(units: bigint, decimals: number): string {
  const digits = String(units < 0n ? -units : units).padStart(decimals + 1, '0');
  const whole = digits.slice(0, digits.length - decimals);
  return `${units < 0n ? '-' : ''}${whole}${decimals > 0 ? `.${digits.slice(-decimals)}` : ''}`;
}

/**
 * Orders two amounts: less than 0 when the first is the smaller one, 0 when they are equal, more than 0 otherwise.
 * @throws TypeError when a text is no decimal number
 */
export function compareAmounts(one: string, other: string): number {
  const [first, second] = [unitsOf(one), unitsOf(other)];
  const decimals = Math.max(first.decimals, second.decimals);
  const difference = withDecimals(first, decimals) - withDecimals(second, decimals);
  return difference < 0n ? -1 : difference > 0n ? 1 : 0;
}

/**
 * The exact sum, with as many decimals as the amount that has the most; "0" without amounts.
 * @throws TypeError when a text is no decimal number
 */
export function addAmounts(...amounts: readonly string[]): string {
  const all = amounts.map(unitsOf);
  const decimals = Math.max(0, ...all.map((amount) => amount.decimals));
  return textOf(
    all.reduce((sum, amount) => sum + withDecimals(amount, decimals), 0n),
    decimals,
  );
}

export interface AmountFormat {
  /** How many decimals to show; further ones are rounded, a half away from zero. Without it all are shown. */
  decimals?: number;
  /** What separates groups of three digits, "," unless you say otherwise. */
  separator?: string;
}

/**
 * The amount for people: `formatAmount('-1234567.8', { decimals: 2 })` is "-1,234,567.80".
 * @throws TypeError when a text is no decimal number
 */
export function formatAmount(amount: string, { decimals, separator = ',' }: AmountFormat = {}): string {
  const exact = unitsOf(amount);
  const text = decimals === undefined ? textOf(exact.units, exact.decimals) : rounded(exact, decimals);
  const [whole, fraction] = text.split('.') as [string, string?];
  const grouped = whole.replace(/\B(?=(?:\d{3})+$)/g, separator);
  return fraction === undefined ? grouped : `${grouped}.${fraction}`;
}

function rounded(amount: Units, decimals: number): string {
  if (amount.decimals <= decimals) return textOf(withDecimals(amount, decimals), decimals);
  const divisor = 10n ** BigInt(amount.decimals - decimals);
  const half = amount.units < 0n ? -divisor / 2n : divisor / 2n;
  return textOf((amount.units + half) / divisor, decimals);
}
