import { describe, expect, it } from 'vitest';
import { envelopeOf } from '../src/envelope';

describe('the envelope of a reply', () => {
  it.each([
    ['{"code":"0","msg":"","resultData":[],"uuid":"u1"}', '0', 'u1'],
    ['{"code":"-1","msg":"","uuid":"\\"uuid\\":\\\\"}', '-1', '"uuid":\\'],
    ['{"code":"0","resultData":{"uuid":"inner"},"uuid":"outer"}', '0', 'outer'],
    ['{"code":"0","uuid":"outer","resultData":{"uuid":"inner"}}', '0', 'outer'],
    ['{"code":"0","uuid":"outer","resultData":"\\"uuid\\":\\"inner\\"}"}', '0', 'outer'],
    ['{"uuid":"u1","code":"0"}', '0', 'u1'],
    ['{"code":"0","resultData":{"uuid":"inner"}}', '0', undefined],
  ])('%s', (text, code, uuid) => {
    expect(envelopeOf(text)).toMatchObject({ code, ...(uuid !== undefined && { uuid }) });
    expect(envelopeOf(text)?.uuid).toBe(uuid);
  });

  it.each(['', 'null', 'no JSON', 7, undefined])('%j has none', (text) => {
    expect(envelopeOf(text)).toBeUndefined();
  });
});
