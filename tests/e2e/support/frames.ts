import type { Page, WebSocket } from '@playwright/test';
import { answeredCalls } from '@varnel/web-client';
import type { Envelope } from './peer';

export interface Sent {
  invoke: string;
  args: unknown[];
}

export interface Received {
  event: string;
  args: unknown[];
}

/** All frames between a page and the simulator. */
export class Frames {
  readonly sent: Sent[] = [];
  readonly received: Received[] = [];
  connections = 0;
  /** By reply event, of the latest connection. */
  private waiting = new Map<string, number>();

  constructor(page: Page) {
    page.on('websocket', (socket: WebSocket) => {
      this.connections += 1;
      const waiting = new Map<string, number>();
      this.waiting = waiting;
      socket.on('framesent', ({ payload }) => {
        const call = JSON.parse(String(payload)) as Sent;
        this.sent.push(call);
        const reply = (answeredCalls as Readonly<Record<string, string>>)[call.invoke];
        if (reply) waiting.set(reply, (waiting.get(reply) ?? 0) + 1);
      });
      socket.on('framereceived', ({ payload }) => {
        const event = JSON.parse(String(payload)) as Received;
        this.received.push(event);
        const count = waiting.get(event.event);
        if (count) waiting.set(event.event, count - 1);
      });
    });
  }

  /** Calls of the latest connection that wait for their answers. */
  get unanswered(): number {
    return [...this.waiting.values()].reduce((sum, count) => sum + count, 0);
  }

  /** The replies with an envelope. */
  replies(event: string): Envelope[] {
    return this.received
      .filter((frame) => frame.event === event && frame.args[0] !== '')
      .map(({ args }) => JSON.parse(args[0] as string) as Envelope);
  }
}
