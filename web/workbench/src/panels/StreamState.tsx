import type { ReactNode } from 'react';
import { reasonOf } from '../errors';
import type { Watched } from '../live/useWatch';
import { useTexts } from '../texts/useTexts';

/** Shows what a stream has, or why it has nothing yet. */
export function StreamState({
  of: { isReady, error },
  children,
}: {
  of: Pick<Watched<unknown>, 'isReady' | 'error'>;
  children: ReactNode;
}) {
  const t = useTexts();
  if (error && !isReady)
    return (
      <p className="problem" role="alert">
        {reasonOf(error, t)}
      </p>
    );
  return isReady ? <>{children}</> : <p className="quiet">{t.waiting}</p>;
}
