import { Ajv, type ValidateFunction } from 'ajv';

type Schema = Record<string, unknown>;

interface ContentDescriptor {
  $ref?: string;
  name?: string;
  required?: boolean;
  schema?: Schema;
}

interface Described {
  name: string;
  params: ContentDescriptor[];
  result?: { required: boolean; schema: Schema };
  'x-reply-event'?: string;
  'x-answers-empty'?: boolean;
}

/** The parts of an OpenRPC document that are used here. */
export interface OpenRpcDocument {
  methods: Described[];
  'x-pushes': Described[];
  components: {
    contentDescriptors: Record<string, ContentDescriptor>;
    schemas: Record<string, Schema>;
  };
}

interface Checks {
  args: ValidateFunction;
  result?: ValidateFunction;
  resultRequired?: boolean;
}

/**
 * Compares calls, replies and pushes with the document. Records must have no keys that the document does not have, so that
 * it cannot fall behind.
 */
export class WireCheck {
  private readonly ajv = new Ajv({ strict: true, allErrors: true, allowUnionTypes: true });
  private readonly methods = new Map<string, Checks>();
  private readonly replies = new Map<string, Checks & { method: string; answersEmpty: boolean }>();
  private readonly pushes = new Map<string, Checks>();
  private readonly reply: ValidateFunction;

  /** `known` takes the place of schemas that the terminal defines. */
  constructor(
    private readonly document: OpenRpcDocument,
    known: Record<string, Schema> = {},
  ) {
    this.ajv.removeKeyword('contentSchema'); // it is only an annotation by itself
    this.ajv.addKeyword({
      keyword: 'contentSchema',
      type: 'string',
      schemaType: 'object',
      compile: (schema: Schema) => {
        const check = this.compile(schema);
        return (text: string) => check(JSON.parse(text));
      },
    });
    const { schemas } = document.components;
    for (const [name, schema] of Object.entries({ ...schemas, ...known }))
      this.ajv.addSchema(closed(schema), `#/components/schemas/${name}`);
    this.reply = this.compile({ $ref: '#/components/schemas/Reply' });
    for (const each of document.methods) {
      const checks = this.checksOf(each);
      this.methods.set(each.name, checks);
      if (each['x-reply-event'])
        this.replies.set(each['x-reply-event'], {
          ...checks,
          method: each.name,
          answersEmpty: each['x-answers-empty'] ?? false,
        });
    }
    for (const each of document['x-pushes']) this.pushes.set(each.name, this.checksOf(each));
  }

  /** What is wrong with the arguments of a call, or undefined. */
  sent(method: string, args: readonly unknown[]): string | undefined {
    const checks = this.methods.get(method);
    return checks ? this.problem(method, checks.args, args) : `${method} is not described`;
  }

  /** What is wrong with the arguments of an event, or undefined. */
  received(event: string, args: readonly unknown[]): string | undefined {
    const push = this.pushes.get(event);
    if (push) return this.problem(event, push.args, args);
    const checks = this.replies.get(event);
    if (!checks) return `${event} is not described`;
    const [text] = args;
    if (text === '' && args.length === 1) return undefined; // too few arguments, or the answer itself
    if (checks.answersEmpty) return `${event} is not empty`;
    const reply = JSON.parse(text as string) as { code: string; resultData?: unknown };
    const problem = this.problem(event, this.reply, reply);
    if (problem || reply.code !== '0') return problem;
    if (!('resultData' in reply)) return checks.resultRequired ? `${event} has no resultData` : undefined;
    return this.problem(`${event} resultData`, checks.result!, reply.resultData);
  }

  private checksOf({ params, result }: Described): Checks {
    const items = params.map(({ $ref, schema }) => closed(($ref ? this.descriptor($ref).schema : schema)!));
    const tuple = { type: 'array', ...(items.length > 0 && { items }), minItems: items.length, maxItems: items.length };
    return {
      args: this.compile(tuple),
      ...(result && { result: this.compile(closed(result.schema)), resultRequired: result.required }),
    };
  }

  private descriptor(reference: string): ContentDescriptor {
    return this.document.components.contentDescriptors[reference.replace('#/components/contentDescriptors/', '')]!;
  }

  private compile(schema: Schema): ValidateFunction {
    return this.ajv.compile(schema);
  }

  private problem(name: string, check: ValidateFunction, data: unknown): string | undefined {
    if (check(data)) return undefined;
    return `${name}: ${this.ajv.errorsText(check.errors)} in ${JSON.stringify(data)}`;
  }
}

/** The same schema, whose records have no other keys than the named ones. */
function closed(schema: Schema): Schema {
  const inner = Object.entries(schema).map(([keyword, value]) => [keyword, closedValue(keyword, value)]);
  return { ...Object.fromEntries(inner), ...('properties' in schema && { additionalProperties: false }) };
}

function closedValue(keyword: string, value: unknown): unknown {
  if (keyword === 'items' || keyword === 'contentSchema') return closed(value as Schema);
  if (keyword === 'anyOf' || keyword === 'allOf') return (value as Schema[]).map(closed);
  if (keyword !== 'properties') return value;
  return Object.fromEntries(Object.entries(value as Record<string, Schema>).map(([key, each]) => [key, closed(each)]));
}
