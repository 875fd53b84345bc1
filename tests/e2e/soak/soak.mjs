// ./dev soak: pages connect, call, stall, crash and vanish for some minutes. At the end every call has had its one answer,
// the money adds up, and memory, threads and descriptors of the simulator are back where they were. Prints the figures;
// status 1 when something did not hold.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, linkSync, rmSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { parseArgs } from 'node:util';
import { Control } from './control.mjs';
import { figuresAtRest, figuresOf } from './figures.mjs';
import { liveOn, watch } from './lives.mjs';
import { cancelAll, checkFreeCash, compareMoney, readMoney } from './money.mjs';
import { Page, Tally } from './page.mjs';

const { values: options } = parseArgs({
  options: {
    simulator: { type: 'string' },
    scenario: { type: 'string', default: 'storm' },
    minutes: { type: 'string', default: '5' },
    pages: { type: 'string', default: '50' },
    speed: { type: 'string', default: '1' },
    seed: { type: 'string', default: '1' },
  },
});
const minutes = Number(options.minutes);

/** Memory that may stay: allocators keep some, and each order of the day stays in the books. */
const spareMiB = 8;
const spareOfAnOrder = 1 / 1024;

/** Two minutes without any answer: then those that are missing do not come. */
const silentSeconds = 120;

/** mulberry32: the same lives for the same seed, as far as the machine keeps the same pace. */
function generator(seed) {
  let state = seed;
  return () => {
    state = (state + 0x6d2b79f5) | 0;
    let mixed = Math.imul(state ^ (state >>> 15), 1 | state);
    mixed = (mixed + Math.imul(mixed ^ (mixed >>> 7), 61 | mixed)) ^ mixed;
    return ((mixed ^ (mixed >>> 14)) >>> 0) / 2 ** 32;
  };
}

/** glibc gives back to the system at once what is freed, so that the resident memory tells what is held. */
const allocator = { MALLOC_ARENA_MAX: '1', MALLOC_MMAP_THRESHOLD_: '65536', MALLOC_TRIM_THRESHOLD_: '65536' };

async function start() {
  // Settings are kept beside the program: this run gets its own.
  const home = mkdtempSync(join(dirname(options.simulator), 'soak-'));
  const program = join(home, 'varnel-simulator');
  linkSync(options.simulator, program);
  const args = ['--port', '0', '--scenario', options.scenario, '--speed', options.speed];
  const child = spawn(program, args, { stdio: ['ignore', 'pipe', 'pipe'], env: { ...process.env, ...allocator } });
  process.on('exit', () => child.kill('SIGKILL')); // after an error
  const log = [];
  child.stderr.setEncoding('utf8').on('data', (text) => log.push(...text.split('\n').filter((line) => line !== '')));
  const ended = once(child, 'close');
  const [line] = await Promise.race([once(child.stdout.setEncoding('utf8'), 'data'), ended.then(() => [''])]);
  const url = /http:\/\/127\.0\.0\.1:\d+\//.exec(line)?.[0];
  if (!url) throw new Error(`the simulator did not start:\n${log.join('\n')}`);
  const stop = async () => {
    child.kill('SIGTERM');
    const [code, signal] = await ended;
    rmSync(home, { recursive: true });
    return code ?? signal;
  };
  return { pid: child.pid, url, log, ended, stop };
}

/** What pages need to know, as a page reads it. */
async function explore(simulator, tally) {
  const page = await Page.open(simulator.url, tally);
  const funds = (await page.result('Data_getFundAccountList_REQ', 1)).map(({ fundAccount }) => fundAccount);
  const securities = await page.result('Data_getSymbolListWithDetail_REQ', '{}');
  const { descriptors } = figuresOf(simulator.pid);
  await page.close();
  return {
    descriptors, // with one page, as when stock is taken
    funds,
    shares: securities.filter(({ securityType }) => securityType === 'Share'),
    types: new Map(securities.map(({ securityId, securityType }) => [securityId, securityType])),
  };
}

/** Pages come and go for some seconds; then all are gone. */
async function crowd(world, seconds, seed, count) {
  const end = Date.now() + seconds * 1000;
  const isOver = () => Date.now() >= end;
  const lives = Array.from({ length: count }, (_, number) => liveOn(world, generator(seed * 1000 + number), isOver));
  const all = Promise.all([...lives, watch(world, generator(seed), isOver)]);
  await Promise.race([all, silence(world.tally, isOver)]);
}

