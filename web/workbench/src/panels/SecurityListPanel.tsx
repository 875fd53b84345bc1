import { securityTypes, type Connection, type SecurityClass, type SecurityEntry } from '@varnel/web-client';
import { useEffect, useMemo, useState, type FormEvent } from 'react';
import { commaParts } from '../freeCall';
import { useAnswer } from '../useAnswer';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  chosen: string;
  onChoose: (symbol: string) => void;
}

const typeNames = {
  [securityTypes.share]: '股票',
  [securityTypes.fund]: '基金',
  [securityTypes.bond]: '债券',
  [securityTypes.future]: '期货',
};

const anyClass = { securityType: '', securitySubType: '', securityPost: '' };

/** An empty list of classes selects every security, so an empty form gives an empty list. */
function classes({ securityType, securitySubType, securityPost }: typeof anyClass): SecurityClass[] {
  if (!securityType && !securitySubType && !securityPost) return [];
  return [{ securityType, securitySubType: commaParts(securitySubType), securityPost: commaParts(securityPost) }];
}

/** Whether the typed text matches the security. */
function matches({ symbol, displayName, spellName }: SecurityEntry, typed: string): boolean {
  return [symbol, displayName, spellName].some((text) => text.toUpperCase().includes(typed));
}

export function SecurityListPanel({ sdk, chosen, onChoose }: Props) {
  const [wanted, setWanted] = useState(anyClass);
  const [typed, setTyped] = useState('');
  const [list, follow] = useAnswer<SecurityEntry[]>();
  useEffect(() => follow(sdk.getSymbolList({ symbolFilter: [] })), [sdk, follow]);

  const found = useMemo(() => {
    const sought = typed.trim().toUpperCase();
    return (list.data ?? []).filter((entry) => matches(entry, sought));
  }, [list.data, typed]);

  function ask(event: FormEvent) {
    event.preventDefault();
    follow(sdk.getSymbolList({ symbolFilter: classes(wanted) }));
  }

  const field = (name: 'securitySubType' | 'securityPost', text: string, hint: string) => (
    <label>
      {text} <small>{hint}</small>
      <input
        value={wanted[name]}
        placeholder="全部 any"
        spellCheck={false}
        onChange={(event) => setWanted({ ...wanted, [name]: event.target.value.trim() })}
      />
    </label>
  );

  return (
    <Panel title="证券" hint="Securities" className="fill" testId="securities">
      <form className="fields" onSubmit={ask}>
        <label>
          类别 <small>type</small>
          <select
            value={wanted.securityType}
            onChange={(event) => setWanted({ ...wanted, securityType: event.target.value })}
          >
            <option value="">全部 all</option>
            {Object.entries(typeNames).map(([value, name]) => (
              <option key={value} value={value}>
                {name} {value}
              </option>
            ))}
          </select>
        </label>
        {field('securitySubType', '子类别', 'sub-types')}
        {field('securityPost', '板块', 'boards')}
        <button type="submit">查询 Ask</button>
      </form>
      <label className="inline search">
        查找 <small>find</small>
        <input
          type="search"
          value={typed}
          placeholder="代码、名称、拼音 code, name, spelling"
          spellCheck={false}
          onChange={(event) => setTyped(event.target.value)}
        />
      </label>
      <Outcome of={list}>
        {(all) => (
          <>
            <p className="quiet" data-testid="securities-found">
              {found.length} / {all.length} 只 <small>securities</small>
            </p>
            <div className="scroll">
              <table aria-busy={list.waiting} data-testid="security-list">
                <thead>
                  <tr>
                    <th scope="col">标识</th>
                    <th scope="col">名称</th>
                    <th scope="col">拼音</th>
                  </tr>
                </thead>
                <tbody>
                  {found.map((entry) => (
                    <tr key={entry.symbol} aria-current={entry.symbol === chosen || undefined}>
                      <td>
                        <button type="button" className="link number" onClick={() => onChoose(entry.symbol)}>
                          {entry.symbol}
                        </button>
                      </td>
                      <td>{entry.displayName}</td>
                      <td className="name">{entry.spellName}</td>
                    </tr>
                  ))}
                </tbody>
              </table>
            </div>
          </>
        )}
      </Outcome>
    </Panel>
  );
}
