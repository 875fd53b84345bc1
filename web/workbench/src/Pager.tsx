import { useFormats } from './formats';
import { useTexts } from './texts/useTexts';

interface Props {
  start: number;
  size: number;
  total: number;
  count: number;
  onTurn: (start: number) => void;
}

/** Shows the position in a long list and turns its pages. */
export function Pager({ start, size, total, count, onTurn }: Props) {
  const t = useTexts();
  const { whole } = useFormats();
  const last = Math.max(0, Math.floor((total - 1) / count) * count);
  const turns = [
    { name: t.firstPage, to: 0, possible: start > 0 },
    { name: t.previousPage, to: Math.max(0, start - count), possible: start > 0 },
    { name: t.nextPage, to: start + count, possible: start + count < total },
    { name: t.lastPage, to: last, possible: start < last },
  ];
  return (
    <div className="tools pager">
      <p data-testid="range">
        {size === 0 ? t.pageEmpty(whole(total)) : t.pageRange(whole(start + 1), whole(start + size), whole(total))}
      </p>
      <span>
        {turns.map(({ name, to, possible }) => (
          <button key={name} type="button" className="plain" disabled={!possible} onClick={() => onTurn(to)}>
            {name}
          </button>
        ))}
      </span>
    </div>
  );
}
