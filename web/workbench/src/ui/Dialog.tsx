import * as Radix from '@radix-ui/react-dialog';
import type { ReactNode } from 'react';
import { useTexts } from '../texts/useTexts';

interface Props {
  title: string;
  /** Explains what the dialog is for; read aloud when it opens. */
  description?: ReactNode;
  open: boolean;
  onClose: () => void;
  /** The buttons below the contents. Without them there is one that closes. */
  buttons?: ReactNode;
  testId?: string;
  children?: ReactNode;
}

/** A dialog above the desk. It keeps the focus until it is closed, and gives it back then. Escape closes it. */
export function Dialog({ title, description, open, onClose, buttons, testId, children }: Props) {
  const t = useTexts();
  return (
    <Radix.Root open={open} onOpenChange={(next) => !next && onClose()}>
      <Radix.Portal>
        <Radix.Overlay className="overlay" />
        <Radix.Content
          className="dialog"
          data-testid={testId}
          {...(description === undefined && { 'aria-describedby': undefined })}
          // The key that opened the dialog may still be held down. Its repeats must not press a button.
          onKeyDown={(event) => event.repeat && event.key === 'Enter' && event.preventDefault()}
        >
          <Radix.Title>{title}</Radix.Title>
          {description !== undefined && <Radix.Description asChild>{<div>{description}</div>}</Radix.Description>}
          {children}
          <div className="buttons">
            {buttons ?? (
              <button type="button" onClick={onClose}>
                {t.close}
              </button>
            )}
          </div>
        </Radix.Content>
      </Radix.Portal>
    </Radix.Root>
  );
}
