import { codes, type CodeKind } from './codes';
import { common } from './common';
import { fields, type FieldKey } from './fields';
import { panels } from './panels';
import type { InOneLanguage, TextTable } from './table';
import { trading } from './trading';

export type { CodeKind, FieldKey };

export const languages = ['zh', 'en'] as const;
export type Language = (typeof languages)[number];

/** What a language is called in the language itself. */
export const languageNames: Readonly<Record<Language, string>> = { zh: '中文', en: 'English' };

/** The locale of numbers and dates, and of the page's `lang`. */
export const locales: Readonly<Record<Language, string>> = { zh: 'zh-CN', en: 'en' };

type Merged = typeof common & typeof panels & typeof trading;

export interface Texts extends InOneLanguage<Merged> {
  readonly language: Language;
  /** The name of a field of the terminal's records. */
  field(key: FieldKey): string;
  /** The name of a code. A code without a name stays as it is, or is called `otherwise`. */
  code(kind: CodeKind, code: string, otherwise?: string): string;
}

function inLanguage<Table extends TextTable>(table: Table, at: number): InOneLanguage<Table> {
  return Object.fromEntries(Object.entries(table).map(([key, text]) => [key, text[at]])) as InOneLanguage<Table>;
}

function textsIn(language: Language): Texts {
  const at = languages.indexOf(language);
  return {
    ...inLanguage(common, at),
    ...inLanguage(panels, at),
    ...inLanguage(trading, at),
    language,
    field: (key) => fields[key][at]!,
    code: (kind, code, otherwise = code) =>
      (codes[kind] as Readonly<Record<string, readonly string[]>>)[code]?.[at] ?? otherwise,
  };
}

const all: Readonly<Record<Language, Texts>> = { zh: textsIn('zh'), en: textsIn('en') };

export function textsOf(language: Language): Texts {
  return all[language];
}
