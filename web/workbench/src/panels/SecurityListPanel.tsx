import { securityTypes, type Connection, type SecurityClass, type SecurityEntry } from '@varnel/web-client';
import { useMemo, useState, type FormEvent } from 'react';
import { commaParts } from '../freeCall';
import { DataTable } from '../table/DataTable';
import { symbolColumn, symbolOf } from '../table/symbolColumn';
import type { Column } from '../table/types';
import type { Texts } from '../texts';
import { useTexts } from '../texts/useTexts';
import { useAsk } from '../useAsk';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  chosen: string;
  onChoose: (symbol: string) => void;
}

const anyClass = { securityType: '', securitySubType: '', securityPost: '' };

/** An empty list of classes selects every security, so an empty form gives an empty list. */
function classes({ securityType, securitySubType, securityPost }: typeof anyClass): SecurityClass[] {
  if (!securityType && !securitySubType && !securityPost) return [];
  return [{ securityType, securitySubType: commaParts(securitySubType), securityPost: commaParts(securityPost) }];
}

function columnsOf(t: Texts, onChoose: (symbol: string) => void): readonly Column<SecurityEntry>[] {
  return [
    symbolColumn(t, onChoose),
    { key: 'displayName', title: t.name, kind: 'text', value: ({ displayName }) => displayName },
    { key: 'spellName', title: t.field('spellName'), kind: 'text', value: ({ spellName }) => spellName },
  ];
}

export function SecurityListPanel({ sdk, chosen, onChoose }: Props) {
  const t = useTexts();
  const [wanted, setWanted] = useState(anyClass);
  const [asked, setAsked] = useState(anyClass);
  const list = useAsk(['securities', asked], () => sdk.getSymbolList({ symbolFilter: classes(asked) }));
  const columns = useMemo(() => columnsOf(t, onChoose), [t, onChoose]);

  function ask(event: FormEvent) {
    event.preventDefault();
    if (wanted === asked) list.again();
    else setAsked(wanted);
  }

  const field = (name: 'securitySubType' | 'securityPost', text: string) => (
    <label>
      {text}
      <input
        value={wanted[name]}
        placeholder={t.any}
        spellCheck={false}
        onChange={(event) => setWanted({ ...wanted, [name]: event.target.value.trim() })}
      />
    </label>
  );

  return (
    <Panel title={t.securityList} className="fill" testId="securities">
      <form className="fields" onSubmit={ask}>
        <label>
          {t.securityType}
          <select
            value={wanted.securityType}
            onChange={(event) => setWanted({ ...wanted, securityType: event.target.value })}
          >
            <option value="">{t.all}</option>
            {Object.values(securityTypes).map((type) => (
              <option key={type} value={type}>
                {t.code('securityType', type)}
              </option>
            ))}
          </select>
        </label>
        {field('securitySubType', t.securitySubTypes)}
        {field('securityPost', t.securityPosts)}
        <button type="submit">{t.ask}</button>
      </form>
      <Outcome of={list}>
        {(all) => (
          <DataTable
            name="securities"
            label={t.securityList}
            columns={columns}
            items={all}
            idOf={symbolOf}
            busy={list.waiting}
            testId="security-list"
            chosenId={chosen}
          />
        )}
      </Outcome>
    </Panel>
  );
}
