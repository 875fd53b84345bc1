import { answeredCalls, unansweredCalls, type CallBridge } from '@varnel/web-client';
import { useId, useState, type FormEvent } from 'react';
import { useFormats } from '../formats';
import { layOut, readArguments } from '../freeCall';
import { useTexts } from '../texts/useTexts';
import { useFreeCall } from '../useFreeCall';
import { Panel } from './Panel';

const methodNames = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls)];

/** Characters of an answer that are shown. */
const longestAnswer = 2 ** 16;

/** Sends any call with any arguments, without the client's checks, and shows the answer to the last one. */
export function FreeCallForm({ bridge }: { bridge: CallBridge }) {
  const t = useTexts();
  const [method, setMethod] = useState('Data_getFundAccountList_REQ');
  const [text, setText] = useState('["u1", 1]');
  const read = readArguments(text);
  const { answer, call } = useFreeCall(bridge);
  const [listId, problemId] = [useId(), useId()];

  function send(event: FormEvent) {
    event.preventDefault();
    if (read.ok) call(method, read.args);
  }

  return (
    <Panel
      title={t.freeCall}
      className="free"
      testId="free-call"
      tools={
        <a href="/inspector" target="_blank" rel="noreferrer" title={t.seeAllCalls}>
          {t.inspector}
        </a>
      }
    >
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
      {answer && <Answer text={answer.text} />}
    </Panel>
  );
}

function Answer({ text }: { text: string | undefined }) {
  const t = useTexts();
  const { whole } = useFormats();
  if (text === undefined) {
    return (
      <p className="quiet" role="status" data-testid="free-answer">
        {t.noAnswerYet}
      </p>
    );
  }
  const shown =
    text.length > longestAnswer
      ? `${text.slice(0, longestAnswer)}\n${t.cutAfter(whole(longestAnswer), whole(text.length))}`
      : layOut(text);
  return (
    <pre tabIndex={0} aria-label={t.answer} data-testid="free-answer">
      {text === '' ? `""  ${t.emptyText}` : shown}
    </pre>
  );
}
