import { useEffect, useRef, type KeyboardEvent, type ReactNode } from 'react';
import { useTexts } from '../texts/useTexts';

interface Props {
  question: ReactNode;
  onYes: () => void;
  onNo: () => void;
}

/** Asks for confirmation before a call is sent. Escape goes back. */
export function Confirm({ question, onYes, onNo }: Props) {
  const t = useTexts();
  const yes = useRef<HTMLButtonElement>(null);
  useEffect(() => yes.current?.focus(), []);

  function press(event: KeyboardEvent<HTMLElement>) {
    // The key that opened this may still be held down. Its repeats must not confirm.
    if (event.repeat) event.preventDefault();
    if (event.key === 'Escape') onNo();
  }

  return (
    <div className="confirm" role="group" aria-label={t.confirmation} onKeyDown={press}>
      <p>{question}</p>
      <div className="tools">
        <button type="button" ref={yes} data-testid="confirm" onClick={onYes}>
          {t.confirmOrder}
        </button>
        <button type="button" className="plain" onClick={onNo}>
          {t.back}
        </button>
      </div>
    </div>
  );
}
