import type { Entrust, Execution, Tick } from '@varnel/web-client';
import { orderStatuses } from '@varnel/web-client';
import { once } from 'node:events';
import { createServer, type IncomingMessage, type Server, type ServerResponse } from 'node:http';
import type { AddressInfo } from 'node:net';
import { text } from 'node:stream/consumers';
import { WebSocket, WebSocketServer } from 'ws';
import type { Received, Sent } from './frames';
import { Peer, viewOf } from './peer';

export interface Rates {
  ticks: number;
  /** Updates of orders. An order has three: reported, partly filled, filled. */
  orders: number;
}

/** As the library batches: it opens a batch for 200 ms. */
const batchMs = 200;
const tickMs = 5;

/** What the page should show when the storm is over. */
export interface LastState {
  ticks: ReadonlyMap<string, Tick>;
  /** Every order by its identifier, oldest first. */
  orders: ReadonlyMap<string, Entrust>;
  executions: number;
  pushed: { ticks: number; orders: number };
}

const filledStates = [
  [orderStatuses.reported, '已报', 0],
  [orderStatuses.partlyFilled, '部分成交', 100],
  [orderStatuses.filled, '全部成交', 300],
] as const;

/**
 * A server between page and simulator. It passes on everything unchanged, and adds pushes at the given rates, with
 * the texts that the library would send: quotes of the symbols that the page subscribed to, batches of orders and of
 * their executions.
 */
export class Storm {
  private readonly pages = new Set<WebSocket>();
  private readonly sockets = new WebSocketServer({ noServer: true });
  private readonly server: Server;
  private readonly subscribed = new Set<string>();
  private readonly timers = new Set<NodeJS.Timeout>();

  private readonly ticks = new Map<string, Tick>();
  private readonly orders = new Map<string, Entrust>();
  private readonly waiting: [id: string, stage: number][] = []; // orders that will change again
  private executions = 0;
  private readonly pushed = { ticks: 0, orders: 0 };

  private constructor(
    private readonly simulator: string,
    private readonly samples: { tick: Tick; order: Entrust; execution: Execution },
    private readonly script: string,
    private readonly onReport: (report: string) => void,
  ) {
    this.server = createServer((request, response) => void this.serve(request, response));
    this.server.on('upgrade', (request, socket, head) =>
      this.sockets.handleUpgrade(request, socket, head, (page) => this.connect(page)),
    );
  }

  /**
   * Starts the server in front of the simulator at this address. For measurements it adds a script to the page, and takes
   * what the page posts.
   */
  static async start(simulator: string, script = '', onReport: (report: string) => void = () => {}): Promise<Storm> {
    const storm = new Storm(simulator, await samplesOf(simulator), script, onReport);
    storm.server.listen(0, '127.0.0.1');
    await once(storm.server, 'listening');
    return storm;
  }

  get url(): string {
    return `http://127.0.0.1:${(this.server.address() as AddressInfo).port}/`;
  }

  /** Pages that are connected, through to the simulator. */
  get connected(): number {
    return this.pages.size;
  }

  /** Symbols of which the page wants quotes now. */
  get symbols(): readonly string[] {
    return [...this.subscribed];
  }

  /** Pushes at these rates until `calm`. */
  begin({ ticks, orders }: Rates): void {
    this.every(tickMs, ticks, (count) => {
      for (let tick = 0; tick < count; ++tick) this.pushTick();
    });
    this.every(batchMs, orders, (count) => this.pushOrders(count));
  }

  /** Ends the pushes, after a last one for each order that is not filled yet. */
  calm(): LastState {
    this.timers.forEach(clearInterval);
    this.timers.clear();
    while (this.waiting.length > 0) this.pushOrders(this.waiting.length, false);
    const { ticks, orders, executions, pushed } = this;
    return { ticks, orders, executions, pushed };
  }

  async stop(): Promise<void> {
    this.timers.forEach(clearInterval);
    this.pages.forEach((page) => page.terminate());
    this.sockets.close();
    this.server.close();
    this.server.closeAllConnections();
    await once(this.server, 'close');
  }

  /** Calls `task` with the number that is due by now, so that a late timer loses nothing. */
  private every(ms: number, perSecond: number, task: (count: number) => void): void {
    const start = performance.now();
    let done = 0;
    const timer = setInterval(() => {
      const count = Math.floor(((performance.now() - start) / 1000) * perSecond) - done;
      done += count;
      if (count > 0) task(count);
    }, ms);
    this.timers.add(timer);
  }

  private pushTick(): void {
    const symbols = this.symbols;
    if (symbols.length === 0) return;
    const number = this.pushed.ticks++;
    const symbol = symbols[number % symbols.length]!;
    const last = 10 + (number % 997) / 100;
    const prices = (step: number) => [1, 2, 3, 4, 5].map((level) => Number((last + step * level).toFixed(2)));
    const tick = {
      ...this.samples.tick,
      symbol,
      last,
      volume: 1_000_000 + number,
      bidPrices: prices(-0.01),
      askPrices: prices(0.01),
    };
    this.ticks.set(symbol, tick);
    this.push('on_tickUpdate', tick);
  }

