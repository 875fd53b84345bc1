import { answeredCalls, unansweredCalls, type CallBridge } from '@varnel/web-client';
import { useId, useState, type FormEvent } from 'react';
import { readArguments } from '../freeCall';
import { useTexts } from '../texts/useTexts';
import { Panel } from './Panel';

const methodNames = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls)];

/** Sends any call with any arguments, without the client's checks. */
export function FreeCallForm({ bridge }: { bridge: CallBridge }) {
  const t = useTexts();
  const [method, setMethod] = useState('Data_getFundAccountList_REQ');
  const [text, setText] = useState('["u1", 1]');
  const read = readArguments(text);
  const [listId, problemId] = [useId(), useId()];

  function send(event: FormEvent) {
    event.preventDefault();
    if (read.ok) bridge.invokeMethod(method, ...read.args);
  }

  return (
    <Panel title={t.freeCall} testId="free-call">
      <form className="fields" onSubmit={send}>
        <label className="wide">
          {t.method}
          <input
            list={listId}
            value={method}
            required
            spellCheck={false}
            onChange={(event) => setMethod(event.target.value)}
          />
          <datalist id={listId}>
            {methodNames.map((name) => (
              <option key={name} value={name} />
            ))}
          </datalist>
        </label>
        <label className="wide">
          {t.arguments}
          <textarea
            rows={2}
            value={text}
            spellCheck={false}
            aria-invalid={!read.ok}
            aria-describedby={problemId}
            onChange={(event) => setText(event.target.value)}
          />
        </label>
        <button type="submit" disabled={!read.ok}>
          {t.send}
        </button>
        <p id={problemId} className="problem" role="status">
          {read.ok ? '' : read.reason === undefined ? t.notArray : t.notJson(read.reason)}
        </p>
      </form>
    </Panel>
  );
}
