import { Ajv } from 'ajv';
import { describe, expect, it } from 'vitest';
import { answers } from '../src/readings.js';
import type { JsonSchema, Shape } from '../src/shapes.js';

/** A value that the schema accepts. */
function sampleOf({ type, properties = {}, items, enum: values }: JsonSchema): unknown {
  if (values) return values[0];
  if (type === 'object') return Object.fromEntries(Object.entries(properties).map(([key, of]) => [key, sampleOf(of)]));
  if (type === 'array') return [sampleOf(items!), sampleOf(items!)];
  return { string: 'text', number: 1.5, integer: 1, boolean: true, any: null }[type ?? 'any'];
}

/** Copies of a value, each wrong in one place: a part that is missing, or of another type. */
function* wrongCopies(value: unknown, { properties, items, type, enum: values }: JsonSchema): Generator<unknown> {
  if (type === 'object') yield* ['text', [], null];
  if (type === 'array') yield* ['text', {}, null];
  if (type === 'string') yield* [1, null, {}];
  if (type === 'number' || type === 'boolean' || values) yield* ['1', null, {}];
  if (Array.isArray(value)) for (const wrong of wrongCopies(value[1], items!)) yield [value[0], wrong];
  for (const [key, property] of Object.entries(properties ?? {})) {
    const { [key]: part, ...rest } = value as Record<string, unknown>;
    yield rest;
    for (const wrong of wrongCopies(part, property)) yield { ...rest, [key]: wrong };
  }
}

const accepts = (shape: Shape<unknown>, data: unknown) => {
  try {
    shape(data);
    return true;
  } catch {
    return false;
  }
};

describe.each(Object.entries<Shape<unknown>>(answers))('the schema of %s', (name, shape) => {
  const validate = new Ajv().compile(shape.schema);
  const sample = sampleOf(shape.schema);

  it('accepts what the shape accepts', () => {
    expect(validate(sample)).toBe(true);
    expect(accepts(shape, sample)).toBe(true);
  });

  it('refuses what the shape refuses', () => {
    const copies = [...wrongCopies(sample, shape.schema)];
    const different = copies.filter((copy) => accepts(shape, copy) !== validate(copy));
    expect(different).toEqual([]);
    if (name !== 'nothing') expect(copies.some((copy) => !validate(copy))).toBe(true);
  });

  it('says whether the answer may be missing', () => {
    expect(accepts(shape, undefined)).toBe(shape.optional === true);
  });
});
