import { useId, useState, type KeyboardEvent, type ReactNode } from 'react';

export interface Tab {
  title: string;
  hint: string;
  className: string;
  content: ReactNode;
}

const steps: Record<string, (at: number, count: number) => number> = {
  ArrowRight: (at, count) => (at + 1) % count,
  ArrowLeft: (at, count) => (at + count - 1) % count,
  Home: () => 0,
  End: (_, count) => count - 1,
};

/** Shows one view at a time. The first opening creates a view; from then on it keeps its state. */
export function Tabs({ label, tabs }: { label: string; tabs: readonly Tab[] }) {
  const id = useId();
  const [current, setCurrent] = useState(0);
  const [opened, setOpened] = useState<ReadonlySet<number>>(new Set([0]));

  function open(index: number) {
    setCurrent(index);
    setOpened((before) => new Set(before).add(index));
  }

  function move(event: KeyboardEvent<HTMLElement>) {
    const next = steps[event.key]?.(current, tabs.length);
    if (next === undefined) return;
    event.preventDefault();
    open(next);
    (event.currentTarget.children[next] as HTMLElement).focus();
  }

  return (
    <div className="stage">
      <div role="tablist" aria-label={label} className="tabs" onKeyDown={move}>
        {tabs.map(({ title, hint }, index) => (
          <button
            key={hint}
            type="button"
            role="tab"
            id={`${id}tab${index}`}
            aria-controls={`${id}view${index}`}
            aria-selected={index === current}
            tabIndex={index === current ? 0 : -1}
            onClick={() => open(index)}
          >
            {title} <small>{hint}</small>
          </button>
        ))}
      </div>
      {tabs.map(({ hint, className, content }, index) => (
        <div
          key={hint}
          role="tabpanel"
          id={`${id}view${index}`}
          aria-labelledby={`${id}tab${index}`}
          className={`view ${className}`}
          hidden={index !== current}
        >
          {opened.has(index) && content}
        </div>
      ))}
    </div>
  );
}
