import type { Json } from '@varnel/web-client';

export type ReadArguments = { ok: true; args: unknown[] } | { ok: false; reason: string };

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
    return { ok: false, reason: `不是 JSON：${(error as Error).message}` };
  }
  return Array.isArray(value) ? { ok: true, args: value } : { ok: false, reason: '须为数组，例如 ["u1", 1]' };
}

/** Formats a text that holds JSON; other texts stay unchanged. */
export function layOut(value: unknown): string {
  if (typeof value !== 'string') return JSON.stringify(value, null, 2) ?? String(value);
  if (value === '') return '""（空应答 empty reply）';
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
