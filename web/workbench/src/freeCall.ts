import type { Json } from '@varnel/web-client';

/** Without a reason the text is JSON, but no array. */
export type ReadArguments = { ok: true; args: unknown[] } | { ok: false; reason?: string };

export type ReadJson = { ok: true; value: Json } | { ok: false };

export function readJson(text: string): ReadJson {
  try {
    return { ok: true, value: JSON.parse(text) as Json };
  } catch {
    return { ok: false };
  }
}

/** Reads the argument list of a call typed by hand. */
export function readArguments(text: string): ReadArguments {
  let value: unknown;
  try {
    value = JSON.parse(text);
  } catch (error) {
    return { ok: false, reason: (error as Error).message };
  }
  return Array.isArray(value) ? { ok: true, args: value } : { ok: false };
}

/** Formats a text that holds JSON; other texts stay unchanged. */
export function layOut(value: unknown): string {
  if (typeof value !== 'string') return JSON.stringify(value, null, 2) ?? String(value);
  try {
    return JSON.stringify(JSON.parse(value), null, 2);
  } catch {
    return value;
  }
}

/** The parts of a text with commas, without blanks around them. An empty text has no parts. */
export function commaParts(text: string): string[] {
  return text.trim() === '' ? [] : text.split(',').map((part) => part.trim());
}
