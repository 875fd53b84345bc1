import { readFileSync } from 'node:fs';
import { expect, it } from 'vitest';
import { faultsInChinese } from '../src/faultTexts';

it('every fault of the simulator is explained in Chinese', () => {
  const file = new URL('../../../simulator/scenarios/scenario.schema.json', import.meta.url);
  const schema = JSON.parse(readFileSync(file, 'utf8')) as { properties: { faults: { properties: object } } };
  expect(Object.keys(faultsInChinese)).toEqual(Object.keys(schema.properties.faults.properties));
});
