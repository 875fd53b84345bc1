import { webcrypto } from 'node:crypto';
import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { uuidSource } from '../src/uuid.js';

const full = webcrypto as unknown as Crypto;
const insecureContext = { getRandomValues: full.getRandomValues.bind(full) } as Crypto;

afterEach(() => vi.unstubAllGlobals());

describe.each([
  ['a secure context', full],
  ['an insecure context', insecureContext],
  ['Node 18, which has no global crypto', undefined],
])('identifiers in %s', (_, source) => {
  beforeEach(() => void vi.stubGlobal('crypto', source));

  it('never repeat, on one page or over several', () => {
    const made = new Set<string>();
    for (let page = 0; page < 50; ++page) {
      const next = uuidSource();
      for (let call = 0; call < 20; ++call) made.add(next());
    }
    expect(made.size).toBe(1000);
  });

  it('are long enough not to be guessed', () => {
    expect(uuidSource()().length).toBeGreaterThanOrEqual(32);
  });
});
