import { answeredCalls, unansweredCalls, type CallBridge } from '@varnel/web-client';
import { useId, useState, type FormEvent } from 'react';
import { readArguments } from '../freeCall';
import { Panel } from './Panel';

const methodNames = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls)];

/** Sends any call with any arguments, without the client's checks. */
export function FreeCallForm({ bridge }: { bridge: CallBridge }) {
  const [method, setMethod] = useState('Data_getFundAccountList_REQ');
  const [text, setText] = useState('["u1", 1]');
  const read = readArguments(text);
  const [listId, problemId] = [useId(), useId()];

  function send(event: FormEvent) {
    event.preventDefault();
    if (read.ok) bridge.invokeMethod(method, ...read.args);
  }

  return (
    <Panel title="自由调用" hint="Call anything" testId="free-call">
      <form className="fields" onSubmit={send}>
        <label className="wide">
          方法 <small>method</small>
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
          参数 <small>arguments, a JSON array; the first is the call identifier</small>
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
          发送 Send
        </button>
        <p id={problemId} className="problem" role="status">
          {read.ok ? '' : read.reason}
        </p>
      </form>
    </Panel>
  );
}
