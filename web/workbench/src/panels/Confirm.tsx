import { useEffect, useRef, type ReactNode } from 'react';

interface Props {
  question: ReactNode;
  onYes: () => void;
  onNo: () => void;
}

/** The step before something is sent for good. */
export function Confirm({ question, onYes, onNo }: Props) {
  const yes = useRef<HTMLButtonElement>(null);
  useEffect(() => yes.current?.focus(), []);
  return (
    <div
      className="confirm"
      role="group"
      aria-label="确认 confirm"
      // The key that led here may still be down; only a new one answers.
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
