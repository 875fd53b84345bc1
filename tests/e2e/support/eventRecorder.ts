import type { BrowserContext, Page } from '@playwright/test';
import { answeredCalls, pushEvents, reservedEvents, unansweredCalls, type PushEvent } from '@varnel/web-client';
import type { Received } from './frames';
import type { Envelope } from './peer';

const replyEvents = Object.values(answeredCalls);
const neverSent: readonly string[] = [...Object.values(unansweredCalls), ...reservedEvents];

declare global {
  interface Window {
    recordEvent(event: string, args: unknown[]): Promise<void>;
  }
}

let calls = 0;

/** A bare page that records every event of the protocol from the start, the reserved ones too. */
export class EventRecorder {
  /** What the page has received, in order. */
  events: Received[] = [];
  private readonly watchers = new Set<() => void>();

  private constructor(readonly page: Page) {}

  static async create(context: BrowserContext): Promise<EventRecorder> {
    const recorder = new EventRecorder(await context.newPage());
    await recorder.page.exposeFunction('recordEvent', (event: string, args: unknown[]) => {
      recorder.events.push({ event, args });
      recorder.watchers.forEach((check) => check());
    });
    await recorder.page.addInitScript(
      (names) => {
        let bridge: typeof window.CallBridge;
        Object.defineProperty(window, 'CallBridge', {
          get: () => bridge,
          set: (made: typeof window.CallBridge) => {
            bridge = made;
            for (const name of names) made.addEventListener(name, (...args) => void window.recordEvent(name, args));
          },
        });
      },
      [...replyEvents, ...pushEvents, ...neverSent],
    );
    return recorder;
  }

  /** Loads the bare page of the simulator at this address. */
  async open(url: string): Promise<void> {
    await this.page.goto(`${url}bare.html`);
    await this.drain();
  }

  /** Ends the connection and forgets everything, so that the page can serve another test. */
  async leave(): Promise<void> {
    await this.page.goto('about:blank');
    this.watchers.clear();
    this.clear();
  }

  call(method: string, ...args: unknown[]): Promise<void> {
    return this.page.evaluate(([name, all]) => window.CallBridge.invokeMethod(name, ...all), [method, args] as const);
  }

  /** Makes a call and gives the envelope of its reply. */
  async envelope(method: keyof typeof answeredCalls, ...args: unknown[]): Promise<Envelope> {
    const uuid = `recorded ${++calls}`;
    await this.call(method, uuid, ...args);
    return this.reply(method, uuid);
  }

  /** The reply to a call that was made before. */
  reply(method: keyof typeof answeredCalls, uuid: string): Promise<Envelope> {
    return this.until(() => this.replies(method).find((envelope) => envelope.uuid === uuid));
  }

  replies(method: keyof typeof answeredCalls): Envelope[] {
    return this.of(answeredCalls[method]).map(([text]) => JSON.parse(text as string) as Envelope);
  }

  /** Arguments of every event of that name, in order. */
  of(event: string): unknown[][] {
    return this.events.filter((each) => each.event === event).map(({ args }) => args);
  }

  /** What the pushes of that name carry. */
  pushes<Content>(event: PushEvent): Content[] {
    return this.of(event).map(([text]) => JSON.parse(text as string) as Content);
  }

  /** Names of recorded events that nobody may send. */
  reservedEvents(): string[] {
    return this.events.map(({ event }) => event).filter((event) => neverSent.includes(event));
  }

  clear(): void {
    this.events = [];
  }

  /** Waits until `look` finds something, and gives it. */
  until<T>(look: () => T | undefined | false): Promise<T> {
    return new Promise((resolve) => {
      const check = () => {
        const found = look();
        if (found === undefined || found === false) return;
        this.watchers.delete(check);
        resolve(found);
      };
      this.watchers.add(check);
      check();
    });
  }

  /** Makes a call that is answered at once. Events keep their order, so all earlier ones have arrived afterwards. */
  async drain(): Promise<void> {
    await this.envelope('Data_getToken_REQ');
    this.events = this.events.filter(({ event }) => event !== 'Data_getToken_RES');
  }
}
