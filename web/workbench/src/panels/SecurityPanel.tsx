import type { SecurityDetail } from '@varnel/web-client';
import { fieldNames } from '../columns';
import type { Answered } from '../useAnswer';
import { written } from '../values';
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
  return (
    <Panel title="证券详情" hint="Details" testId="security-detail">
      <Outcome of={detail}>
        {(security) => (
          <dl className="details">
            {shown.map((key) => (
              <div key={key} data-key={key}>
                <dt title={key}>{fieldNames[key]}</dt>
                <dd>
                  {typeof security?.[key] === 'boolean' ? (security[key] ? '是' : '否') : written(security?.[key])}
                </dd>
              </div>
            ))}
          </dl>
        )}
      </Outcome>
    </Panel>
  );
}
