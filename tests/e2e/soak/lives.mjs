// What a page does from its beginning to its end. Each life is a function of the page's surroundings: the world and a
// random number generator.

import { setTimeout as pause } from 'node:timers/promises';
import { Page } from './page.mjs';

const oneOf = (list, random) => list[Math.floor(random() * list.length)];
const someOf = (list, count, random) => Array.from({ length: count }, () => oneOf(list, random));

/** Calls that any page makes, with their arguments. */
const calls = [
  () => ['Data_getToken_REQ'],
  ({ funds }, random) => ['Data_getAsset_REQ', oneOf(funds, random)],
  ({ funds }, random) => ['Data_getPositionList_REQ', oneOf(funds, random), ''],
  ({ funds }, random) => ['Data_getEntrustList_REQ', JSON.stringify({ fundAccount: [oneOf(funds, random)] }), 0, 20],
  ({ funds }, random) => ['Data_getExecutionList_REQ', JSON.stringify({ fundAccount: [oneOf(funds, random)] }), 0, 20],
  ({ shares }, random) => [
    'Data_getSymbolDetail_REQ',
    someOf(shares, 3, random)
      .map(({ symbol }) => symbol)
      .join(),
  ],
  ({ shares }, random) => ['Data_getCurrentTick_REQ', oneOf(shares, random).symbol],
  ({ shares }, random) => ['Data_getKLineData_REQ', oneOf(shares, random).symbol, '', '', '1'],
  (_, random) => ['Data_saveSetting_REQ', `soak.key${Math.floor(random() * 20)}`, String(random())],
  (_, random) => ['Data_getSetting_REQ', `soak.key${Math.floor(random() * 20)}`],
  (_, random) => ['Vlx_queryStrategyStatus_REQ', `soak-${Math.floor(random() * 5)}`, ''],
  ({ shares }, random) => [
    'Sub_subscribe_REQ',
    someOf(shares, 5, random)
      .map(({ symbol }) => symbol)
      .join(),
  ],
  ({ shares }, random) => [
    'UnSub_subscribe_REQ',
    someOf(shares, 2, random)
      .map(({ symbol }) => symbol)
      .join(),
  ],
];

const anyCall = (page, world, random) => page.call(...oneOf(calls, random)(world, random));

const subscribe = (page, { shares }, count, random) =>
  page.call(
    'Sub_subscribe_REQ',
    someOf(shares, count, random)
      .map(({ symbol }) => symbol)
      .join(),
  );

/** Makes calls, a few at once, and leaves when all are answered. */
async function call(world, random) {
  const page = await Page.open(world.url, world.tally);
  await subscribe(page, world, 10, random);
  for (let left = 5 + Math.floor(random() * 15); left > 0; left -= 1) {
    await Promise.all(Array.from({ length: 1 + Math.floor(random() * 3) }, () => anyCall(page, world, random)));
    await pause(random() * 300);
  }
  await page.close();
}

/** Places orders, of which some reach the other side of the market, and cancels some of the others. */
async function trade(world, random) {
  const page = await Page.open(world.url, world.tally);
  const fund = oneOf(world.funds, random);
  const placed = [];
  for (let left = 3 + Math.floor(random() * 5); left > 0; left -= 1) {
    const { symbol, exchange, minQty, precision } = oneOf(world.shares, random);
    const tick = await page.result('Data_getCurrentTick_REQ', symbol);
    const side = random() < 0.5 ? 'Buy' : 'Sell';
    const [near, far] = side === 'Buy' ? [tick.askPrices[0], tick.lowerLimit] : [tick.bidPrices[0], tick.upperLimit];
    const price = random() < 0.5 ? near : far;
    const order = [fund, symbol, exchange, side, 'Limit', (price ?? 0).toFixed(precision), minQty, 'soak'];
    const reply = await page.call('Trade_insertOrder_REQ', ...order);
    if (reply?.resultData?.orderID) placed.push(reply.resultData.orderID);
    await pause(random() * 200);
  }
  const unwanted = placed.filter(() => random() < 0.7);
  if (unwanted.length > 0) await page.call('Trade_reqCancelOrder_REQ', unwanted.join());
  await page.close();
}

/** Asks for much, does not read for a while, and reads again. Every call has its answer, unless the page was dropped. */
async function stall(world, random) {
  const page = await Page.open(world.url, world.tally);
  await subscribe(page, world, 100, random);
  page.stall();
  const answers = Array.from({ length: 20 }, () => page.call('Data_getSymbolListWithDetail_REQ', '{}'));
  await Promise.race([pause(2000 + random() * 3000), page.closed]);
  page.readAgain();
  await Promise.all(answers);
  await page.close();
}

/** Asks for ever more and never reads, until the simulator ends it. */
async function neverRead(world) {
  const page = await Page.open(world.url, world.tally);
  page.stall();
  const patience = Date.now() + 20_000;
  while (!page.isDropped && Date.now() < patience) {
    for (let i = 0; i < 10; i += 1) void page.call('Data_getSymbolListWithDetail_REQ', '{}');
    await Promise.race([pause(100), page.closed]);
  }
  await page.crash();
}

/** Ends while its calls are under way. */
async function crash(world, random) {
  const page = await Page.open(world.url, world.tally);
  await subscribe(page, world, 20, random);
  for (let left = 10; left > 0; left -= 1) void anyCall(page, world, random);
  await pause(random() * 50);
  await page.crash();
}

/** Is silent in the middle of a frame, and stays connected for a while. */
async function vanish(world, random) {
  const page = await Page.open(world.url, world.tally);
  await subscribe(page, world, 20, random);
  page.vanish();
  await Promise.race([pause(3000 + random() * 5000), page.closed]);
  await page.crash();
}

/** How often each life is led, of a hundred. */
const shares = [
  [call, 50],
  [trade, 20],
  [stall, 8],
  [neverRead, 1],
  [crash, 13],
  [vanish, 8],
];

/** Leads one life after the other until it is told to stop. */
export async function liveOn(world, random, isOver) {
  while (!isOver()) {
    let chance = random() * 100;
    const [life] = shares.find(([, share]) => (chance -= share) < 0);
    await life(world, random);
    world.lives[life.name] = (world.lives[life.name] ?? 0) + 1;
  }
}

/** One page that is there all the time and measures how long it waits for an answer. */
export async function watch(world, random, isOver) {
  const page = await Page.open(world.url, world.tally);
  await subscribe(page, world, 50, random);
  while (!isOver()) {
    await page.call('Data_getToken_REQ');
    world.tally.roundTrips.push(page.lastRoundTrip);
    await pause(100);
  }
  await page.close();
}
