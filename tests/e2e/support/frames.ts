import type { Page, WebSocket } from '@playwright/test';
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

  constructor(page: Page) {
    page.on('websocket', (socket: WebSocket) => {
      this.connections += 1;
      socket.on('framesent', ({ payload }) => this.sent.push(JSON.parse(String(payload)) as Sent));
      socket.on('framereceived', ({ payload }) => this.received.push(JSON.parse(String(payload)) as Received));
    });
  }

  /** The replies with an envelope. */
  replies(event: string): Envelope[] {
    return this.received
      .filter((frame) => frame.event === event && frame.args[0] !== '')
      .map(({ args }) => JSON.parse(args[0] as string) as Envelope);
  }
}
