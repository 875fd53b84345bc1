/** What a reply says about its call. */
export interface Envelope {
  code?: unknown;
  uuid?: unknown;
}

const codeKey = '{"code":';
const uuidKey = '"uuid":';

/**
 * Reads the envelope of a reply. The terminal writes the code first and the identifier last, so that a long answer
 * between them need not be read.
 */
export function envelopeOf(reply: unknown): Envelope | undefined {
  if (typeof reply !== 'string') return undefined;
  return endsOf(reply) ?? wholeOf(reply);
}

function endsOf(reply: string): Envelope | undefined {
  const code = /^\{"code":("[^"\\]*"),/.exec(reply.slice(0, 64))?.[1];
  const at = reply.lastIndexOf(uuidKey);
  if (code === undefined || at < codeKey.length) return undefined;
  const uuid: unknown = parsed(reply.slice(at + uuidKey.length, -1));
  return typeof uuid === 'string' && reply.endsWith('}') ? { code: JSON.parse(code) as string, uuid } : undefined;
}

function wholeOf(reply: string): Envelope | undefined {
  return (parsed(reply) as Envelope | null | undefined) ?? undefined;
}

function parsed(text: string): unknown {
  try {
    return JSON.parse(text);
  } catch {
    return undefined;
  }
}
