import type { Connection } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { useTexts } from '../texts/useTexts';
import { useAsk } from '../useAsk';
import { Outcome, Panel } from './Panel';

const noInputs = { first: '', second: '' };

export function StationPanel({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const [inputs, setInputs] = useState(noInputs);
  const [asked, setAsked] = useState(noInputs);
  const station = useAsk(['station', asked], () => sdk.getOPStation(asked));

  function ask(event: FormEvent) {
    event.preventDefault();
    if (inputs === asked) station.again();
    else setAsked(inputs);
  }

  const field = (name: keyof typeof inputs, title: string) => (
    <label>
      {title}
      <input
        value={inputs[name]}
        spellCheck={false}
        onChange={(event) => setInputs({ ...inputs, [name]: event.target.value })}
      />
    </label>
  );
  return (
    <Panel title={t.station} testId="station">
      <form className="fields" onSubmit={ask}>
        {field('first', t.stationFirst)}
        {field('second', t.stationSecond)}
        <button type="submit">{t.ask}</button>
      </form>
      <Outcome of={station}>
        {(text) => (
          <output className="block" data-testid="station-answer">
            {text === '' ? t.emptyText : text}
          </output>
        )}
      </Outcome>
    </Panel>
  );
}
