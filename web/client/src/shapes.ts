/**
 * Building blocks that check an answer before a page gets it as its type. A shape returns the data unchanged, or throws a
 * TypeError that names the place of the wrong value.
 */

export type Json = null | boolean | number | string | Json[] | { [key: string]: Json };
export type JsonObject = { [key: string]: Json };

export type Shape<T> = (data: unknown) => T;

function within(place: string, error: unknown): TypeError {
  return new TypeError(place + (error as Error).message);
}

export function text(data: unknown): string {
  if (typeof data !== 'string') throw new TypeError(' is no text');
  return data;
}

export function number(data: unknown): number {
  if (typeof data !== 'number') throw new TypeError(' is no number');
  return data;
}

export function flag(data: unknown): boolean {
  if (typeof data !== 'boolean') throw new TypeError(' is neither true nor false');
  return data;
}

export function oneOrZero(data: unknown): 0 | 1 {
  if (data !== 0 && data !== 1) throw new TypeError(' is neither 1 nor 0');
  return data;
}

/** For replies that carry no data. */
export function nothing(): void {}

/** Any value, null included, but not undefined. */
export function json(data: unknown): Json {
  if (data === undefined) throw new TypeError(' is missing');
  return data as Json;
}

export function object(data: unknown): JsonObject {
  if (typeof data !== 'object' || data === null || Array.isArray(data)) throw new TypeError(' is no object');
  return data as JsonObject;
}

export function list<T>(item: Shape<T>): Shape<T[]> {
  return (data) => {
    if (!Array.isArray(data)) throw new TypeError(' is no list');
    data.forEach((entry, index) => {
      try {
        item(entry);
      } catch (error) {
        throw within(`[${index}]`, error);
      }
    });
    return data as T[];
  };
}

/** An object with these keys at least. */
export function record<T extends Record<string, unknown>>(shapes: { [Key in keyof T]: Shape<T[Key]> }): Shape<T> {
  const checks = Object.entries<Shape<unknown>>(shapes);
  return (data) => {
    const source = object(data);
    for (const [key, check] of checks) {
      try {
        check(source[key]);
      } catch (error) {
        throw within(`.${key}`, error);
      }
    }
    return source as T;
  };
}

/** The same shape under each of the keys. */
export function shapesOf<Key extends string, T>(keys: readonly Key[], shape: Shape<T>) {
  return Object.fromEntries(keys.map((key) => [key, shape])) as Record<Key, Shape<T>>;
}

export function optional<T>(shape: Shape<T>): Shape<T | undefined> {
  return (data) => (data === undefined ? undefined : shape(data));
}
