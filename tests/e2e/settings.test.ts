import { EventRecorder } from './support/eventRecorder';
import { login, scenario } from './support/scenario';
import { Simulator } from './support/simulator';
import { expect, roots, test } from './support/test';

const texts: [string, string][] = [
  ['plain', 'value'],
  ['空 键=;[a]%41', '值 "x",\n\t;#\\ \u{1f4c8}'],
  ['json', '{"a":[1,"b",null]}'],
  ['commas', 'a, b,,c'],
  ['long', 'x'.repeat(100_000)],
];

const get = async (recorder: EventRecorder, key: string) =>
  (await recorder.envelope('Data_getSetting_REQ', key)).resultData;

test.describe('settings', () => {
  test('that were never saved are empty, and the answer to saving is the empty text', async ({ recorder }) => {
    const unset = await recorder.envelope('Data_getSetting_REQ', 'nothing');
    expect(unset).toEqual({ code: '0', msg: '', resultData: '', uuid: unset.uuid });
    const saved = await recorder.envelope('Data_saveSetting_REQ', 'k', 'v');
    expect(saved).toEqual({ code: '0', msg: '', resultData: '', uuid: saved.uuid });
  });

  test('are shared by all pages, and the last value counts', async ({ recorder: one, secondRecorder: other }) => {
    await one.envelope('Data_saveSetting_REQ', 'k', 'one');
    expect(await get(other, 'k')).toBe('one');
    await other.envelope('Data_saveSetting_REQ', 'k', 'other');
    expect(await get(one, 'k')).toBe('other');
    await one.envelope('Data_saveSetting_REQ', 'k', '');
    expect(await get(other, 'k')).toBe('');
    expect(await get(one, 'K')).toBe('');
  });

  test('survive a restart with any text', async ({ recorder, home, simulator }) => {
    for (const [key, value] of texts) await recorder.envelope('Data_saveSetting_REQ', key, value);
    await recorder.leave();
    await simulator.stop();

    const again = new Simulator(['--port', '0', '--root', roots.bare], home.program);
    await recorder.open(await again.listening());
    for (const [key, value] of texts) expect(await get(recorder, key)).toBe(value);
    await recorder.leave();
    expect(await again.stop()).toEqual({ code: 0, signal: null });
  });

  test('are separate for each login', async ({ home, simulator, recorder: mine, secondRecorder: others }) => {
    const [, otherLogin] = scenario.logins;
    const args = ['--port', '0', '--root', roots.bare, '--login', otherLogin!.account];
    const other = new Simulator(args, home.program);
    await others.open(await other.listening());
    await mine.envelope('Data_saveSetting_REQ', 'k', 'mine');
    expect(await get(others, 'k')).toBe('');
    await others.envelope('Data_saveSetting_REQ', 'k', 'of another');
    expect(await get(mine, 'k')).toBe('mine');
    for (const recorder of [mine, others]) await recorder.leave();
    for (const each of [simulator, other]) await each.stop();
    expect(home.settings(login.account)).toContain('k=mine');
    expect(home.settings(otherLogin!.account)).toContain('k=of another');
  });
});

test.describe('a permission', () => {
  const permission = (recorder: EventRecorder, account: string, type: string) =>
    recorder.envelope('Data_getPermission_REQ', account, type);

  test('is the number 1 for accounts that hold it, otherwise 0', async ({ recorder }) => {
    const held = scenario.algoPermissions
      .filter(({ supportType }) => supportType === 'KFZ_SNB')
      .map(({ fundAccount }) => fundAccount);
    const expected = scenario.fundAccounts.map(({ account }) => (held.includes(account) ? 1 : 0));
    expect(new Set(expected)).toEqual(new Set([0, 1]));
    for (const [index, { account }] of scenario.fundAccounts.entries()) {
      const answer = await permission(recorder, account, 'KFZ;SNB');
      expect(answer).toEqual({ code: '0', msg: '', resultData: expected[index], uuid: answer.uuid });
    }
  });

  test('with an unknown name or account is 0', async ({ recorder }) => {
    const { fundAccount } = scenario.algoPermissions[0]!;
    for (const [account, type] of [
      [fundAccount, 'KFZ_SNB'],
      [fundAccount, 'kfz;snb'],
      [fundAccount, ''],
      ['', 'KFZ;SNB'],
      ['no such account', 'KFZ;SNB'],
    ] as const)
      expect((await permission(recorder, account, type)).resultData, `${account} ${type}`).toBe(0);
  });

  test('menu is opened by the terminal', async ({ recorder, simulator }) => {
    const answer = await recorder.envelope('Data_openPermissionMenu_REQ');
    expect(answer).toEqual({ code: '0', msg: '', resultData: '', uuid: answer.uuid });
    await simulator.logged(/opens menu 1210/);
  });
});
