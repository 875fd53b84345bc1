import * as Radix from '@radix-ui/react-tabs';
import { Activity, useState, type ReactNode } from 'react';
import { useTexts } from '../texts/useTexts';
import { Boundary } from './Boundary';

export interface Tab {
  /** Stays the same in every language. */
  id: string;
  title: string;
  className?: string;
  content: ReactNode;
}

interface Props {
  label: string;
  tabs: readonly Tab[];
  current: string;
  onChange: (id: string) => void;
}

/**
 * Shows one view at a time. The first opening creates a view. A hidden view keeps its state, such as what was typed, but
 * its effects are undone as if it were gone: it follows nothing and asks for nothing. Showing it again starts them anew.
 */
export function Tabs({ label, tabs, current, onChange }: Props) {
  const [opened, setOpened] = useState<ReadonlySet<string>>(new Set());
  if (!opened.has(current)) setOpened(new Set(opened).add(current));

  return (
    <Radix.Root className="stage" value={current} onValueChange={onChange}>
      <Radix.List className="tabs" aria-label={label}>
        {tabs.map(({ id, title }) => (
          <Radix.Trigger key={id} value={id} data-testid={`tab-${id}`}>
            {title}
          </Radix.Trigger>
        ))}
      </Radix.List>
      {tabs.map(({ id, className = '', content }) => (
        <Radix.Content
          key={id}
          value={id}
          forceMount
          hidden={id !== current}
          tabIndex={-1}
          className={`view ${className}`}
          data-testid={`view-${id}`}
        >
          {opened.has(id) && (
            <Boundary instead={(error) => <Broken error={error} />}>
              <Activity mode={id === current ? 'visible' : 'hidden'}>{content}</Activity>
            </Boundary>
          )}
        </Radix.Content>
      ))}
    </Radix.Root>
  );
}

function Broken({ error }: { error: Error }) {
  const t = useTexts();
  return (
    <p className="problem" role="alert">
      {t.viewBroken} <code>{error.message}</code>
    </p>
  );
}
