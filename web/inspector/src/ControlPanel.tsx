import { useId, useState, useSyncExternalStore } from 'react';
import type { Control, FaultState } from './control';
import { faultsInChinese } from './faultTexts';
import { exchangeClock } from './format';
import { useTexts, type Language } from './texts';

const speeds = [0.1, 1, 10, 100, 1000];

const usualBurst = 2000;

/** Lets a person stop and move the time of the simulator, and switch its faults. */
export function ControlPanel({ control, language }: { control: Control; language: Language }) {
  const t = useTexts();
  const { state, problem, done } = useSyncExternalStore(control.watch, control.current);
  const [burst, setBurst] = useState(String(usualBurst));
  if (!state) return null;
  const { time, isPaused, speed, faults } = state;
  const shownTime = exchangeClock(time);
  const active = faults.filter(({ value }) => value > 0).length;
  const button = (text: string, command: string) => (
    <button type="button" className="plain" onClick={() => control.run(command)}>
      {text}
    </button>
  );
  return (
    <details className="panel control" data-testid="control">
      <summary>
        <h2>{t.control}</h2>
        <span className="quiet" data-testid="control-state">
          {shownTime} · {isPaused ? t.standsStill : `×${speed}`} · {t.activeFaults(active)}
        </span>
      </summary>
      <div className="commands">
        {isPaused ? button(t.goOn, 'resume') : button(t.standStill, 'pause')}
        {button(t.step, 'step')}
        {button(t.jumpToClose, 'jump close')}
        <label className="inline">
          {t.speed}
          <select value={speed} onChange={(event) => control.run(`speed ${event.target.value}`)}>
            {[...new Set([...speeds, speed])]
              .sort((a, b) => a - b)
              .map((each) => (
                <option key={each} value={each}>
                  ×{each}
                </option>
              ))}
          </select>
        </label>
        <label className="inline">
          {t.burst}
          <input
            type="number"
            min={1}
            max={100000}
            value={burst}
            onChange={(event) => setBurst(event.target.value)}
            onKeyDown={(event) => event.key === 'Enter' && control.run(`burst ${burst}`)}
          />
        </label>
        {button(t.enterBurst, `burst ${burst}`)}
        {button(t.dropPages, 'drop')}
        {button(t.clearFaults, 'clear')}
      </div>
      <AnyCommand onRun={(command) => control.run(command)} />
      <p className="problem" role="status" data-testid="problem">
        {problem}
      </p>
      <p className="quiet" role="status" data-testid="done">
        {done && t.done(done)}
      </p>
      <ul className="faults">
        {faults.map((fault) => (
          <Fault
            key={fault.name}
            fault={fault}
            explained={(language === 'zh' && faultsInChinese[fault.name]) || fault.sentence}
            onSet={(value) => control.run(`fault ${fault.name}=${value}`)}
          />
        ))}
      </ul>
    </details>
  );
}

/** Commands that have no button, with something to change in them. */
const examples = [
  'halt SYMBOL',
  'resume SYMBOL',
  'jump 14:57:00',
  'jump 2025-03-04 09:30:00',
  'drop PAGE',
  'clear FAULT',
];

function AnyCommand({ onRun }: { onRun: (command: string) => void }) {
  const t = useTexts();
  const [text, setText] = useState('');
  const listId = useId();
  return (
    <form
      className="commands"
      onSubmit={(event) => {
        event.preventDefault();
        if (text !== '') onRun(text);
      }}
    >
      <label className="inline">
        {t.command}
        <input
          list={listId}
          value={text}
          placeholder="halt SYMBOL"
          spellCheck={false}
          onChange={(event) => setText(event.target.value)}
        />
      </label>
      <datalist id={listId}>
        {examples.map((example) => (
          <option key={example} value={example} />
        ))}
      </datalist>
      <button type="submit" className="plain">
        {t.run}
      </button>
    </form>
  );
}

interface FaultProps {
  fault: FaultState;
  explained: string;
  onSet: (value: string) => void;
}

function Fault({ fault, explained, onSet }: FaultProps) {
  const { name, kind, most, value } = fault;
  // What a person enters is shown at once; a new value of the simulator's replaces it.
  const [entered, setEntered] = useState({ over: value, text: String(value) });
  if (entered.over !== value) setEntered({ over: value, text: String(value) });
  const enter = (text: string) => setEntered({ over: value, text });
  return (
    <li data-testid="fault" data-name={name} data-value={value}>
      <label>
        {kind === 'switch' ? (
          <input
            type="checkbox"
            checked={entered.text !== '0'}
            onChange={(event) => {
              const text = event.target.checked ? '1' : '0';
              enter(text);
              onSet(text);
            }}
          />
        ) : (
          <input
            type="number"
            min={0}
            max={most}
            value={entered.text}
            onChange={(event) => enter(event.target.value)}
            onBlur={(event) => event.target.value !== String(value) && onSet(event.target.value)}
            onKeyDown={(event) => event.key === 'Enter' && onSet(event.currentTarget.value)}
          />
        )}
        <code>{name}</code> {kind === 'milliseconds' && 'ms'}
        <span className="quiet">{explained}</span>
      </label>
    </li>
  );
}
