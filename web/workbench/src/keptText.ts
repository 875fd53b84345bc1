/** The beginning of a text that is too long to keep. */
export class CutText {
  constructor(
    readonly text: string,
    /** Characters of the whole text. */
    readonly length: number,
  ) {}
}

/** What is kept of an argument: long texts and large objects are cut. */
export function kept(arg: unknown, longest: number): unknown {
  const text = typeof arg === 'object' && arg !== null ? (JSON.stringify(arg) ?? '') : arg;
  return typeof text === 'string' && text.length > longest ? new CutText(ownCopy(text, longest), text.length) : arg;
}

/** Bytes that a kept argument takes, with two for each character. */
export function bytesOf(arg: unknown): number {
  if (arg instanceof CutText) return 2 * arg.text.length;
  if (typeof arg === 'string') return 2 * arg.length;
  return typeof arg === 'object' && arg !== null ? 2 * (JSON.stringify(arg) ?? '').length : 8;
}

/** A part of a text refers to the whole of it, which then stays in memory. Joining and cutting again makes a copy. */
function ownCopy(text: string, length: number): string {
  return ` ${text.slice(0, length)}`.slice(1);
}
