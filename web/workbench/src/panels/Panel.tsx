import { TimeoutError } from '@varnel/web-client';
import { useId, type ReactNode } from 'react';
import type { Answered } from '../useAnswer';

interface Props {
  title: string;
  hint: string;
  tools?: ReactNode;
  className?: string;
  testId?: string;
  children: ReactNode;
}

export function Panel({ title, hint, tools, className = '', testId, children }: Props) {
  const id = useId();
  return (
    <section className={`panel ${className}`} aria-labelledby={id} data-testid={testId}>
      <header>
        <h2 id={id}>
          {title} <small>{hint}</small>
        </h2>
        {tools}
      </header>
      {children}
    </section>
  );
}

/** Shows the answer of a call, or the state of the call while there is none. */
export function Outcome<T>({ of, children }: { of: Answered<T>; children: (data: T) => ReactNode }) {
  if (of.error) {
    const text =
      of.error instanceof TimeoutError ? `${of.error.timeoutMs / 1000} 秒内无应答 no answer` : of.error.message;
    return (
      <p className="problem" role="alert">
        {text}
      </p>
    );
  }
  if (of.data === undefined)
    return <p className="quiet">{of.waiting ? '等待应答 waiting…' : '尚未查询 not asked yet'}</p>;
  return <>{children(of.data)}</>;
}
