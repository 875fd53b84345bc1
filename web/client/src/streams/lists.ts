import { ClosedError, NotSentError } from '../errors.js';
import type { CallOptions } from '../pendingCall.js';
import { Stream } from './stream.js';
import type { Terminal } from './terminal.js';
import type { Watch, WatchListener, WatchOptions } from './watch.js';

/** How the records of a kind are loaded, and what pushes do to them. */
export interface ListSource<Item> {
  /** The name of the watch, for errors. */
  readonly name: string;
  /** All records by identifier, the oldest first. */
  load(options: CallOptions): Promise<ReadonlyMap<string, Item>>;
  /** Listens to pushes. `refetch` loads the list anew: one call at a time, and once more if it was asked for meanwhile. */
  follow(stream: Stream<Item>, refetch: () => void): () => void;
}

/**
 * Keeps a list up to date. Pushes are listened to before the list is asked for. What arrives later, a push or a list, is
 * the newer state.
 */
export function watchList<Item>(
  terminal: Terminal,
  source: ListSource<Item>,
  listener?: WatchListener<Item>,
  options?: WatchOptions,
): Watch<Item> {
  const stream = new Stream<Item>(listener, options);
  const { link } = terminal;
  if (stream.isStopped) return stream;
  if (link.state === 'closed') {
    stream.breakOff(new NotSentError(source.name, '', 'the connection is closed'));
    return stream;
  }
  const asking = new AbortController();
  const load = async () => {
    try {
      stream.replace(await source.load({ signal: asking.signal }));
    } catch (error) {
      const isBroken = error instanceof ClosedError || link.state !== 'open';
      if (stream.isStopped || isBroken) return; // asked again when the connection is open
      stream.isNotReady(error);
      terminal.onError(error);
    }
  };
  const refetch = oneAtATime(load);
  stream.onStop(() => asking.abort());
  stream.onStop(source.follow(stream, refetch));
  stream.onStop(terminal.on('on_orderLoaded', refetch));
  stream.onStop(terminal.opened.add(refetch));
  stopWithConnection(terminal, stream, source.name);
  if (link.state === 'open') refetch();
  return stream;

  function oneAtATime(task: () => Promise<void>): () => void {
    let underWay = false;
    let again = false;
    return function trigger() {
      again = true;
      if (underWay) return;
      underWay = true;
      void (async () => {
        while (again && link.state === 'open' && !stream.isStopped) {
          again = false;
          await task();
        }
        underWay = false;
      })();
    };
  }
}

/** A watch ends with its connection: `close` ends it quietly, and a break for good lets its loops throw. */
export function stopWithConnection<Item>(terminal: Terminal, stream: Stream<Item>, name: string): void {
  stream.onStop(terminal.ended.add(stream.stop));
  stream.onStop(
    terminal.closed.add(({ willReconnect }) => {
      if (!willReconnect) stream.breakOff(new ClosedError(name, ''));
    }),
  );
}
