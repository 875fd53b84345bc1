import { useQuery } from '@tanstack/react-query';
import type { Answered } from './useAnswer';

/** The kinds of answers that parts of the desk share under a key. */
export type AskKey = readonly [what: string, ...args: unknown[]];

/** The name of the key under which answers are shared that hold as long as the login does. */
const lasting = new Set(['accounts', 'traders', 'token', 'login', 'securities', 'securityDetails', 'setting']);

/**
 * The answer to a query, asked for when the component is shown. Parts of the desk with the same key share one answer.
 * Answers that may change with time are asked for again when the component is shown again.
 */
export function useAsk<T>(
  key: AskKey,
  ask: (signal: AbortSignal) => Promise<T>,
  { enabled = true }: { enabled?: boolean } = {},
): Answered<T> & { again: () => void } {
  const { data, error, isFetching, refetch } = useQuery({
    queryKey: key,
    queryFn: ({ signal }) => ask(signal),
    enabled,
    staleTime: lasting.has(key[0]) ? Infinity : 0,
  });
  return { data, error: error ?? undefined, waiting: isFetching, again: () => void refetch() };
}
