interface Props {
  start: number;
  size: number;
  total: number;
  count: number;
  onTurn: (start: number) => void;
}

/** Shows the position in a long list and turns its pages. */
export function Pager({ start, size, total, count, onTurn }: Props) {
  const last = Math.max(0, Math.floor((total - 1) / count) * count);
  const turns = [
    { name: '首页', hint: 'first', to: 0, possible: start > 0 },
    { name: '上页', hint: 'previous', to: Math.max(0, start - count), possible: start > 0 },
    { name: '下页', hint: 'next', to: start + count, possible: start + count < total },
    { name: '末页', hint: 'last', to: last, possible: start < last },
  ];
  return (
    <div className="tools pager">
      <p data-testid="range">
        {size === 0 ? '无记录 none' : `第 ${start + 1}–${start + size} 笔`}，共 {total} 笔 <small>of {total}</small>
      </p>
      <span>
        {turns.map(({ name, hint, to, possible }) => (
          <button
            key={hint}
            type="button"
            className="plain"
            title={hint}
            disabled={!possible}
            onClick={() => onTurn(to)}
          >
            {name}
          </button>
        ))}
      </span>
    </div>
  );
}
