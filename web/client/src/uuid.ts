/** Makes identifiers that no other page, and no earlier load of this page, has used. */
export function uuidSource(source: Crypto = globalThis.crypto): () => string {
  // randomUUID exists only in secure contexts; a terminal may well serve its pages from elsewhere.
  const page = typeof source.randomUUID === 'function' ? source.randomUUID() : randomHex(source);
  let calls = 0;
  return () => `${page}-${++calls}`;
}

function randomHex(source: Crypto): string {
  const bytes = source.getRandomValues(new Uint8Array(16));
  return Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join('');
}
