import { Fragment, useEffect, useRef, type ReactNode } from 'react';
import { Group, Panel, Separator, type GroupImperativeHandle, type Layout } from 'react-resizable-panels';
import { useSetting } from '../settings/useSetting';
import { useTexts } from '../texts/useTexts';

export interface Part {
  /** Stays the same in every language, and is unique in the desk. */
  id: string;
  /** Percent of the whole, until the user has chosen another size. */
  size: number;
  /** The smallest size in pixels. */
  min: number;
  className?: string;
  content: ReactNode;
}

interface Props {
  /** Names the sizes in the settings. */
  id: string;
  isVertical?: boolean;
  parts: readonly Part[];
}

type Layouts = Readonly<Record<string, Layout>>;

const noLayouts: Layouts = {};
export const layoutKey = 'workbench.layout';

function isRecord(value: unknown): value is Record<string, unknown> {
  return typeof value === 'object' && value !== null && !Array.isArray(value);
}

function readLayouts(value: unknown): Layouts | undefined {
  if (!isRecord(value)) return undefined;
  const isLayout = (layout: unknown): layout is Layout =>
    isRecord(layout) && Object.values(layout).every((size) => typeof size === 'number' && size >= 0 && size <= 100);
  return Object.fromEntries(Object.entries(value).filter((entry): entry is [string, Layout] => isLayout(entry[1])));
}

/** Parts beside or above each other, with separators that drag or arrow keys move. The terminal keeps the sizes. */
export function Split({ id, isVertical = false, parts }: Props) {
  const t = useTexts();
  const [layouts, change, { isKnown }] = useSetting(layoutKey, readLayouts, noLayouts);
  const group = useRef<GroupImperativeHandle>(null);
  const saved = layouts[id];
  // Sizes of an older desk with other parts do not fit.
  const fits = saved && parts.every((part) => part.id in saved) && Object.keys(saved).length === parts.length;
  const shown = useRef(fits ? saved : undefined);

  // The sizes may come later than the desk is drawn.
  useEffect(() => {
    if (!isKnown || !fits || shown.current) return;
    shown.current = saved;
    group.current?.setLayout(saved);
  }, [isKnown, fits, saved]);

  return (
    <Group
      id={id}
      data-testid={`split-${id}`}
      className={`split ${isVertical ? 'rows' : 'columns'}`}
      orientation={isVertical ? 'vertical' : 'horizontal'}
      groupRef={group}
      {...(shown.current && { defaultLayout: shown.current })}
      onLayoutChanged={(layout, { isUserInteraction }) => {
        if (!isUserInteraction) return;
        shown.current = layout;
        change((before) => ({ ...before, [id]: layout }));
      }}
    >
      {parts.map((part, place) => (
        <Fragment key={part.id}>
          {place > 0 && (
            <Separator data-testid={`resize-${part.id}`} className="separator" aria-label={t.resizeHandle} />
          )}
          <Panel
            id={part.id}
            data-testid={`part-${part.id}`}
            className={`part ${part.className ?? ''}`}
            defaultSize={`${part.size}%`}
            minSize={part.min}
          >
            {part.content}
          </Panel>
        </Fragment>
      ))}
    </Group>
  );
}
