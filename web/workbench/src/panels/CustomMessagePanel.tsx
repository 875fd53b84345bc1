import type { Connection } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { usePush } from '../live/hooks';
import { withLine, type LogLine } from '../log';
import { LogPanel } from './LogPanel';
import { Panel } from './Panel';

/** Messages between page and strategies, under a custom-message identifier. */
export function CustomMessagePanel({ sdk }: { sdk: Connection }) {
  const [customMsgID, setCustomMsgID] = useState('');
  const [message, setMessage] = useState('');
  const [subscribed, setSubscribed] = useState<readonly string[]>([]);
  const [log, setLog] = useState<readonly LogLine[]>([]);
  usePush(sdk, 'on_vlxRcvCustomInfo', (id, text) => setLog((before) => withLine(before, `${id}：${text}`)));

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
    <>
      <Panel title="自定义消息" hint="Custom messages" testId="custom-messages">
        <form className="fields" onSubmit={send}>
          <label>
            消息编号 <small>identifier</small>
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
            订阅 Subscribe
          </button>
          <label className="wide">
            消息 <small>message</small>
            <input value={message} spellCheck={false} onChange={(event) => setMessage(event.target.value)} />
          </label>
          <button type="submit" disabled={customMsgID === ''}>
            发送 Send
          </button>
        </form>
        {subscribed.length > 0 && (
          <ul className="tags" aria-label="已订阅 subscribed" data-testid="custom-subscriptions">
            {subscribed.map((id) => (
              <li key={id}>
                {id}{' '}
                <button
                  type="button"
                  className="link"
                  aria-label={`退订 unsubscribe ${id}`}
                  onClick={() => subscribe(id, false)}
                >
                  ✕
                </button>
              </li>
            ))}
          </ul>
        )}
      </Panel>
      <LogPanel title="收到的消息" hint="Received" log={log} testId="custom-log" />
    </>
  );
}
