import { useEffect, useRef, type ReactNode } from 'react';

interface Props {
  question: ReactNode;
  onYes: () => void;
  onNo: () => void;
}

/** Asks for confirmation before a call is sent. */
export function Confirm({ question, onYes, onNo }: Props) {
  const yes = useRef<HTMLButtonElement>(null);
  useEffect(() => yes.current?.focus(), []);
  return (
    <div
      className="confirm"
      role="group"
      aria-label="确认 confirm"
      // The key that opened this may still be held down. Its repeats must not confirm.
      onKeyDown={(event) => event.repeat && event.preventDefault()}
    >
      <p>{question}</p>
      <div className="tools">
        <button type="button" ref={yes} onClick={onYes}>
          确认发送 Confirm
        </button>
        <button type="button" className="plain" onClick={onNo}>
          返回 Back
        </button>
      </div>
    </div>
  );
}
