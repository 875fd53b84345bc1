import { useState, useSyncExternalStore } from 'react';
import { layOut } from '../freeCall';
import type { CallEntry, Entry, Journal } from '../journal';
import { Panel } from './Panel';

const outcomes = { ok: '成功 ok', failed: '失败 failed', empty: '空应答 empty' };
const longestShown = 200_000;

function milliseconds(value: number): string {
  return `${value.toFixed(value < 10 ? 1 : 0)} ms`;
}

function clock(at: Date): string {
  return `${at.toTimeString().slice(0, 8)}.${String(at.getMilliseconds()).padStart(3, '0')}`;
}

function CallState({ call }: { call: CallEntry }) {
  if (call.oneWay) return <span className="state">无需应答 no reply</span>;
  if (!call.answer) return <span className="state open">尚无应答 no answer</span>;
  const { outcome, afterMs } = call.answer;
  return (
    <span className={`state ${outcome}`}>
      {outcomes[outcome]} · {milliseconds(afterMs)}
    </span>
  );
}

function Detail({ args }: { args: readonly unknown[] }) {
  return args.map((arg, index) => {
    const text = layOut(arg);
    const rest = text.length - longestShown;
    return (
      <pre key={index} tabIndex={0} aria-label={`参数 ${index}`}>
        {rest > 0 ? `${text.slice(0, longestShown)}\n…（余 ${rest} 字符 more）` : text}
      </pre>
    );
  });
}

const marks = { call: '→', event: '←', connection: '•' };
const kinds = { call: '调用 call', event: '事件 event', connection: '连接 connection' };

function Row({ entry }: { entry: Entry }) {
  const [open, setOpen] = useState(false);
  return (
    <li className={entry.kind} data-testid="entry" data-kind={entry.kind} data-name={entry.name}>
      <details onToggle={(event) => setOpen(event.currentTarget.open)}>
        <summary>
          <span className="mark" role="img" aria-label={kinds[entry.kind]}>
            {marks[entry.kind]}
          </span>
          <time dateTime={entry.at.toISOString()}>{clock(entry.at)}</time>
          <span className="name">{entry.name}</span>
          {entry.kind === 'call' && <CallState call={entry} />}
          {entry.kind === 'event' && entry.afterMs !== undefined && (
            <span className="state">{milliseconds(entry.afterMs)}</span>
          )}
        </summary>
        {open &&
          (entry.args.length === 0 ? <p className="quiet">无参数 no arguments</p> : <Detail args={entry.args} />)}
      </details>
    </li>
  );
}

/** Every call and every event of this page, newest first. */
export function InspectorPanel({ journal }: { journal: Journal }) {
  const entries = useSyncExternalStore(journal.watch, journal.current).entries;
  const [unansweredOnly, setUnansweredOnly] = useState(false);
  const [withPushes, setWithPushes] = useState(true);
  const open = entries.filter((entry) => entry.kind === 'call' && !entry.oneWay && !entry.answer);
  const called = withPushes ? entries : entries.filter((entry) => entry.kind !== 'event' || !entry.isPush);
  const shown = unansweredOnly ? open : called;
  const tools = (
    <div className="tools">
      <label className="inline">
        <input type="checkbox" checked={unansweredOnly} onChange={(event) => setUnansweredOnly(event.target.checked)} />
        只看未应答 <small>unanswered</small> {open.length}
      </label>
      <label className="inline">
        <input type="checkbox" checked={withPushes} onChange={(event) => setWithPushes(event.target.checked)} />
        推送 <small>pushes</small>
      </label>
      <button type="button" className="plain" onClick={() => journal.clear()}>
        清空 Clear
      </button>
    </div>
  );
  return (
    <Panel title="调用记录" hint="Inspector" tools={tools} className="inspector" testId="inspector">
      {shown.length === 0 ? (
        <p className="quiet">暂无记录 nothing yet</p>
      ) : (
        <ol className="scroll" tabIndex={0} aria-label="调用与事件，新的在前 newest first">
          {[...shown].reverse().map((entry) => (
            <Row key={entry.id} entry={entry} />
          ))}
        </ol>
      )}
    </Panel>
  );
}
