import type { ReactNode } from 'react';

interface Props {
  checked: boolean;
  onChange: (checked: boolean) => void;
  disabled?: boolean;
  testId?: string;
  children: ReactNode;
}

/** Turns something on and off at once, unlike a checkbox of a form. */
export function Switch({ checked, onChange, disabled, testId, children }: Props) {
  return (
    <label className="inline switch">
      <input
        type="checkbox"
        role="switch"
        checked={checked}
        disabled={disabled}
        data-testid={testId}
        onChange={(event) => onChange(event.target.checked)}
      />
      {children}
    </label>
  );
}
