import { useId, type ReactNode } from 'react';
import { reasonOf } from '../errors';
import { useTexts } from '../texts/useTexts';
import type { Answered } from '../useAnswer';

interface Props {
  title: string;
  tools?: ReactNode;
  className?: string;
  testId?: string;
  children: ReactNode;
}

export function Panel({ title, tools, className = '', testId, children }: Props) {
  const id = useId();
  return (
    <section className={`panel ${className}`} aria-labelledby={id} data-testid={testId}>
      <header>
        <h2 id={id}>{title}</h2>
        {tools}
      </header>
      {children}
    </section>
  );
}

/** Shows the answer of a call, or the state of the call while there is none. */
export function Outcome<T>({ of, children }: { of: Answered<T>; children: (data: T) => ReactNode }) {
  const t = useTexts();
  if (of.error) {
    return (
      <p className="problem" role="alert">
        {reasonOf(of.error, t)}
      </p>
    );
  }
  if (of.data === undefined) return <p className="quiet">{of.waiting ? t.waiting : t.notAskedYet}</p>;
  return <>{children(of.data)}</>;
}
