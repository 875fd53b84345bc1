import type { Connection } from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import { useAnswer } from '../useAnswer';
import { Outcome, Panel } from './Panel';

export function StationPanel({ sdk }: { sdk: Connection }) {
  const [first, setFirst] = useState('');
  const [second, setSecond] = useState('');
  const [station, follow] = useAnswer<string>();

  useEffect(() => follow(sdk.getOPStation({ first: '', second: '' })), [sdk, follow]);

  function ask(event: FormEvent) {
    event.preventDefault();
    follow(sdk.getOPStation({ first, second }));
  }

  return (
    <Panel title="操作站点" hint="Operator station" testId="station">
      <form className="fields" onSubmit={ask}>
        <label>
          站点信息一 <small>first</small>
          <input value={first} onChange={(event) => setFirst(event.target.value)} spellCheck={false} />
        </label>
        <label>
          站点信息二 <small>second</small>
          <input value={second} onChange={(event) => setSecond(event.target.value)} spellCheck={false} />
        </label>
        <button type="submit">查询 Ask</button>
      </form>
      <Outcome of={station}>
        {(text) => (
          <output className="block" data-testid="station-answer">
            {text === '' ? '（空 empty）' : text}
          </output>
        )}
      </Outcome>
    </Panel>
  );
}
