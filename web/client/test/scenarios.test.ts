import { Ajv2020 } from 'ajv/dist/2020.js';
import { readdirSync, readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';
import { scenarioTables, type Schema } from '../tools/scenarioTables.js';
import { withTables } from '../tools/tables.js';

const root = new URL('../../../', import.meta.url);
const read = (path: string) => readFileSync(new URL(path, root), 'utf8');

const schemaFile = 'scenario.schema.json';
const schema = JSON.parse(read(`simulator/scenarios/${schemaFile}`)) as Schema;
const validate = new Ajv2020({ strict: true, strictRequired: false, allErrors: true }).compile(schema);

interface Case {
  name: string;
  edits: [from: string, to: string][];
  /** What the simulator says about the edited file; its own tests compare that. */
  errors: string[];
  /** The schema cannot say what is wrong. */
  schemaAccepts?: boolean;
}

const good = read('tests/simulator/platform/scenarios/good.json');
const cases = JSON.parse(read('tests/simulator/platform/scenarios/cases.json')) as Case[];

function edited({ edits }: Case): unknown {
  const text = edits.reduce((whole, [from, to]) => (from === '' ? to : whole.split(from).join(to)), good);
  try {
    return JSON.parse(text);
  } catch {
    return undefined;
  }
}

describe('the schema of scenarios', () => {
  const files = readdirSync(new URL('simulator/scenarios/', root));
  const scenarios = files.filter((name) => name.endsWith('.json') && name !== schemaFile);

  it.each(scenarios)('accepts %s', (name) => {
    expect(validate(JSON.parse(read(`simulator/scenarios/${name}`))), JSON.stringify(validate.errors)).toBe(true);
  });

  it.each(scenarios)('is named by %s, for editors', (name) => {
    expect(JSON.parse(read(`simulator/scenarios/${name}`))).toHaveProperty('$schema', schemaFile);
  });

  it.each(cases.map((each) => [each.name, each] as const))('judges as the simulator: %s', (_, each) => {
    const accepted = each.errors.length === 0 || each.schemaAccepts === true;
    const scenario = edited(each);
    const judged = scenario !== undefined && validate(scenario);
    expect(judged, JSON.stringify(validate.errors)).toBe(accepted);
  });

  it('describes every key', () => {
    const undescribed = Object.values(scenarioTables(schema)).filter((table) => table.includes('undefined'));
    expect(undescribed).toEqual([]);
  });

  it('has the tables of docs/vocabulary.md; npm run documents -w web/client writes them anew', async () => {
    const written = withTables(read('docs/vocabulary.md'), scenarioTables(schema));
    await expect(written).toMatchFileSnapshot('../../../docs/vocabulary.md');
  });
});