/** Fails when calls wait, and nothing has been answered for long. A busy machine may take its time over each of them. */
async function silence(tally, isOver) {
  let answers = -1;
  while (!isOver() || answers !== tally.answers) {
    answers = tally.answers;
    await pause(silentSeconds * 1000, undefined, { ref: false });
  }
  throw new Error(`no answers for ${silentSeconds} s to ${[...new Set(tally.waiting)].join(', ')}`);
}

/** The traffic log keeps the latest 20,000 entries, long ones among them. Afterwards it has these short ones instead. */
async function emptyLog(page) {
  for (let batch = 0; batch < 100; batch += 1)
    await Promise.all(Array.from({ length: 100 }, () => page.call('Data_getToken_REQ')));
}

/**
 * The money, the number of orders, and what the process holds when no other page is there. Time stands still from then on:
 * the trading programme of a scenario is never done.
 */
async function takeStock(simulator, { control, tally, funds, types, descriptors }) {
  const page = await Page.open(simulator.url, tally);
  await cancelAll(page, funds, tally.faults);
  await control.run('pause');
  const money = await readMoney(page, funds, tally.faults);
  const open = await checkFreeCash(page, money, types, tally.faults);
  await emptyLog(page);
  const { totalSize: orders } = await page.result('Data_getEntrustList_REQ', '{}', 0, 1);
  return { page, money, open, orders, figures: await figuresAtRest(simulator.pid, descriptors) };
}

const quantile = (sorted, part) => sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * part))];

async function run() {
  const simulator = await start();
  let ended = false;
  void simulator.ended.then(() => (ended = true));
  const tally = new Tally();
  const control = await Control.open(simulator.url);
  const world = { url: simulator.url, control, tally, lives: {}, ...(await explore(simulator, tally)) };

  const warmUp = Math.min(60, minutes * 12);
  console.log(`warming up for ${warmUp.toFixed(0)} s with ${options.pages} pages; then ${minutes} minutes`);
  await crowd(world, warmUp, Number(options.seed) + 1, Number(options.pages));
  const before = await takeStock(simulator, world);
  await before.page.close();
  await control.run('resume');

  const course = [];
  const observer = setInterval(
    () => !ended && course.push(figuresOf(simulator.pid).residentMiB),
    (minutes * 60_000) / 10.5,
  );
  await crowd(world, minutes * 60, Number(options.seed), Number(options.pages));
  clearInterval(observer);
  const after = await takeStock(simulator, world);
  const executions = await compareMoney(after.page, before.money, after.money, world.types, tally.faults);
  await after.page.close();
  const status = await simulator.stop();

  const orders = after.orders - before.orders;
  const grown = after.figures.residentMiB - before.figures.residentMiB;
  const allowed = spareMiB + orders * spareOfAnOrder;
  const missing = tally.calls - tally.answers - tally.abandoned;
  const { faults } = tally;
  if (missing !== 0) faults.push(`${missing} calls have had no answer`);
  if (grown > allowed) faults.push(`memory has grown by ${grown.toFixed(1)} MiB, more than ${allowed.toFixed(1)}`);
  for (const figure of ['threads', 'descriptors'])
    if (after.figures[figure] !== before.figures[figure])
      faults.push(`${figure}: ${before.figures[figure]} before, ${after.figures[figure]} after`);
  if (status !== 0) faults.push(`the simulator ended with ${status}`);

  const trips = tally.roundTrips.sort((one, other) => one - other);
  const ms = (part) => `${quantile(trips, part).toFixed(1)} ms`;
  console.table({
    pages: tally.pages,
    ...Object.fromEntries(Object.entries(world.lives).map(([life, count]) => [`  ${life}`, count])),
    'dropped, because they did not read': tally.dropped,
    calls: tally.calls,
    answers: tally.answers,
    '  of them refusals': tally.refusals,
    'calls of pages that went first': tally.abandoned,
    pushes: tally.pushes,
    'orders entered': orders,
    'open while the money was read': `${before.open}, ${after.open}`,
    'executions added up': executions,
    'round trip of a quiet page, median': ms(0.5),
    'round trip of a quiet page, 99 of 100': ms(0.99),
    'memory before and after, MiB': `${before.figures.residentMiB}, ${after.figures.residentMiB}`,
    'memory in the course, MiB': course.join(' '),
    'threads before and after': `${before.figures.threads}, ${after.figures.threads}`,
    'descriptors before and after': `${before.figures.descriptors}, ${after.figures.descriptors}`,
  });
  return { faults, log: simulator.log };
}

const { faults, log } = await run();
for (const fault of faults.slice(0, 20)) console.log(`does not hold: ${fault}`);
if (faults.length > 0) {
  console.log(`${faults.length} faults; the end of the simulator's log:\n${log.slice(-20).join('\n')}`);
  process.exit(1);
}
console.log('all holds');
