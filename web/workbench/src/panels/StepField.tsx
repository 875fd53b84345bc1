import type { KeyboardEvent, ReactNode } from 'react';

interface Props {
  name: string;
  label: ReactNode;
  value: string;
  disabled?: boolean;
  onChange: (text: string) => void;
  /** The text so many steps on. */
  stepped: (steps: number) => string;
}

const steps: Readonly<Record<string, number>> = { ArrowUp: 1, ArrowDown: -1, PageUp: 10, PageDown: -10 };

/** A number as text, which arrow and page keys change in steps. */
export function StepField({ name, label, value, disabled = false, onChange, stepped }: Props) {
  function step(event: KeyboardEvent<HTMLInputElement>) {
    const count = steps[event.key];
    if (count === undefined || event.altKey || event.ctrlKey || event.metaKey) return;
    event.preventDefault();
    onChange(stepped(count));
  }
  return (
    <label>
      {label}
      <input
        name={name}
        className="number"
        value={value}
        disabled={disabled}
        inputMode="decimal"
        autoComplete="off"
        spellCheck={false}
        onKeyDown={step}
        onChange={(event) => onChange(event.target.value.trim())}
      />
    </label>
  );
}
