import { fundProperties, type Connection } from '@varnel/web-client';
import { useState } from 'react';
import { useTexts } from '../texts/useTexts';
import { useFundAccounts } from '../useFundAccounts';
import { Outcome, Panel } from './Panel';

export function AccountsPanel({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const [fundProp, setFundProp] = useState<number>(fundProperties.all);
  const accounts = useFundAccounts(sdk, fundProp);
  const choices: [number, string][] = [
    [fundProperties.all, t.all],
    [fundProperties.stock, t.propertyStock],
    [fundProperties.futures, t.propertyFutures],
  ];

  const choice = (
    <label className="inline">
      {t.fundProperty}
      <select value={fundProp} onChange={(event) => setFundProp(Number(event.target.value))}>
        {choices.map(([value, name]) => (
          <option key={value} value={value}>
            {name}
          </option>
        ))}
      </select>
    </label>
  );
  return (
    <Panel title={t.fundAccounts} tools={choice} testId="accounts">
      <Outcome of={accounts}>
        {(list) =>
          list.length === 0 ? (
            <p className="quiet">{t.noAccounts}</p>
          ) : (
            <table aria-busy={accounts.waiting}>
              <thead>
                <tr>
                  <th scope="col">{t.accountNumber}</th>
                  <th scope="col">{t.name}</th>
                </tr>
              </thead>
              <tbody>
                {list.map(({ fundAccount, fundAccountName }) => (
                  <tr key={fundAccount}>
                    <td className="figure">{fundAccount}</td>
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
