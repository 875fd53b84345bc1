import type { CallBridge } from '@varnel/web-client';
import { useEffect, useRef, useState } from 'react';
import { envelopeOf } from './envelope';

/** The answer to the last call; without a text while there is none. */
export interface FreeAnswer {
  text?: string;
}

/** Whether the reply may answer a call with that identifier: an empty reply names none. */
function answers(reply: unknown, uuid: unknown): reply is string {
  const text = uuid === null || typeof uuid === 'object' ? '' : String(uuid); // as the terminal reads it
  return typeof reply === 'string' && (reply === '' || envelopeOf(reply)?.uuid === text);
}

/** Makes calls past the client, and hears their answers. */
export function useFreeCall(bridge: CallBridge): {
  /** Undefined before the first call. */
  answer: FreeAnswer | undefined;
  call: (method: string, args: readonly unknown[]) => void;
} {
  const [answer, setAnswer] = useState<FreeAnswer>();
  const stop = useRef(() => {});
  useEffect(() => () => stop.current(), []);

  function call(method: string, args: readonly unknown[]) {
    stop.current();
    const event = method.replace(/_REQ$/, '_RES');
    const listener = (reply: unknown) => {
      if (!answers(reply, args[0])) return;
      stop.current();
      setAnswer({ text: reply });
    };
    bridge.addEventListener(event, listener);
    stop.current = () => bridge.removeEventListener(event, listener);
    setAnswer({});
    bridge.invokeMethod(method, ...args);
  }

  return { answer, call };
}
