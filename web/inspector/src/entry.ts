/** One thing that has passed in the simulator, as it tells it. What an entry does not have is left out. */
export interface Entry {
  kind: EntryKind;
  /** From 1, without gaps. */
  number: number;
  /** µs since the simulator began. */
  time?: number;
  /** ms since 1970 in exchange time. */
  exchangeTime?: number;
  /** The number of the call to which this belongs. */
  call?: number;
  /** The number of the entry that this one ends: a call that is done, an event that is delivered. */
  of?: number;
  page?: number;
  name?: string;
  uuid?: string;
  messageId?: string;
  isReply?: boolean;
  isHandled?: boolean;
  /** Bytes of the WebSocket message. */
  size?: number;
  /** µs that the call held the user-interface thread, or from the broadcast to the end of writing. */
  duration?: number;
  /** Of the records of an answer. */
  count?: number;
  args?: unknown[];
  /** Long texts and lists in the arguments were cut. */
  cut?: boolean;
}

export type EntryKind =
  | 'pageOpened'
  | 'pageClosed'
  | 'call'
  | 'callDone'
  | 'event'
  | 'eventDelivered'
  | 'hostCall'
  | 'hostRequest'
  | 'hostAnswer'
  | 'hostEvent'
  | 'quote'
  | 'command';

/** Entries that this reader was too slow for. */
export interface Lost {
  kind: 'lost';
  count: number;
}

/** What the list shows: calls that are done and events that are delivered are part of their rows. */
export const rowKinds = ['page', 'call', 'reply', 'push', 'command', 'host', 'bus', 'quote'] as const;
export type RowKind = (typeof rowKinds)[number];

const kindOfRow: Readonly<Partial<Record<EntryKind, RowKind>>> = {
  pageOpened: 'page',
  pageClosed: 'page',
  call: 'call',
  hostCall: 'host',
  hostRequest: 'bus',
  hostAnswer: 'bus',
  hostEvent: 'bus',
  quote: 'quote',
  command: 'command',
};

/** A line of the list. */
export interface Row {
  kind: RowKind;
  entry: Entry;
  /** The end of a call, or the delivery of an event. */
  end?: Entry;
  /** The reply to a call. */
  reply?: Row;
}

export function rowOf(entry: Entry): Row | undefined {
  const kind = entry.kind === 'event' ? (entry.isReply ? 'reply' : 'push') : kindOfRow[entry.kind];
  return kind && { kind, entry };
}

/** Characters of the arguments. */
export function textLength(value: unknown): number {
  if (typeof value === 'string') return value.length;
  if (typeof value !== 'object' || value === null) return 4;
  let length = 0;
  for (const part of Object.values(value)) length += textLength(part);
  return length;
}

/** µs from the call to the end of writing its reply; undefined before that. */
export function answerTime({ entry, reply }: Row): number | undefined {
  return reply?.end && (reply.end.time ?? 0) - (entry.time ?? 0);
}
