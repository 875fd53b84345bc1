/**
 * Building blocks that check an answer before a page gets it as its type. A shape returns the data unchanged, or throws a
 * TypeError that names the place of the wrong value. Each shape has a JSON Schema that says the same.
 */

export type Json = null | boolean | number | string | Json[] | { [key: string]: Json };
export type JsonObject = { [key: string]: Json };

/** The keywords of JSON Schema (draft 7) that are used here. */
export interface JsonSchema {
  /** The name of its type. */
  readonly title?: string;
  readonly description?: string;
  readonly examples?: readonly Json[];
  readonly type?: 'object' | 'array' | 'string' | 'number' | 'integer' | 'boolean';
  readonly properties?: Readonly<Record<string, JsonSchema>>;
  readonly required?: readonly string[];
  readonly additionalProperties?: false;
  readonly items?: JsonSchema;
  readonly enum?: readonly Json[];
  readonly minimum?: number;
  readonly maximum?: number;
  readonly minLength?: number;
  /** Of a text that holds JSON: "application/json", and the schema of what it holds. */
  readonly contentMediaType?: string;
  readonly contentSchema?: JsonSchema;
}

export interface Shape<T> {
  (data: unknown): T;
  readonly schema: JsonSchema;
  /** The value may be missing. */
  readonly optional?: true;
}

/** What the shapes of a record's fields promise. The comments of the fields stay with them. */
export type Fields<Shapes> = { [Key in keyof Shapes]: Shapes[Key] extends Shape<infer T> ? T : never };

function shape<T>(schema: JsonSchema, check: (data: unknown) => T): Shape<T> {
  return Object.assign(check, { schema });
}

function within(place: string, error: unknown): TypeError {
  return new TypeError(place + (error as Error).message);
}

export const text = shape({ type: 'string' }, (data): string => {
  if (typeof data !== 'string') throw new TypeError(' is no text');
  return data;
});

export const number = shape({ type: 'number' }, (data): number => {
  if (typeof data !== 'number') throw new TypeError(' is no number');
  return data;
});

export const flag = shape({ type: 'boolean' }, (data): boolean => {
  if (typeof data !== 'boolean') throw new TypeError(' is neither true nor false');
  return data;
});

export const oneOrZero = shape({ enum: [0, 1] }, (data): 0 | 1 => {
  if (data !== 0 && data !== 1) throw new TypeError(' is neither 1 nor 0');
  return data;
});

/** For replies that carry no data. */
export const nothing: Shape<void> = Object.assign(() => {}, { schema: {}, optional: true } as const);

/** Any value, null included, but not undefined. */
export const json = shape({}, (data): Json => {
  if (data === undefined) throw new TypeError(' is missing');
  return data as Json;
});

function anObject(data: unknown): object {
  if (typeof data !== 'object' || data === null || Array.isArray(data)) throw new TypeError(' is no object');
  return data;
}

/** An object with any keys. The title names its type. */
export function object<T extends object>(title: string): Shape<T> {
  return shape({ title, type: 'object' }, (data) => anObject(data) as T);
}

export function list<T>(item: Shape<T>): Shape<T[]> {
  return shape({ type: 'array', items: item.schema }, (data) => {
    if (!Array.isArray(data)) throw new TypeError(' is no list');
    data.forEach((entry, index) => {
      try {
        item(entry);
      } catch (error) {
        throw within(`[${index}]`, error);
      }
    });
    return data as T[];
  });
}

/** An object with these keys at least. The title names its type. */
export function record<T>(title: string, fields: { readonly [Key in keyof T]-?: Shape<unknown> }): Shape<T> {
  const checks = Object.entries<Shape<unknown>>(fields);
  const schema: JsonSchema = {
    title,
    type: 'object',
    properties: Object.fromEntries(checks.map(([key, field]) => [key, field.schema])),
    required: checks.filter(([, field]) => !field.optional).map(([key]) => key),
  };
  return shape(schema, (data) => {
    const source = anObject(data) as Record<string, unknown>;
    for (const [key, check] of checks) {
      try {
        check(source[key]);
      } catch (error) {
        throw within(`.${key}`, error);
      }
    }
    return source as T;
  });
}

export function optional<T>(wanted: Shape<T>): Shape<T | undefined> {
  const check = (data: unknown) => (data === undefined ? undefined : wanted(data));
  return Object.assign(check, { schema: wanted.schema, optional: true } as const);
}

/** The keys of an object in their order. */
export function keysOf<T extends object>(fields: T): readonly (keyof T & string)[] {
  return Object.keys(fields) as (keyof T & string)[];
}
