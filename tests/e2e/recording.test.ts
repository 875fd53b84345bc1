import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import type { Entrust } from '@varnel/web-client';
import type { EventRecorder } from './support/eventRecorder';
import type { Home } from './support/home';
import { Simulator } from './support/simulator';
import { expect, roots, test } from './support/test';
import { account, cancel, idOf, market, orderFor, placed, reached, statusOf, symbol } from './support/trading';

const fileIn = (home: Home) => join(home.folder, 'run.jsonl');

test.use({ options: async ({ home }, use) => use(['--speed', '10', '--record', fileIn(home)]) });

/** A page that trades, looks and saves. Gives the numbers of its orders. */
async function session(recorder: EventRecorder): Promise<string[]> {
  const ticks = (count: number) => recorder.until(() => recorder.of('on_tickUpdate').length >= count);
  const shown = await market(recorder);
  await recorder.envelope('Sub_subscribe_REQ', symbol);
  const resting = await placed(recorder, orderFor(shown));
  const filling = await placed(recorder, orderFor(shown, { priceType: 'Market', price: '0' }));
  await cancel(recorder, resting);
  await recorder.envelope('Data_getEntrustList_REQ', '{}', 0, 20);
  await recorder.envelope('Data_getKLineData_REQ', symbol, '20250303', '', '1');
  await recorder.envelope('Data_saveSetting_REQ', 'colour', '蓝');
  expect((await recorder.envelope('Data_getSetting_REQ', 'colour')).resultData).toBe('蓝');
  const started = await recorder.envelope('Vlx_startStrategy_REQ', 'grid.py', 1, account, {}, '');
  const { strategyID } = started.resultData as { strategyID: string };
  await recorder.envelope('Vlx_stopStrategy_REQ', strategyID, '');
  await reached(recorder, filling, 'Filled');
  await ticks(2);
  await recorder.envelope('Data_getCurrentTick_REQ', symbol);
  await recorder.envelope('Data_getExecutionList_REQ', '{}', 0, 20);
  await recorder.envelope('Data_getPositionList_REQ', account, '');
  await recorder.envelope('Data_getAsset_REQ', account);
  await ticks(recorder.of('on_tickUpdate').length + 1);
  return [resting, filling];
}

interface Line {
  kind: string;
  name?: string;
  args?: string[];
}

/** The lines of the recording behind its head; the first one is line 2. */
const linesOf = (home: Home) =>
  readFileSync(fileIn(home), 'utf8')
    .trimEnd()
    .split('\n')
    .slice(1)
    .map((line) => JSON.parse(line) as Line);

async function verified(home: Home) {
  const replay = new Simulator(['replay', fileIn(home), '--verify'], home.program);
  const { code } = await replay.ended;
  return { code, stdout: replay.stdout, stderr: replay.stderr };
}

test.describe('a recorded run', () => {
  let orders: string[];

  test.beforeEach(async ({ recorder, simulator }) => {
    orders = await session(recorder);
    await simulator.stop();
  });

  test('is verified without a difference, and does not touch the settings', async ({ home }) => {
    const before = home.settings('T1001');
    const calls = linesOf(home).filter(({ kind }) => kind === 'call').length;
    expect(calls).toBeGreaterThan(15);
    expect(await verified(home)).toMatchObject({
      code: 0,
      stdout: `${calls} calls, ${calls} replies: no difference\n`,
    });
    expect(home.settings('T1001')).toBe(before);
  });

  test('in which one reply was changed differs at its line', async ({ home }) => {
    const lines = readFileSync(fileIn(home), 'utf8').split('\n');
    const changed = lines.findIndex((line) => line.includes('"reply"') && line.includes('"Data_getAsset_RES"'));
    lines[changed] = lines[changed]!.replace('floatingProfit', 'floatingprofit');
    writeFileSync(fileIn(home), lines.join('\n'));
    const { code, stdout, stderr } = await verified(home);
    expect({ code, stdout }).toEqual({ code: 1, stdout: '' });
    expect(stderr).toContain(
      `varnel-simulator: ${fileIn(home)}: line ${changed + 1}: the reply to Data_getAsset_REQ of page 1 `,
    );
    expect(stderr).toMatch(/\n {2}recorded: .*floatingprofit.*\n {2}now: {6}.*floatingProfit/);
  });

  test('is played to a browser, with its quotes and orders', async ({ home, recorder: looker }) => {
    const lines = linesOf(home);
    const recorded = (event: string) =>
      lines.filter(({ kind, name }) => kind === 'push' && name === event).map(({ args }) => args![0]!);
    const replay = new Simulator(['replay', fileIn(home), '--step', '--port', '0', '--root', roots.bare], home.program);
    try {
      await looker.leave();
      await looker.open(await replay.listening());
      await looker.envelope('Sub_subscribe_REQ', symbol);
      looker.clear();
      const calls = lines.filter(({ kind }) => kind === 'call').length;
      replay.enter(calls);
      await replay.said(/Data_getAsset_REQ/);
      const ticks = new Set(recorded('on_tickUpdate'));
      await looker.until(() => looker.of('on_tickUpdate').some(([text]) => ticks.has(text as string)));
      // How updates are grouped depends on real time, but the last one of each order does not.
      const states = recorded('on_entrustUpdate').flatMap((text) => JSON.parse(text) as Entrust[]);
      for (const id of orders) {
        const last = states.filter((state) => idOf(state) === id).at(-1)!;
        expect(await reached(looker, id, statusOf(last))).toEqual(last);
      }
      await looker.leave(); // before the simulator ends
    } finally {
      expect(await replay.stop()).toMatchObject({ code: 0 });
    }
  });
});
