import type { SecurityDetail } from '@varnel/web-client';
import { useFormats } from '../formats';
import { useTexts } from '../texts/useTexts';
import type { Answered } from '../useAnswer';
import { Outcome, Panel } from './Panel';

const shown = [
  'symbol',
  'displayName',
  'spellName',
  'securityId',
  'exchange',
  'securityType',
  'securitySubType',
  'precision',
  'priceUnit',
  'priceLimitType',
  'qtyUnit',
  'qtyStep',
  'qtyPrecision',
  'minQty',
  'maxQty',
  'stockInterest',
] as const satisfies (keyof SecurityDetail)[];

export function SecurityPanel({ detail }: { detail: Answered<SecurityDetail | undefined> }) {
  const t = useTexts();
  const formats = useFormats();
  const write = (security: SecurityDetail, key: (typeof shown)[number]) => {
    const value = security[key];
    if (typeof value === 'boolean') return value ? t.yes : t.no;
    return key === 'securityType' ? t.code('securityType', security[key]) : formats.value(value);
  };
  return (
    <Panel title={t.securityDetails} testId="security-detail">
      <Outcome of={detail}>
        {(security) =>
          security && (
            <dl className="details">
              {shown.map((key) => (
                <div key={key} data-key={key}>
                  <dt title={key}>{t.field(key)}</dt>
                  <dd>{write(security, key)}</dd>
                </div>
              ))}
            </dl>
          )
        }
      </Outcome>
    </Panel>
  );
}
