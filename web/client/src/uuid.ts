/** Makes identifiers that no other page, and no earlier load of this page, has used. */
export function uuidSource(source: Crypto | undefined = globalThis.crypto): () => string {
  // randomUUID exists only in secure contexts; a terminal may well serve its pages from elsewhere. Node 18 has no global
  // crypto at all. Identifiers need not be secret.
  const page = typeof source?.randomUUID === 'function' ? source.randomUUID() : randomHex(source);
  let calls = 0;
  return () => `${page}-${++calls}`;
}

function randomHex(source: Crypto | undefined): string {
  const bytes = source?.getRandomValues(new Uint8Array(16)) ?? Array.from({ length: 16 }, randomByte);
  return Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join('');
}

function randomByte(): number {
  return Math.floor(Math.random() * 256);
}
