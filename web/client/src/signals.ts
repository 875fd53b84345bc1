/** Why a signal was aborted. Browsers before 2022 do not tell, so they get what newer ones give by default. */
export function reasonOf(signal: AbortSignal): unknown {
  return signal.reason ?? new DOMException('This operation was aborted', 'AbortError');
}

/** Calls the listener when the signal is aborted, until the returned function is called. */
export function onAbort(signal: AbortSignal | undefined, listener: () => void): () => void {
  signal?.addEventListener('abort', listener, { once: true });
  return () => signal?.removeEventListener('abort', listener);
}
