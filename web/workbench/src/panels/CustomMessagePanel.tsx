import type { Connection } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { useTexts } from '../texts/useTexts';
import { Panel } from './Panel';

/** Messages between page and strategies, under a custom-message identifier. */
export function CustomMessagePanel({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const [customMsgID, setCustomMsgID] = useState('');
  const [message, setMessage] = useState('');
  const [subscribed, setSubscribed] = useState<readonly string[]>([]);

  function send(event: FormEvent) {
    event.preventDefault();
    sdk.sendCustomInfo({ customMsgID, message });
  }

  function subscribe(id: string, on: boolean) {
    sdk.subStrategyMsg({ customMsgID: id, subscribed: on });
    const others = subscribed.filter((each) => each !== id);
    setSubscribed(on ? [...others, id] : others);
  }

  return (
    <Panel title={t.customMessages} testId="custom-messages">
      <form className="fields" onSubmit={send}>
        <label>
          {t.messageId}
          <input
            value={customMsgID}
            spellCheck={false}
            onChange={(event) => setCustomMsgID(event.target.value.trim())}
          />
        </label>
        <button
          type="button"
          className="plain"
          disabled={customMsgID === ''}
          onClick={() => subscribe(customMsgID, true)}
        >
          {t.subscribe}
        </button>
        <label className="wide">
          {t.message}
          <input value={message} spellCheck={false} onChange={(event) => setMessage(event.target.value)} />
        </label>
        <button type="submit" disabled={customMsgID === ''}>
          {t.send}
        </button>
      </form>
      {subscribed.length > 0 && (
        <ul className="tags" aria-label={t.subscribed} data-testid="custom-subscriptions">
          {subscribed.map((id) => (
            <li key={id}>
              {id}{' '}
              <button
                type="button"
                className="link"
                aria-label={t.unsubscribeFrom(id)}
                onClick={() => subscribe(id, false)}
              >
                ✕
              </button>
            </li>
          ))}
        </ul>
      )}
    </Panel>
  );
}
