import { webcrypto } from 'node:crypto';
import { describe, expect, it } from 'vitest';
import { uuidSource } from '../src/uuid.js';

const full = webcrypto as unknown as Crypto;
const insecureContext = { getRandomValues: full.getRandomValues.bind(full) } as Crypto;

describe.each([
  ['a secure context', full],
  ['an insecure context', insecureContext],
])('identifiers in %s', (_, source) => {
  it('never repeat, on one page or over several', () => {
    const made = new Set<string>();
    for (let page = 0; page < 50; ++page) {
      const next = uuidSource(source);
      for (let call = 0; call < 20; ++call) made.add(next());
    }
    expect(made.size).toBe(1000);
  });

  it('are long enough not to be guessed', () => {
    expect(uuidSource(source)().length).toBeGreaterThanOrEqual(32);
  });
});
