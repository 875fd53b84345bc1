// What a page in Chromium gets from the simulator, beside what it gets from a WebSocket that only echoes:
//   node bench/browser/bench.mjs BUILD_FOLDER REPORT_FILE
// Prints tables, writes all figures to the report as JSON. `./dev bench browser` builds what it needs and runs it.
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { availableParallelism, cpus, loadavg, release, tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { MeasuredPage } from './measuredPage.mjs';
import { ServerProcess } from './serverProcess.mjs';
import { meansOf, median, percentiles, spread } from './statistics.mjs';

const [buildFolder, reportFile] = process.argv.slice(2);
if (!buildFolder || !reportFile) throw new Error('usage: node bench/browser/bench.mjs BUILD_FOLDER REPORT_FILE');

const tripRounds = { warmUp: 5, rounds: 100, trips: 500, inARow: 20 };
const pushRounds = { warmUp: 1, rounds: 5, runIn: 1000, duration: 4000 };
const targetRatio = 1.05;
const wantedTicks = 2000; // a second

const secondsBetweenQuotes = 3; // of exchange time
/** The simulator rests for 20 ms after each change of the quotes (QuoteFeed.cpp), so no speed brings more of them. */
const fullSpeed = secondsBetweenQuotes / 0.02;

const uuid = '3f2b6c1e-8d0a-4a5e-9b57-6f1f0c2f7a11';
const tokenCall = JSON.stringify({ invoke: 'Data_getToken_REQ', args: [uuid] });

const page = new MeasuredPage();
const folder = mkdtempSync(join(tmpdir(), 'varnel-bench-'));
const report = { context: {}, results: [], ratios: [] };

// ---- The two sides -------------------------------------------------------------------------------------------------

const startEcho = () => ServerProcess.start(join(buildFolder, 'bench/websocket_echo'));

const startSimulator = (...options) =>
  ServerProcess.start(
    join(buildFolder, 'simulator/varnel-simulator'),
    ...['--port', '0', '--allow-origin', page.origin, ...options],
  );

/** Options for a world with more securities than the built-in one. */
function worldWith(generatedSecurities) {
  const world = JSON.parse(readFileSync(new URL('../../simulator/scenarios/default.json', import.meta.url), 'utf8'));
  const file = join(folder, `${generatedSecurities}.json`);
  writeFileSync(file, JSON.stringify({ ...world, generatedSecurities }));
  return ['--scenario', file];
}

/** The frame that subscribes to all that a simulator lists, and the length of a tick's frame. */
async function subscription(simulator) {
  const call = (method, ...args) => JSON.stringify({ invoke: method, args: ['bench', ...args] });
  await page.order('open', {
    name: 'market',
    url: simulator.url('/view'),
    first: call('Data_getSymbolList_REQ', '{"symbolFilter":[]}'),
  });
  const [list] = await page.order('take', { name: 'market', count: 1 });
  const symbols = JSON.parse(JSON.parse(list).args[0]).resultData.map(({ symbol }) => symbol);
  const frame = call('Sub_subscribe_REQ', symbols.join(','));
  await page.order('send', { name: 'market', frame });
  const ticks = await page.order('take', { name: 'market', count: symbols.length });
  await page.order('close', { name: 'market' });
  const byLength = ticks.filter((tick) => tick.includes('on_tickUpdate')).sort((a, b) => a.length - b.length);
  return { frame, count: symbols.length, tick: byLength[Math.floor(byLength.length / 2)] };
}

/** Measures all sides in each round, forwards and backwards by turns. Gives each side's measurements. */
async function inTurns(sides, { warmUp, rounds }, measure) {
  const measurements = sides.map(() => []);
  for (let round = -warmUp; round < rounds; round++) {
    const turn = [...sides.keys()];
    if (round % 2) turn.reverse();
    for (const side of turn) {
      const measurement = await measure(sides[side]);
      if (round >= 0) measurements[side].push(measurement);
    }
  }
  return measurements;
}

// ---- What is reported ----------------------------------------------------------------------------------------------

/** Wide enough for the longest name. */
const nameWidth = 64;

const shown = (number) => (number === undefined ? '' : number.toFixed(number < 10 ? 2 : number < 1000 ? 1 : 0));

function heading(title, ...columns) {
  console.log(`\n${title.padEnd(nameWidth + 2)}${columns.map((column) => column.padStart(12)).join('')}`);
}

/** One row: the median of the rounds, and how far they lie apart. p99 is the median of the rounds' own. */
function row(name, unit, numbers, p99s) {
  const result = { name, unit, median: median(numbers), spread: spread(numbers), rounds: numbers.length };
  if (p99s) result.p99 = median(p99s);
  report.results.push(result);
  const { q1, q3 } = result.spread;
  console.log(
    `  ${name.padEnd(nameWidth)}${[result.median, q1, q3, result.p99].map((n) => shown(n).padStart(12)).join('')}`,
  );
}

/** The ratio is taken within each round, so that what disturbed a whole round disturbs it less. */
function ratio(name, subject, baseline, subjects, baselines, target) {
  const ratios = subjects.map((number, round) => number / baselines[round]);
  const result = { name, subject, baseline, ratio: median(ratios), spread: spread(ratios), rounds: ratios.length };
  if (target !== undefined) Object.assign(result, { target, met: result.ratio <= target });
  report.ratios.push(result);
  const { q1, q3 } = result.spread;
  const verdict = target === undefined ? '' : `; at most ${target} is wanted: ${result.met ? 'met' : 'missed'}`;
  console.log(
    `  ${name}: ${result.ratio.toFixed(3)}, middle half of the rounds ${q1.toFixed(3)} to ${q3.toFixed(3)}${verdict}`,
  );
}

// ---- The measurements ----------------------------------------------------------------------------------------------

async function roundTrips(clockStep) {
  const simulator = await startSimulator();
  const echo = await startEcho();
  await page.order('open', { name: 'simulator', url: simulator.url('/view'), first: tokenCall });
  const [reply] = await page.order('take', { name: 'simulator', count: 1 });
  await page.order('open', { name: 'echo', url: echo.url('/echo'), first: reply });

  const { inARow, trips } = tripRounds;
  const [ofSimulator, ofEcho] = await inTurns(['simulator', 'echo'], tripRounds, async (name) => {
    const times = await page.order('trips', { name, frame: tokenCall, reply, count: trips });
    return {
      ...percentiles(times, clockStep),
      mean: percentiles(meansOf(times, inARow), clockStep / inARow).p50,
    };
  });
  await simulator.stop();
  await echo.stop();

  const all = (measurements, key) => measurements.map((measurement) => measurement[key]);
  heading('Round trip of a call, from the page and back, µs', 'p50', 'lower q.', 'upper q.', 'p99');
  row('Data_getToken_REQ', 'µs', all(ofSimulator, 'p50'), all(ofSimulator, 'p99'));
  row('echo that answers with the same frame', 'µs', all(ofEcho, 'p50'), all(ofEcho, 'p99'));
  row(`Data_getToken_REQ, ${inARow} in a row, each`, 'µs', all(ofSimulator, 'mean'));
  row(`echo, ${inARow} in a row, each`, 'µs', all(ofEcho, 'mean'));
  const sides = ['Data_getToken_REQ', 'echo'];
  ratio('call / echo, p50', ...sides, all(ofSimulator, 'p50'), all(ofEcho, 'p50'), targetRatio);
  ratio(`call / echo, ${inARow} in a row`, ...sides, all(ofSimulator, 'mean'), all(ofEcho, 'mean'));
  ratio('call / echo, p99', ...sides, all(ofSimulator, 'p99'), all(ofEcho, 'p99'));
}

async function pushes() {
  // Each measurement has a simulator of its own, so that it is always the same time of the market's day.
  const worlds = [];
  for (const [name, options] of [
    ['of the built-in world', []],
    ['of a world of 410', worldWith(400)], // with more, pushes pile up before the page, and newer ticks replace them
  ]) {
    const simulator = await startSimulator(...options);
    worlds.push({ name: `all symbols ${name}`, options, ...(await subscription(simulator)) });
    await simulator.stop();
  }
  const [builtIn] = worlds;
  const speed = (wantedTicks * secondsBetweenQuotes) / builtIn.count;

  const { runIn, duration } = pushRounds;
  const count = async (server, url, first) => {
    const before = server.processorTime();
    const { count, elapsed, all } = await page.order('pushes', { url, first, runIn, duration });
    const spent = server.processorTime() - before;
    await server.stop();
    return { perSecond: count / (elapsed / 1000), cost: (spent / all) * 1e6 };
  };
  const simulated = (name, { options, frame }, speed) => ({
    name,
    measure: async () => {
      const simulator = await startSimulator('--speed', String(speed), ...options);
      return count(simulator, simulator.url('/view'), frame);
    },
  });
  const sides = [
    simulated(`the built-in world at ${speed.toFixed(1)} times the speed`, builtIn, speed),
    ...worlds.map((world) => simulated(`${world.name}, at full speed`, world, fullSpeed)),
    {
      name: `echo, pushing a text of ${builtIn.tick.length} characters`,
      measure: async () => {
        const echo = await startEcho();
        return count(echo, echo.url('/push'), builtIn.tick);
      },
    },
  ];
  const measurements = await inTurns(sides, pushRounds, (side) => side.measure());

  const all = (side, key) => measurements[side].map((measurement) => measurement[key]);
  heading('Pushes that reach the page, each second', 'median', 'lower q.', 'upper q.');
  sides.forEach(({ name }, side) => row(name, '1/s', all(side, 'perSecond')));
  const [most, echo] = [sides.length - 2, sides.length - 1];
  ratio('the last two', sides[most].name, sides[echo].name, all(most, 'perSecond'), all(echo, 'perSecond'));
  heading('What each push costs its server in processor time, µs', 'median', 'lower q.', 'upper q.');
  sides.forEach(({ name }, side) => row(`cost of a push: ${name}`, 'µs', all(side, 'cost')));
  return { builtIn, speed };
}

/** Calls of a page that is pushed to all the while. */
async function tripsBetweenPushes(clockStep, { builtIn, speed }) {
  const simulator = await startSimulator('--speed', String(speed));
  await page.order('open', { name: 'busy', url: simulator.url('/view'), first: tokenCall });
  const [reply] = await page.order('take', { name: 'busy', count: 1 });
  await page.order('send', { name: 'busy', frame: builtIn.frame });
  const [measured] = await inTurns(['busy'], { warmUp: 1, rounds: 5 }, async (name) => {
    const times = await page.order('trips', { name, frame: tokenCall, reply, count: 10_000 });
    return percentiles(times, clockStep);
  });
  await simulator.stop();
  heading(`The same call while ${wantedTicks} ticks a second come, µs`, 'p50', 'lower q.', 'upper q.', 'p99');
  row(
    'Data_getToken_REQ between pushes',
    'µs',
    measured.map(({ p50 }) => p50),
    measured.map(({ p99 }) => p99),
  );
}

// ---- All of it -----------------------------------------------------------------------------------------------------

const chromium = await page.open();
try {
  const { isolated, finest } = await page.order('clock');
  if (!isolated) throw new Error('the page is not isolated: its clock is too coarse');
  const echo = await startEcho();
  const [, qt] = /^Qt (.*)$/m.exec(echo.output);
  await echo.stop();
  const { context } = report;
  Object.assign(context, {
    processor: cpus()[0].model,
    cores: availableParallelism(),
    kernel: release(),
    chromium,
    qt,
    node: process.versions.node,
    clockStepUs: finest,
    loadBefore: loadavg(),
    startedAt: new Date().toISOString(),
  });
  console.log(
    `Chromium ${chromium}, Qt ${qt}, Node ${context.node}; ${context.cores} × ${context.processor}, ` +
      `load ${context.loadBefore[0].toFixed(2)}; the page's clock ticks every ${finest.toFixed(0)} µs`,
  );
  await roundTrips(finest);
  await tripsBetweenPushes(finest, await pushes());
  context.loadAfter = loadavg();
} finally {
  await page.close();
  rmSync(folder, { recursive: true });
}
mkdirSync(dirname(reportFile), { recursive: true });
writeFileSync(reportFile, `${JSON.stringify(report, null, 2)}\n`);
console.log(`\n${reportFile}`);
