import { readFileSync } from 'node:fs';
import { methods, oneWayMethods, pushes, type Call, type OneWayCall, type PushName } from '../src/index.js';
import type { Method, OneWayMethod } from '../src/protocol/calls.js';
import type { Push } from '../src/protocol/pushes.js';
import { replyTo } from '../src/protocol.js';
import { answers, parameters } from '../src/readings.js';
import type { JsonSchema } from '../src/shapes.js';
import { simulatorCandle, simulatorTick } from '../src/vocabulary.js';
import type { Comments } from './comments.js';

/** A schema of the document: records stand for themselves, under `#/components/schemas`. */
type DocumentSchema = { readonly [keyword: string]: unknown };

const { version } = JSON.parse(readFileSync(new URL('../package.json', import.meta.url), 'utf8')) as {
  version: string;
};

const about = `Calls and pushes between a web page and the trading terminal, over \`window.CallBridge\`. \
docs/protocol.md describes the protocol in full.

**This is not JSON-RPC**, although OpenRPC describes it well:

- A page sends a call with \`CallBridge.invokeMethod(method, uuid, …)\`. The params here are the arguments after the name
  of the method, by position. The first one, the uuid, is the identifier of the call.
- The answer is an event: \`CallBridge.addEventListener(name, listener)\`, with the name in \`x-reply-event\`. Its only
  argument is a JSON text: a \`Reply\`, whose \`resultData\` is what \`result\` describes.
- The code of a failure is a text, "-1", not a number.
- With too few arguments, the argument of the event is the empty text, without uuid.
- A text with \`contentMediaType\` "application/json" holds JSON: \`contentSchema\` describes what it holds. It is text all
  the same, and the terminal refuses an object in its place.
- A call with \`x-one-way\` has no reply. A call with \`x-deferred\` is answered when another service has answered: answers
  may overtake each other, and one may never come. \`x-has-side-effects\` marks calls that trade, start or stop something:
  never repeat one that got no answer.
- \`x-pushes\` describes the events that come without a call: the name of the event, and its arguments by position as
  OpenRPC describes parameters. \`x-name\` is the name of a push, and \`x-call\` of a call, in the client.
- The terminal defines the codes, and the fields of quotes (\`Tick\`) and candles (\`Candle\`). \`SimulatorTick\` and
  \`SimulatorCandle\` are those of the simulator, and the examples are its codes.`;

/** Describes the protocol as an OpenRPC document. */
export function openRpcDocument(comments: Comments): object {
  const schemas: Record<string, DocumentSchema> = {};

  /** Puts every named record where all can refer to it, with the comments of its type. */
  function published(schema: JsonSchema): DocumentSchema {
    const { title, items, properties, contentSchema, ...rest } = schema;
    const inner: DocumentSchema = {
      ...rest,
      ...(items && { items: published(items) }),
      ...(contentSchema && { contentSchema: published(contentSchema) }),
      ...(properties && {
        properties: Object.fromEntries(
          Object.entries(properties).map(([key, property]) => [
            key,
            title ? described(published(property), comments.of(title, key).text) : published(property),
          ]),
        ),
      }),
    };
    if (title === undefined) return inner;
    schemas[title] ??= { title, description: comments.of(title).text, ...inner };
    return { $ref: `#/components/schemas/${title}` };
  }

  function params(table: string, call: string, row: OneWayMethod) {
    const own = Object.entries(row.parameters).map(([name, reading]) => {
      const { text } = comments.of(table, call, 'parameters', name);
      return { name, description: text, required: true, schema: published(parameters[reading].wire) };
    });
    return [{ $ref: '#/components/contentDescriptors/uuid' }, ...own];
  }

  function answeredCall(call: Call): object {
    const row: Method = methods[call];
    const answer = answers[row.answer];
    const { text, answered } = comments.of('methods', call);
    return {
      name: row.method,
      description: text,
      'x-call': call,
      'x-reply-event': replyTo(row.method),
      ...(row.deferred && { 'x-deferred': true }),
      ...(row.hasSideEffects && { 'x-has-side-effects': true }),
      ...(row.answersEmpty && { 'x-answers-empty': true }),
      paramStructure: 'by-position',
      params: params('methods', call, row),
      result: {
        name: 'resultData',
        description: answered || 'nothing',
        required: !answer.optional,
        schema: published(answer.schema),
      },
      errors: [{ $ref: '#/components/errors/Failure' }],
    };
  }

  function oneWay(call: OneWayCall): object {
    const row: OneWayMethod = oneWayMethods[call];
    return {
      name: row.method,
      description: comments.of('oneWayMethods', call).text,
      'x-call': call,
      'x-one-way': true,
      paramStructure: 'by-position',
      params: params('oneWayMethods', call, row),
    };
  }

  function push(name: PushName): object {
    const { event, json, texts = [], mayBeEmpty }: Push = pushes[name];
    const jsonText = json && {
      type: 'string',
      contentMediaType: 'application/json',
      contentSchema: published(json.schema),
    };
    const schema = mayBeEmpty ? { anyOf: [{ type: 'string', enum: ['', '{}'] }, jsonText] } : jsonText;
    return {
      name: event,
      description: comments.of('pushes', name).text,
      'x-name': name,
      params: [
        ...(schema ? [{ name: 'content', required: true, schema }] : []),
        ...texts.map((text) => ({ name: text, required: true, schema: { type: 'string' } })),
      ],
    };
  }

  const calls = [
    ...(Object.keys(methods) as Call[]).map(answeredCall),
    ...(Object.keys(oneWayMethods) as OneWayCall[]).map(oneWay),
  ];
  const events = (Object.keys(pushes) as PushName[]).map(push);
  published(simulatorTick.schema);
  published(simulatorCandle.schema);

  return {
    openrpc: '1.3.2',
    info: { title: 'VarnelWebSDK page protocol', version, description: about },
    methods: calls,
    'x-pushes': events,
    components: {
      contentDescriptors: {
        uuid: {
          name: 'uuid',
          description: 'Identifier of the call, a text of the page. The reply carries it unchanged.',
          required: true,
          schema: { type: 'string' },
        },
      },
      errors: {
        Failure: { code: -1, message: 'The code travels as the text "-1". The reason stands in msg, for people.' },
      },
      schemas: { Reply: reply, ...schemas },
    },
  };
}

const reply: DocumentSchema = {
  title: 'Reply',
  description: 'What the JSON text of a reply holds.',
  type: 'object',
  properties: {
    code: { type: 'string', description: '"0" for success, "-1" for failure.' },
    msg: { type: 'string', description: 'Usually empty on success, otherwise the reason, for people.' },
    resultData: { description: 'The answer. It may be missing after a failure.' },
    uuid: { type: 'string', description: 'The identifier of the call.' },
  },
  required: ['code', 'msg', 'uuid'],
  additionalProperties: false,
};

/** A reference has no room for a description, so it stands beside it. */
function described(schema: DocumentSchema, description: string): DocumentSchema {
  return '$ref' in schema ? { description, allOf: [schema] } : { description, ...schema };
}
