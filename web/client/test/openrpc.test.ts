import { Ajv } from 'ajv';
import { createRequire } from 'node:module';
import { format } from 'prettier';
import { describe, expect, it } from 'vitest';
import { entrustKeys, methods, oneWayMethods, pushes } from '../src/index.js';
import { Comments } from '../tools/comments.js';
import { openRpcDocument } from '../tools/openrpc.js';
import { WireCheck, type OpenRpcDocument } from '../tools/wireCheck.js';
import { asset, detail, order, page, position } from './samples.js';

// These packages have types for documents, but declare no values.
const load = createRequire(import.meta.url);
const { openrpcDocument: metaSchema } = load('@open-rpc/meta-schema') as { openrpcDocument: Record<string, unknown> };
const { jsonSchema } = load('@json-schema-tools/meta-schema') as { jsonSchema: Record<string, unknown> };

/** They name themselves, or each other, as their own meta-schema, which ajv does not know. */
function withoutMetaSchema({ $schema: _, ...schema }: Record<string, unknown>): Record<string, unknown> {
  return schema;
}

const document = openRpcDocument(new Comments()) as OpenRpcDocument;

describe('docs/openrpc.json', () => {
  it('says what the tables say; npm run documents -w web/client writes it anew', async () => {
    const text = await format(JSON.stringify(document), { parser: 'json', printWidth: 120 });
    await expect(text).toMatchFileSnapshot('../../../docs/openrpc.json');
  });

  it('is a valid OpenRPC document', () => {
    const ajv = new Ajv({ strict: false, validateFormats: false });
    ajv.addSchema(withoutMetaSchema(jsonSchema));
    ajv.addSchema({ $ref: 'https://meta.json-schema.tools/' }, 'https://meta.json-schema.tools');
    const validate = ajv.compile(withoutMetaSchema(metaSchema));
    expect(validate(document), ajv.errorsText(validate.errors)).toBe(true);
    expect(validate({ ...document, methods: [{ name: 'no params' }] })).toBe(false);
  });

  it('describes every call and push', () => {
    const calls = Object.values({ ...methods, ...oneWayMethods }).map(({ method }) => method);
    expect(document.methods.map(({ name }) => name)).toEqual(calls);
    expect(document['x-pushes'].map(({ name }) => name)).toEqual(Object.values(pushes).map(({ event }) => event));
  });
});

describe('the schemas', () => {
  const wire = new WireCheck(document);
  const reply = (resultData: unknown, code: unknown = '0') => [
    JSON.stringify({ code, msg: '', resultData, uuid: 'u' }),
  ];

  it('accept arguments as they travel', () => {
    expect(wire.sent('Data_getEntrustList_REQ', ['u', JSON.stringify(page.filter), 0, 1])).toBeUndefined();
    expect(wire.sent('Vlx_subStrategyMsg_REQ', ['u', 'S1', '1'])).toBeUndefined();
  });

  it.each([
    ['Data_getToken_REQ', [], 'fewer than 1'],
    ['Data_getToken_REQ', [1], 'must be string'],
    ['Data_getToken_REQ', ['u', 'more'], 'more than 1'],
    ['Data_getFundAccountList_REQ', ['u', '1'], 'must be integer'],
    ['Data_getFundAccountList_REQ', ['u', 2 ** 31], 'must be <='],
    ['Data_getEntrustList_REQ', ['u', page.filter, 0, 1], 'must be string'],
    ['Data_getEntrustList_REQ', ['u', '{"status":[]}', 0, 1], 'contentSchema'],
    ['Trade_insertOrderList_REQ', ['u', 'f', '', '[{"symbol":"s"}]'], 'contentSchema'],
    ['Vlx_subStrategyMsg_REQ', ['u', 'S1', 'true'], 'allowed values'],
    ['Data_getBuffer_REQ', ['u'], 'is not described'],
  ])('refuse a call %s whose arguments are wrong (%#)', (method, args, reason) => {
    expect(wire.sent(method, args)).toContain(reason);
  });

  it.each([
    ['Data_getToken_RES', reply('T')],
    ['Data_getToken_RES', ['']],
    ['Data_getTradableQty_RES', reply(undefined)],
    ['Sub_subscribe_RES', reply(undefined)],
    ['Data_getUpsDownsAnalysis_RES', ['']],
    ['Data_getSymbolDetail_RES', reply([detail])],
    ['Data_getPositionList_RES', reply([position])],
    ['Trade_insertOrder_RES', reply(undefined, '-1')],
    ['on_AssetUpdate', ['']],
    ['on_AssetUpdate', ['{}']],
    ['on_AssetUpdate', [JSON.stringify(asset)]],
    ['on_entrustUpdate', [JSON.stringify([order])]],
    ['on_orderLoaded', []],
    ['on_vlxStrategyStatusUpdate', ['S1', 'Running']],
  ])('accept %s (%#)', (event, args) => {
    expect(wire.received(event, args)).toBeUndefined();
  });

  const { side, ...withoutSide } = order;
  it.each([
    ['Data_getToken_RES', reply(1), 'must be string'],
    ['Data_getToken_RES', reply(undefined), 'has no resultData'],
    ['Data_getToken_RES', reply('T', 0), 'code must be string'],
    ['Data_getUpsDownsAnalysis_RES', reply(''), 'is not empty'],
    ['Data_getPermission_RES', reply(true), 'allowed values'],
    ['Data_getEntrustList_RES', reply({ totalSize: 1, size: 1, entrustInfoList: [withoutSide] }), "property 'side'"],
    ['Data_getSymbolDetail_RES', reply([{ ...detail, more: 1 }]), 'additional properties'],
    ['on_entrustUpdate', [JSON.stringify([{ ...order, side: { displayRole: side } }])], 'contentSchema'],
    ['on_AssetUpdate', [JSON.stringify({ ...asset, profit: 1 })], 'contentSchema'],
    ['on_orderLoaded', ['more'], 'more than 0'],
    ['on_callError', [], 'is not described'],
  ])('refuse a wrong %s (%#)', (event, args, reason) => {
    expect(wire.received(event, args)).toContain(reason);
  });

  it('of records have a comment for each field', () => {
    const { properties } = document.components.schemas.Entrust as {
      properties: Record<string, { description: string }>;
    };
    expect(Object.keys(properties)).toEqual([...entrustKeys]);
    expect(properties.sideUnion!.description).toContain('whether a future is opened or closed');
  });
});
