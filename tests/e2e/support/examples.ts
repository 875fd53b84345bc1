import { answeredCalls, unansweredCalls, type AnsweredCall, type PushEvent } from '@varnel/web-client';
import { Home } from './home';
import { Peer, type BridgeEvent, type Envelope } from './peer';
import { Simulator } from './simulator';

/** Every call and push that has been seen, by its name, as the protocol page shows it. */
export type Examples = Map<string, string>;

const uuid = 'u1';
const account = '880010001';
const symbol = '609001.SH'; // the account holds it
const bonds = JSON.stringify({ symbolFilter: [{ securityType: 'Bond' }] });

// ---- How an example is shown ---------------------------------------------------------------------------------------

const shownMembers = 6;
const shownColumns = 118;
const unbrokenColumns = 70;
const rest = '…';

/** The first entry of each array and the first members of each object. "…" stands for the others. */
function shortened(value: unknown): unknown {
  if (Array.isArray(value)) return value.length > 1 ? [shortened(value[0]), rest] : value.map(shortened);
  if (typeof value !== 'object' || value === null) return value;
  const members = Object.entries(value).map(([key, member]) => [key, shortened(member)]);
  if (members.length > shownMembers) members.splice(shownMembers, Infinity, [rest, rest]);
  return Object.fromEntries(members) as unknown;
}

/** As many parts on each line as there is room for. */
function filledLines(parts: readonly string[]): string {
  return parts.reduce((text, part) => {
    const column = text.length - text.lastIndexOf('\n') - 1;
    return text + (column + part.length < shownColumns ? ' ' : '\n  ') + part;
  });
}

/** The JSON of a value in parts between which a line may end. What is short stays in one part. */
function jsonParts(value: unknown): string[] {
  const line = JSON.stringify(value, null, 1).replace(/\n */g, ' ');
  if (typeof value !== 'object' || value === null || line.length <= unbrokenColumns) return [line];
  const isArray = Array.isArray(value);
  const members = Object.entries(value).map(([key, member]) => {
    const [first, ...others] = jsonParts(member);
    return [isArray ? first! : `"${key}": ${first}`, ...others];
  });
  const parts = members.flatMap((member, index) =>
    index === members.length - 1 ? member : [...member.slice(0, -1), `${member.at(-1)},`],
  );
  parts[0] = `${isArray ? '[' : '{'} ${parts[0]}`;
  parts[parts.length - 1] += isArray ? ' ]' : ' }';
  return parts;
}

