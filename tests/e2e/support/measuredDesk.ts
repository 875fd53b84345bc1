import { chromium, type Browser, type CDPSession, type LaunchOptions } from '@playwright/test';

/** What the measured page tells, every second, since it was ready. */
export interface Measured {
  /** Whether the trade view is there with a security in its ticket. */
  ready: boolean;
  /** Long tasks: everything that held the page for more than 50 ms. */
  tasks: { atMs: number; ms: number }[];
  /** Bytes of the page's JavaScript heap. */
  heap: { atMs: number; bytes: number }[];
  frames: number;
}

export const reportPath = '/measured';

/** Runs in the page before its own scripts. It tells its figures by HTTP, so that nobody else need look into the page. */
function measure(path: string, symbol: string): void {
  const figures: Measured = { ready: false, tasks: [], heap: [], frames: 0 };
  let start = Infinity;
  new PerformanceObserver((list) => {
    for (const { startTime, duration } of list.getEntries())
      if (startTime >= start) figures.tasks.push({ atMs: Math.round(startTime - start), ms: Math.round(duration) });
  }).observe({ type: 'longtask' });

  const find = <Found extends HTMLElement>(selector: string) => document.querySelector<Found>(selector);
  function makeReady(): void {
    const field = find<HTMLInputElement>('[data-testid="ticket"] [name="symbol"]');
    if (!field) {
      // The tabs listen to the mouse button, not to the click.
      find('[data-testid="tab-trade"]')?.dispatchEvent(new MouseEvent('mousedown', { bubbles: true, button: 0 }));
    } else if (field.value !== symbol) {
      Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, 'value')!.set!.call(field, symbol);
      field.dispatchEvent(new Event('input', { bubbles: true }));
    } else if (find('[data-testid="ladder"] tbody tr') && find('[data-testid="blotter-table"] tbody tr')) {
      figures.ready = true;
      start = performance.now() + 2000; // the page may still be busy with its first answers
    }
  }

  const countFrame = () => {
    if (performance.now() >= start) figures.frames += 1;
    requestAnimationFrame(countFrame);
  };
  requestAnimationFrame(countFrame);
  setInterval(() => {
    if (!figures.ready) makeReady();
    const { memory } = performance as unknown as { memory: { usedJSHeapSize: number } };
    if (performance.now() >= start)
      figures.heap.push({ atMs: Math.round(performance.now() - start), bytes: memory.usedJSHeapSize });
    void fetch(path, { method: 'POST', body: JSON.stringify(figures) });
  }, 1000);
}

export const measuringScript = (symbol: string) =>
  `(${measure.toString()})(${JSON.stringify(reportPath)}, ${JSON.stringify(symbol)})`;

interface TraceEvent {
  name: string;
  pid: number;
  tid: number;
  /** Microseconds of the processor that a task took. A busy machine makes a task last longer than that. */
  tdur?: number;
  args?: { name?: string };
}

/**
 * The page in a browser of its own. Playwright watches the network of every page that it has opened, which costs as much
 * again as the frames themselves; it leaves alone a page that the browser opens by itself.
 */
export class UnwatchedPage {
  private constructor(
    private readonly browser: Browser,
    private readonly session: CDPSession,
  ) {}

  static async open(url: string, options: LaunchOptions): Promise<UnwatchedPage> {
    const browser = await chromium.launch({
      ...options,
      args: [...(options.args ?? []), '--enable-precise-memory-info'],
    });
    const session = await browser.newBrowserCDPSession();
    await session.send('Target.createTarget', { url, width: 1280, height: 800 });
    return new UnwatchedPage(browser, session);
  }

  /** What each task of the page took of the processor in the next seconds, in milliseconds, the longest first. */
  async processorTimes(seconds: number): Promise<number[]> {
    const events: TraceEvent[] = [];
    this.session.on('Tracing.dataCollected', ({ value }) => events.push(...(value as unknown as TraceEvent[])));
    const complete = new Promise<void>((resolve) => this.session.once('Tracing.tracingComplete', () => resolve()));
    await this.session.send('Tracing.start', {
      transferMode: 'ReportEvents',
      traceConfig: { includedCategories: ['toplevel', '__metadata'] },
    });
    await new Promise((resolve) => setTimeout(resolve, seconds * 1000));
    await this.session.send('Tracing.end');
    await complete;
    const idOf = ({ pid, tid }: TraceEvent) => `${pid} ${tid}`;
    const isMain = ({ name, args }: TraceEvent) => name === 'thread_name' && args?.name === 'CrRendererMain';
    const main = new Set(events.filter(isMain).map(idOf));
    return events
      .filter((event) => event.name === 'ThreadControllerImpl::RunTask' && main.has(idOf(event)))
      .map(({ tdur = 0 }) => tdur / 1000)
      .sort((one, other) => other - one);
  }

  close(): Promise<void> {
    return this.browser.close();
  }
}