  /** A third of the updates, if wanted, are new orders; the others are the next changes of the oldest ones. */
  private pushOrders(count: number, withNew = true): void {
    const batch: Entrust[] = [];
    const executions: Execution[] = [];
    const due = this.waiting.splice(0, Math.min(this.waiting.length, withNew ? Math.floor((count * 2) / 3) : count));
    for (const [id, stage] of due) {
      batch.push(this.order(id, stage));
      executions.push(this.execution(id));
      if (stage + 1 < filledStates.length) this.waiting.push([id, stage + 1]);
    }
    while (withNew && batch.length < count) {
      const id = `STORM${String(this.orders.size + 1).padStart(10, '0')}`;
      batch.push(this.order(id, 0));
      this.waiting.push([id, 1]);
    }
    this.pushed.orders += batch.length;
    this.push('on_entrustUpdate', batch);
    if (executions.length > 0) this.push('on_executionUpdate', executions);
  }

  private order(id: string, stage: number): Entrust {
    const [code, shown, dealt] = filledStates[stage]!;
    const order = {
      ...this.samples.order,
      orderId: { displayRole: id, userRole: id },
      status: { displayRole: shown, userRole: code },
      entrustQty: figure(300),
      dealQty: figure(dealt),
      leaveQty: figure(300 - dealt),
    };
    this.orders.set(id, order);
    return order;
  }

  private execution(orderId: string): Execution {
    const id = `STORMX${String(++this.executions).padStart(10, '0')}`;
    const cell = (text: string) => ({ displayRole: text, userRole: text });
    return { ...this.samples.execution, execId: cell(id), orderId: cell(orderId) };
  }

  private push(event: string, content: unknown): void {
    const frame = JSON.stringify({ event, args: [JSON.stringify(content)] } satisfies Received);
    this.pages.forEach((page) => page.send(frame));
  }

  private connect(page: WebSocket): void {
    const { address, own } = viewOf(this.simulator);
    const simulator = new WebSocket(address, { origin: own });
    const early: string[] = [];
    simulator.on('open', () => {
      early.forEach((frame) => simulator.send(frame));
      this.pages.add(page);
    });
    page.on('message', (data) => {
      const frame = String(data);
      this.note(JSON.parse(frame) as Sent);
      if (simulator.readyState === WebSocket.OPEN) simulator.send(frame);
      else early.push(frame);
    });
    simulator.on('message', (data) => page.send(String(data)));
    simulator.on('error', () => page.terminate());
    simulator.on('close', () => page.close());
    page.on('close', () => {
      this.pages.delete(page);
      simulator.close();
    });
  }

  private note({ invoke, args }: Sent): void {
    const symbols = String(args[1] ?? '').split(',');
    if (invoke === 'Sub_subscribe_REQ') symbols.forEach((symbol) => this.subscribed.add(symbol));
    if (invoke === 'UnSub_subscribe_REQ') symbols.forEach((symbol) => this.subscribed.delete(symbol));
    if (invoke === 'UnSub_subscribeAll_REQ') this.subscribed.clear();
  }

  private async serve(request: IncomingMessage, response: ServerResponse): Promise<void> {
    if (request.method === 'POST') {
      this.onReport(await text(request));
      response.end();
      return;
    }
    const { url = '/' } = request;
    const answer = await fetch(new URL(url, this.simulator));
    const type = answer.headers.get('content-type') ?? 'application/octet-stream';
    let body = Buffer.from(await answer.arrayBuffer());
    if (type.startsWith('text/html') && this.script !== '')
      body = Buffer.from(String(body).replace('<head>', `<head><script>${this.script}</script>`));
    response.writeHead(answer.status, { 'content-type': type }).end(body);
  }
}

const figure = (value: number) => ({ displayRole: String(value), userRole: value });

async function samplesOf(simulator: string) {
  const peer = await Peer.connect(simulator);
  const ask = async <Result>(method: string, ...args: unknown[]) => {
    peer.call(`${method}_REQ`, method, ...args);
    return (await peer.reply(`${method}_RES`, method)).resultData as Result;
  };
  const [{ symbol }] = await ask<[{ symbol: string }]>('Data_getSymbolList', '{"symbolFilter":[]}');
  const tick = await ask<Tick>('Data_getCurrentTick', symbol);
  const { entrustInfoList } = await ask<{ entrustInfoList: [Entrust] }>('Data_getEntrustList', '{}', 0, 1);
  const { executionInfoList } = await ask<{ executionInfoList: [Execution] }>('Data_getExecutionList', '{}', 0, 1);
  peer.close();
  return { tick, order: entrustInfoList[0], execution: executionInfoList[0] };
}
