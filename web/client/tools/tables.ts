import { methods, oneWayMethods, pushes, type Call, type OneWayCall, type PushName } from '../src/index.js';
import type { Method, OneWayMethod } from '../src/protocol/calls.js';
import type { Push } from '../src/protocol/pushes.js';
import { answers, parameters } from '../src/readings.js';
import type { JsonSchema } from '../src/shapes.js';
import type { Comments } from './comments.js';

/** The tables of calls and pushes, as the documents have them. */
export type Tables = Readonly<Record<'calls' | 'pushes', string>>;

const code = (text: string) => `\`${text.replace(/\|/g, '\\|')}\``;

function table(head: readonly string[], rows: readonly (readonly string[])[]): string {
  const line = (cells: readonly string[]) => `| ${cells.join(' | ')} |`.replace(/ {2,}/g, ' ');
  return [line(head), `|${'---|'.repeat(head.length)}`, ...rows.map(line)].join('\n');
}

const callNames = Object.keys(methods) as Call[];
const oneWayNames = Object.keys(oneWayMethods) as OneWayCall[];
const pushNames = Object.keys(pushes) as PushName[];

// ---- Below the client: docs/protocol.md ----------------------------------------------------------------------------

/** A record with more members is called by its name. */
const spelledMembers = 5;

/** What a value is, in a few words. */
function formOf({ title, type, properties, items, enum: values }: JsonSchema): string {
  if (items) return `array of ${formOf(items).replace(/^text$/, 'texts')}`;
  const keys = Object.keys(properties ?? {});
  if (keys.length > 0 && keys.length <= spelledMembers) return code(`{${keys.map((key) => `"${key}"`).join(', ')}}`);
  if (title) return code(title);
  return type === 'string' ? 'text' : values ? 'number' : 'any value';
}

/** How the library reads a parameter, and the texts that there are for it. */
function readingOf(name: keyof typeof parameters): string {
  const { reading, wire } = parameters[name];
  if (wire.enum) return `${reading}: ${wire.enum.map((value) => code(JSON.stringify(value))).join(' or ')}`;
  return reading === 'text' && wire.contentSchema ? `text: a JSON ${wire.contentSchema.type}` : reading;
}

/** Neighbours with the same reading share its name. */
function parametersBelow(row: OneWayMethod): string {
  const read = Object.entries(row.parameters).map(([name, reading]) => [name, readingOf(reading)] as const);
  return read
    .map(([name, reading], index) => (read[index + 1]?.[1] === reading ? name : `${name} (${reading})`))
    .join(', ');
}

function answerBelow(comments: Comments, call: Call): string {
  const row: Method = methods[call];
  const { answered } = comments.of('methods', call);
  if (row.answer === 'nothing') return 'none';
  if (row.answersEmpty) return `none: ${answered} instead of JSON`;
  return `${formOf(answers[row.answer].schema)}: ${answered}`;
}

function argumentBelow({ json, texts, mayBeEmpty }: Push): string {
  if (texts) return `plain texts: ${texts.join(', ')}`;
  return json ? formOf(json.schema) + (mayBeEmpty ? ', or `{}` or the empty text' : '') : 'none';
}

export function protocolTables(comments: Comments): Tables {
  return {
    calls: table(
      ['method', 'parameters after the uuid', '`resultData`'],
      [
        ...callNames.map((call) => [
          code(methods[call].method),
          parametersBelow(methods[call]),
          answerBelow(comments, call),
        ]),
        ...oneWayNames.map((call) => [
          code(oneWayMethods[call].method),
          parametersBelow(oneWayMethods[call]),
          'no reply',
        ]),
      ],
    ),
    pushes: table(
      ['push', 'argument', ''],
      pushNames.map((name) => [
        code(pushes[name].event),
        argumentBelow(pushes[name]),
        comments.of('pushes', name).text,
      ]),
    ),
  };
}

// ---- In the client: web/client/README.md ---------------------------------------------------------------------------

function argumentsHere(comments: Comments, row: OneWayMethod): string {
  const typed = Object.entries(row.parameters).map(
    ([name, reading]) => [name, comments.typeOf('ArgumentTypes', reading)] as const,
  );
  const written = typed.map(([name, type], index) => (typed[index + 1]?.[1] === type ? name : `${name}: ${type}`));
  return written.length > 0 ? code(`{ ${written.join(', ')} }`) : '';
}

export function clientTables(comments: Comments): Tables {
  const row = (call: Call | OneWayCall, method: OneWayMethod) => {
    const result = comments.resultOf(call);
    return [code(call), argumentsHere(comments, method), code(result)];
  };
  return {
    calls: table(
      ['call', 'arguments', 'answer'],
      [
        ...callNames.map((call) => row(call, methods[call])),
        ...oneWayNames.map((call) => row(call, oneWayMethods[call])),
      ],
    ),
    pushes: table(
      ['push', 'its event', 'the listener gets', ''],
      pushNames.map((name) => [
        code(name),
        code(pushes[name].event),
        code(comments.typeOf('PushArguments', name).replace(/^\[(.*)\]$/, '($1)')),
        comments.of('pushes', name).text,
      ]),
    ),
  };
}

/** The document with new tables between its markers. */
export function withTables(document: string, tables: Readonly<Record<string, string>>): string {
  return Object.entries(tables).reduce((text, [name, rows]) => {
    const between = new RegExp(`(<!-- table of ${name}[^>]*-->\n)[^]*?(<!-- end of ${name} -->)`);
    if (!between.test(text)) throw new Error(`the document has no markers of the table of ${name}`);
    return text.replace(between, (_, begin: string, end: string) => `${begin}\n${rows}\n\n${end}`);
  }, document);
}
