/** The tables of docs/vocabulary.md that describe a scenario, made from its JSON Schema. */

export interface Schema {
  $ref?: string;
  description?: string;
  type?: string;
  enum?: string[];
  examples?: string[];
  minimum?: number;
  exclusiveMinimum?: number;
  maximum?: number;
  exclusiveMaximum?: number;
  default?: unknown;
  required?: string[];
  properties?: Record<string, Schema>;
  items?: Schema;
  $defs?: Record<string, Schema>;
}

const number = (value: number) => value.toLocaleString('en-US', { maximumFractionDigits: 10 });

function range({ minimum, exclusiveMinimum, maximum, exclusiveMaximum }: Schema): string {
  const limits = [
    minimum !== undefined && `at least ${number(minimum)}`,
    exclusiveMinimum !== undefined && `above ${number(exclusiveMinimum)}`,
    maximum !== undefined && `at most ${number(maximum)}`,
    exclusiveMaximum !== undefined && `below ${number(exclusiveMaximum)}`,
  ];
  return limits
    .filter(Boolean)
    .map((limit) => `, ${limit}`)
    .join('');
}

const subTypeRules = '#/$defs/subTypeRules';

/** One table for the scenario, and one for each object in it. */
export function scenarioTables(root: Schema): Record<string, string> {
  const resolved = (schema: Schema): Schema => {
    if (schema.$ref === undefined) return schema;
    const target = root.$defs?.[schema.$ref.replace('#/$defs/', '')];
    if (!target) throw new Error(`the schema has no ${schema.$ref}`);
    return { ...resolved(target), ...schema };
  };

  const typeOf = (schema: Schema): string => {
    const { type, enum: values, examples, items } = resolved(schema);
    if (values) return values.map((value) => `\`${value}\``).join(', ');
    if (type === 'array')
      return `array of ${resolved(items!).properties ? 'objects' : typeOf(items!).replace('text', 'texts')}`;
    if (type === 'boolean') return '`true` or `false`';
    if (type === 'string') return examples ? `text such as \`${examples[0]}\`` : 'text';
    return (type === 'integer' ? 'whole number' : type) + range(resolved(schema));
  };

  const tables: Record<string, string> = {};
  const add = (name: string, schema: Schema) => {
    const { properties = {}, required = [] } = resolved(schema);
    const rows = Object.entries(properties).map(([key, property]) => {
      const { description, default: fallback } = resolved(property);
      const without = fallback === undefined ? 'optional' : JSON.stringify(fallback);
      const needed = required.includes(key) ? 'required' : without;
      return `| \`${key}\` | ${typeOf(property)} | ${needed} | ${description} |`;
    });
    tables[name] = ['| key | type | without it | meaning |', '|---|---|---|---|', ...rows].join('\n');
    for (const [key, property] of Object.entries(properties)) {
      const { items } = resolved(property);
      const below = items ?? property;
      // The sub-types all have the same rules: one table is enough.
      if (resolved(below).properties && below.$ref !== subTypeRules) add(`${name}.${key}`, below);
    }
  };
  add('scenario', root);
  add('subTypeRules', { $ref: subTypeRules });
  return tables;
}
