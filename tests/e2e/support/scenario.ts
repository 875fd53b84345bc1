import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

interface Scenario {
  start: string;
  station: string;
  traders: { id: string; name: string }[];
  logins: { account: string; token: string }[];
  fundAccounts: { account: string; name: string; property: 'stock' | 'futures' }[];
  algoPermissions: { fundAccount: string; supportType: string }[];
  securities: { symbol: string; name: string; spellCode: string }[];
}

/** The simulator's default scenario. */
export const scenario = JSON.parse(
  readFileSync(new URL('../../../simulator/scenarios/default.json', import.meta.url), 'utf8'),
) as Scenario;

export const login = scenario.logins[0]!;
export const traderIds = scenario.traders.map(({ id }) => id).sort();
export const symbols = scenario.securities.map(({ symbol }) => symbol);

export function fundAccounts(property?: 'stock' | 'futures') {
  return scenario.fundAccounts
    .filter((account) => property === undefined || account.property === property)
    .map(({ account, name }) => ({ fundAccount: account, fundAccountName: name }));
}

/**
 * Options with which the simulator plays this scenario. Its file is there until the process ends, and not only until the
 * tests of a file end: with parallel tests a worker ends them, and later runs another test of the same file.
 */
export function playing(changed: object): string[] {
  const folder = mkdtempSync(join(tmpdir(), 'scenario-'));
  process.on('exit', () => rmSync(folder, { recursive: true }));
  const file = join(folder, 'scenario.json');
  writeFileSync(file, JSON.stringify(changed));
  return ['--scenario', file];
}
