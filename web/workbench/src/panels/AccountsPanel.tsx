import { fundProperties, type Connection, type FundAccount } from '@varnel/web-client';
import { useEffect, useState } from 'react';
import { useAnswer } from '../useAnswer';
import { Outcome, Panel } from './Panel';

const choices: [number, string][] = [
  [fundProperties.all, '全部 all'],
  [fundProperties.stock, '股票 stock'],
  [fundProperties.futures, '期货 futures'],
];

export function AccountsPanel({ sdk }: { sdk: Connection }) {
  const [fundProp, setFundProp] = useState<number>(fundProperties.all);
  const [accounts, follow] = useAnswer<FundAccount[]>();
  useEffect(() => follow(sdk.getFundAccountList({ fundProp })), [sdk, follow, fundProp]);

  const choice = (
    <label className="inline">
      属性
      <select value={fundProp} onChange={(event) => setFundProp(Number(event.target.value))}>
        {choices.map(([value, name]) => (
          <option key={value} value={value}>
            {value} {name}
          </option>
        ))}
      </select>
    </label>
  );
  return (
    <Panel title="资产账号" hint="Fund accounts" tools={choice} testId="accounts">
      <Outcome of={accounts}>
        {(list) =>
          list.length === 0 ? (
            <p className="quiet">此属性下无账号 none of this property</p>
          ) : (
            <table aria-busy={accounts.waiting}>
              <thead>
                <tr>
                  <th scope="col">账号</th>
                  <th scope="col">名称</th>
                </tr>
              </thead>
              <tbody>
                {list.map(({ fundAccount, fundAccountName }) => (
                  <tr key={fundAccount}>
                    <td className="number">{fundAccount}</td>
                    <td>{fundAccountName}</td>
                  </tr>
                ))}
              </tbody>
            </table>
          )
        }
      </Outcome>
    </Panel>
  );
}