function shownArgument(argument: unknown): string {
  const isJson = typeof argument === 'string' && /^[[{]/.test(argument);
  return filledLines(jsonParts(isJson ? shortened(JSON.parse(argument)) : argument));
}

function shownEvent({ event, args }: Pick<BridgeEvent, 'event' | 'args'>): string {
  return [`// ${event}${args.length === 0 ? ', without an argument' : ''}`, ...args.map(shownArgument)].join('\n');
}

function shownCall(method: string, args: readonly unknown[]): string {
  const shown = [method, uuid, ...args].map((arg) => (typeof arg === 'string' ? `'${arg}'` : JSON.stringify(arg)));
  const [first, ...others] = shown.map((arg, index) => arg + (index + 1 < shown.length ? ',' : ');'));
  return filledLines([`CallBridge.invokeMethod(${first}`, ...others]);
}

// ---- A run ---------------------------------------------------------------------------------------------------------

/** A page that makes each call once, and keeps each with its reply and the pushes that it is told to wait for. */
class ExamplePage {
  private constructor(
    private readonly peer: Peer,
    private readonly examples: Examples,
  ) {}

  static async connect(url: string, examples: Examples): Promise<ExamplePage> {
    return new ExamplePage(await Peer.connect(url), examples);
  }

  /** Makes the call and gives the envelope of its reply, if it has one. */
  async call(method: AnsweredCall, ...args: unknown[]): Promise<Envelope | undefined> {
    this.peer.call(method, uuid, ...args);
    const reply = await this.peer.event(({ event }) => event === answeredCalls[method]);
    this.examples.set(method, `${shownCall(method, args)}\n${shownEvent(reply)}`);
    return reply.reply;
  }

  callWithoutReply(method: keyof typeof unansweredCalls, ...args: unknown[]): void {
    this.peer.call(method, uuid, ...args);
    this.examples.set(method, `${shownCall(method, args)}\n// no reply`);
  }

  /** Waits for the first push of that name from now on that meets the condition. */
  async push(name: PushEvent, condition: (args: unknown[]) => boolean = () => true): Promise<void> {
    const args = await new Promise<unknown[]>((resolve, reject) => {
      const listener = (data: unknown) => {
        const received = JSON.parse(String(data)) as BridgeEvent;
        if (received.event !== name || !condition(received.args)) return;
        this.peer.socket.off('message', listener);
        resolve(received.args);
      };
      this.peer.socket.on('message', listener);
      void this.peer.closed.then(() => reject(new Error(`closed while waiting for ${name}`)));
    });
    this.examples.set(name, shownEvent({ event: name, args }));
  }
}

const running = new Set<Simulator>();

/** For a run that hangs: the pages lose their connection, and the run fails. */
export async function stopSimulators(): Promise<void> {
  await Promise.all([...running].map((simulator) => simulator.stop()));
}

async function withSimulator(speed: number, use: (page: ExamplePage) => Promise<void>): Promise<Examples> {
  const examples: Examples = new Map();
  const home = new Home(); // with no settings yet
  const simulator = new Simulator(['--port', '0', '--speed', String(speed)], home.program);
  running.add(simulator);
  try {
    await use(await ExamplePage.connect(await simulator.listening(), examples));
  } finally {
    await simulator.stop();
    running.delete(simulator);
    home.remove();
  }
  return examples;
}

async function queries(page: ExamplePage): Promise<void> {
  await page.call('Data_getToken_REQ');
  await page.call('Data_getLoginTrader_REQ');
  await page.call('Data_getTraderList_REQ');
  await page.call('Data_getFundAccountList_REQ', 1);
  await page.call('Data_getOPStation_REQ', 'A', 'B');
  await page.call('Data_getSymbolList_REQ', bonds);
  await page.call('Data_getSymbolListWithDetail_REQ', bonds);
  await page.call('Data_getSymbolDetail_REQ', symbol);
  await page.call('Data_getCurrentTick_REQ', symbol);
  await page.call('Data_getUpsDownsAnalysis_REQ', '', '', '');
  await page.call('Data_getExecutionList_REQ', JSON.stringify({ fundAccount: [account] }), 0, 1);
  await page.call('Data_getPositionList_REQ', account, symbol);
  await page.call('Data_getAsset_REQ', account);
  await page.call('Data_getTradableQty_REQ', account, symbol, 'SH', 'Buy', 'Limit', '13.50', '');
  await page.call('Data_saveSetting_REQ', 'my_page.columns', 'symbol,last');
  await page.call('Data_getSetting_REQ', 'my_page.columns');
  await page.call('Data_getPermission_REQ', account, 'KFZ;SNB');
  await page.call('Data_openPermissionMenu_REQ');
}

async function subscriptions(page: ExamplePage): Promise<void> {
  const tick = page.push('on_tickUpdate');
  await page.call('Sub_subscribe_REQ', symbol);
  await tick;
  await page.call('UnSub_subscribe_REQ', symbol);
  await page.call('UnSub_subscribeAll_REQ');
}

/** The order in which orders are placed decides their numbers. */
async function orders(page: ExamplePage): Promise<void> {
  const placed = [page.push('on_entrustUpdate'), page.push('on_AssetUpdate')];
  const buy = ['Buy', 'Limit', '13.00', '100', 'my-page'];
  const order = await page.call('Trade_insertOrder_REQ', account, symbol, 'SH', ...buy);
  await Promise.all(placed);
  await page.call('Data_getEntrustList_REQ', JSON.stringify({ fundAccount: [account], symbol: [symbol] }), 0, 1);
  const cancelled = page.push('on_entrustUpdate', ([orders]) => String(orders).includes('"Cancelled"'));
  await page.call('Trade_reqCancelOrder_REQ', (order!.resultData as { orderID: string }).orderID);
  await cancelled; // from here on the money is free again

  const reserved = page.push('on_positionUpdate');
  const sell = { symbol, exchange: 'SH', orderSide: 'Sell', priceType: 'Limit', price: '14.50', qty: '100' };
  await page.call('Trade_insertOrderList_REQ', account, 'my-page', JSON.stringify([sell]));
  await reserved;
}

async function strategies(page: ExamplePage): Promise<void> {
  const runs = page.push('on_vlxStrategyStatusUpdate', ([, status]) => status === 'Running');
  const started = await page.call('Vlx_startStrategy_REQ', 'strategies/grid.py', 1, account, { step: 0.01 }, 'mine');
  await runs;
  const { strategyID } = started!.resultData as { strategyID: string };
  const told = page.push('on_vlxRcvCustomInfo');
  page.callWithoutReply('Vlx_subStrategyMsg_REQ', strategyID, '1');
  page.callWithoutReply('Vlx_sendCustomInfo_REQ', strategyID, 'hello');
  await told;
  await page.call('Vlx_queryStrategyStatus_REQ', strategyID, 'mine');
  await page.call('Vlx_stopStrategy_REQ', strategyID, 'mine');
}

/**
 * Makes every call of the protocol and waits for every push. Each run gives the same examples: accounts, quotes and
 * numbers follow from the built-in scenario, and the time of an order is the second of the scenario's start. That second
 * lasts twenty seconds in the first simulator, and its quotes do not change. In the second simulator they change after
 * six seconds, and orders from before the start fill.
 */
export async function collectExamples(): Promise<Examples> {
  const [still, moving] = await Promise.all([
    withSimulator(0.05, async (page) => {
      // The bus numbers requests and events: this request comes before them all.
      await page.call('Data_getKLineData_REQ', symbol, '20250228', '20250228', '2');
      await orders(page);
      await queries(page);
      await subscriptions(page);
      await strategies(page);
    }),
    withSimulator(0.5, async (page) => {
      await Promise.all([page.push('on_orderLoaded'), page.push('on_executionUpdate')]);
    }),
  ]);
  return new Map([...still, ...moving]);
}
