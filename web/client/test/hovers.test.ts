import { describe, expect, it } from 'vitest';
import { methods, oneWayMethods, pushes, quoteFields } from '../src/index.js';
import { Editor } from './editor.js';
import { readDocument } from './markdown.js';

const editor = new Editor(`
  import { connect, type Vocabulary } from './dist/index.js';

  export const ¦sdk = connect(window.CallBridge);
  export const candles = await sdk.¦getKLineData({ symbol: 's', ¦startTime: '', stopTime: '', period: '1' });
  export const ¦list = await sdk.getEntrustList({ ¦filter: { ¦orderStatus: ['¦Filled'] }, start: 0, count: 1 });
  const [order] = list.¦entrustInfoList;
  export const values = [order!.¦entrustQty, order!.¦side, order!.status.¦userRole];
  export const [position] = await sdk.getPositionList({ fundAccounts: ['1'], ¦symbol: '' });
  export const held = position!.¦currentQty;
  sdk.on('¦tick', (tick) => tick.¦bidQtys);
  sdk.on('on_tickUpdate', (¦sameTick) => sameTick);
  sdk.on('strategyMessage', (¦customMsgID, message) => message + customMsgID);
  sdk.subStrategyMsg({ ¦subscribed: true, customMsgID: '' });

  interface MyVocabulary extends Vocabulary {
    tick: { last: bigint };
    side: 'B' | 'S';
  }
  export const own = connect<MyVocabulary>(window.CallBridge);
  own.on('tick', (tick) => tick.¦last);
  const rest = { fundAccount: '', symbol: '', exchange: '', priceType: '', price: '', qty: '', orderTag: '' };
  void own.insertOrder({ ...rest, ¦orderSide: 'B' });
  void own.insertOrder({ ...rest, orderSide: 'Buy' });
  void sdk.insertOrder({ ...rest, orderSide: 'a code of another terminal' });
  sdk.¦
`);

describe('an editor shows at', () => {
  it('a call its comment, and types by their names', () => {
    const { display, comment } = editor.hover('¦getKLineData');
    expect(display).toContain('Arguments<"getKLineData", SimulatorVocabulary>');
    expect(display).toContain('=> Promise<SimulatorCandle[]>');
    expect(comment).toMatch(/^Asks for candles\..*@returns the candles in ascending order/s);
  });

  it.each([
    ['¦startTime', 'startTime: string', 'exchange time. In the simulator "yyyyMMdd"'],
    ['¦filter', 'filter: OrderFilter<SimulatorVocabulary>', 'Conditions.'],
    ['¦orderStatus', 'readonly Code<"ToBeSent" | "Sent" |', 'States of the order'],
    ['¦symbol', 'symbol: string', 'or "" for all positions'],
    ['¦subscribed', 'subscribed: boolean', 'True begins the subscription, false ends it.'],
  ])('the argument %s its type and comment', (place, type, text) => {
    const { display, comment } = editor.hover(place);
    expect(display).toContain(type);
    expect(comment).toContain(text);
  });

  it.each([
    ['¦entrustInfoList', 'entrustInfoList: Entrust<SimulatorVocabulary>[]', 'The orders of this part.'],
    ['¦entrustQty', 'entrustQty: Cell<Json>', 'Quantity ordered, in shares, bonds or contracts.'],
    ['¦side', 'side: Cell<Code<"Buy" | "Sell" |', 'only buy or sell, for futures too'],
    ['¦userRole', 'Cell<Code<"ToBeSent" |', 'The value behind the text'],
    ['¦currentQty', 'currentQty: Json', 'Quantity held, in shares, bonds or contracts.'],
    ['¦bidQtys', 'bidQtys: number[]', 'How much is wanted at each of `bidPrices`'],
  ])('the field %s of a record its type and unit', (place, type, text) => {
    const { display, comment } = editor.hover(place);
    expect(display).toContain(type);
    expect(comment).toContain(text);
  });

  it.each([
    ['¦sdk =', 'const sdk: Connection<SimulatorVocabulary>'],
    ['¦list', 'const list: EntrustList<SimulatorVocabulary>'],
    ['¦sameTick', '(parameter) sameTick: SimulatorTick'],
    ['¦customMsgID', '(parameter) customMsgID: string'],
    ['¦last', '(property) last: bigint'],
    ['¦orderSide', '(property) orderSide: "B" | "S"'],
  ])('%s the type %s', (place, type) => {
    expect(editor.hover(place).display).toBe(type);
  });
});

describe('an editor suggests', () => {
  const calls = [...Object.keys(methods), ...Object.keys(oneWayMethods)];

  it.each(calls)('%s with its comment, and without types that only a compiler can read', (call) => {
    const { display, comment } = editor.completion('sdk.¦\n', call);
    expect(comment.length).toBeGreaterThan(20);
    expect(display).not.toMatch(/ReturnType¦typeof¦Shape</);
  });

  it('the pushes by name, and the known codes', () => {
    expect(editor.completions("'¦tick'")).toEqual(expect.arrayContaining(Object.keys(pushes)));
    expect(editor.completions("'¦Filled'")).toEqual(expect.arrayContaining(['Reported', 'Filled', 'Cancelled']));
    expect(editor.completions('tick.¦bidQtys')).toEqual(Object.keys(quoteFields).sort());
  });
});

it("a vocabulary of one's own refuses other codes, and that of the simulator accepts them", () => {
  expect(editor.errors()).toEqual([`Type '"Buy"' is not assignable to type '"B" | "S"'.`]);
});

it('the vocabulary of the documents compiles', () => {
  const code = /```ts\n([^]*?)```/.exec(readDocument('vocabulary.md'))![1]!;
  expect(new Editor(code.replace('@varnel/web-client', './dist/index.js')).errors()).toEqual([]);
});
