/** A text in each language of the desk. A text with parts is a function of them. */
export type Text = readonly [zh: string, en: string];
export type TextOf<Parts extends unknown[]> = readonly [
  zh: (...parts: Parts) => string,
  en: (...parts: Parts) => string,
];

/** A text with parts, such as a count. Both languages take the same parts. */
export function withParts<Parts extends unknown[]>(
  zh: (...parts: Parts) => string,
  en: (...parts: Parts) => string,
): TextOf<Parts> {
  return [zh, en];
}

/** A table of texts by key. A key without a text in one of the languages is a type error. */
export type TextTable = Readonly<Record<string, Text | TextOf<any[]>>>;

/** The texts of a table in one language. */
export type InOneLanguage<Table extends TextTable> = {
  readonly [Key in keyof Table]: Table[Key] extends TextOf<infer Parts> ? (...parts: Parts) => string : string;
};
