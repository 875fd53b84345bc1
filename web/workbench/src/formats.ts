import type { Json } from '@varnel/web-client';
import { locales, type Language } from './texts';
import { useTexts } from './texts/useTexts';

/** Stands for a value that is not there. */
export const missing = '—';

export interface Formats {
  /** A value of the terminal for display: a dash for null, formatted numbers, other texts unchanged. */
  value(value: Json | undefined): string;
  /** A number without decimals. */
  whole(value: number): string;
  /** A price with the decimals of its security. Zero means that there is none. */
  price(value: number | undefined, precision: number): string;
  /** A fraction as a percentage with its sign. */
  rate(value: Json | undefined): string;
  /** An amount of money with two decimals. */
  money(value: Json | undefined): string;
}

/** A text of the terminal that is a number, as one; other values unchanged. */
export function numberOf(value: Json | undefined): Json | undefined {
  return typeof value === 'string' && value.trim() !== '' && Number.isFinite(Number(value)) ? Number(value) : value;
}

function formatsIn(language: Language): Formats {
  const locale = locales[language];
  const figure = new Intl.NumberFormat(locale, { maximumFractionDigits: 4 });
  const whole = new Intl.NumberFormat(locale, { maximumFractionDigits: 0 });
  const money = new Intl.NumberFormat(locale, { minimumFractionDigits: 2, maximumFractionDigits: 2 });
  const percent = new Intl.NumberFormat(locale, {
    style: 'percent',
    minimumFractionDigits: 2,
    maximumFractionDigits: 2,
    signDisplay: 'exceptZero',
  });
  const prices = Array.from(
    { length: 9 },
    (_, digits) =>
      new Intl.NumberFormat(locale, {
        minimumFractionDigits: digits,
        maximumFractionDigits: digits,
        useGrouping: false,
      }),
  );
  const value = (given: Json | undefined) => {
    if (given === null || given === undefined) return missing;
    if (typeof given === 'number') return figure.format(given);
    return typeof given === 'object' ? JSON.stringify(given) : String(given);
  };
  return {
    value,
    whole: (given) => (Number.isFinite(given) ? whole.format(given) : missing),
    price: (given, precision) =>
      given && Number.isFinite(given) ? prices[Math.min(Math.max(precision, 0), 8)]!.format(given) : missing,
    rate: (given) => (typeof given === 'number' && Number.isFinite(given) ? percent.format(given) : value(given)),
    money: (given) => {
      const number = numberOf(given);
      return typeof number === 'number' ? money.format(number) : value(given);
    },
  };
}

const all: Readonly<Record<Language, Formats>> = { zh: formatsIn('zh'), en: formatsIn('en') };

export function formatsOf(language: Language): Formats {
  return all[language];
}

/** Numbers in the language of the desk. */
export function useFormats(): Formats {
  return formatsOf(useTexts().language);
}

/** Names the tone in which a number is shown: see `Tone` in theme.css. */
export function toneOf(value: Json | undefined): 'up' | 'down' | '' {
  const number = numberOf(value);
  return typeof number !== 'number' || !number ? '' : number > 0 ? 'up' : 'down';
}
