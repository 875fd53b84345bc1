import { strategyLanguages, type Connection, type Json, type StrategyAnswer } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { commaParts, readJson } from '../freeCall';
import { useTexts } from '../texts/useTexts';
import { useCommand } from '../useCommand';
import { useFundAccounts } from '../useFundAccounts';
import { CommandOutcome } from './CommandOutcome';
import { Panel } from './Panel';

interface Props {
  sdk: Connection;
  onStarted: (strategyID: string, status: string) => void;
}

const opening = {
  filePath: 'strategies/grid.py',
  language: String(strategyLanguages.python),
  fundAccounts: '',
  basicParam: '{}',
  extension: '""',
};

/** What programmers call the languages, in any language. */
const languageNames: Readonly<Record<keyof typeof strategyLanguages, string>> = {
  python: 'Python',
  cpp: 'C++',
  javascript: 'JavaScript',
};

/** Starts a strategy. The platform checks and reads the parameters. */
export function StartStrategyPanel({ sdk, onStarted }: Props) {
  const t = useTexts();
  const accounts = useFundAccounts(sdk);
  const [form, setForm] = useState(opening);
  const [command, run] = useCommand<StrategyAnswer>();
  const first = accounts.data?.[0]?.fundAccount ?? '';
  const fundAccounts = commaParts(form.fundAccounts || first);
  const basicParam = readJson(form.basicParam);
  const extension = readJson(form.extension);
  const isWhole = basicParam.ok && extension.ok && fundAccounts.length > 0;

  function start(event: FormEvent) {
    event.preventDefault();
    if (!basicParam.ok || !extension.ok) return;
    const { filePath } = form;
    const language = Number(form.language);
    const started = { filePath, language, fundAccounts, basicParam: basicParam.value, extension: extension.value };
    run(async () => {
      const answer = await sdk.startStrategy(started);
      onStarted(answer.strategyID, String(answer.strategyStatus));
      return answer;
    });
  }

  const field = (name: Exclude<keyof typeof opening, 'language'>, title: string, placeholder = '') => (
    <label className="wide">
      {title}
      <input
        value={form[name]}
        placeholder={placeholder}
        spellCheck={false}
        aria-invalid={(name === 'basicParam' && !basicParam.ok) || (name === 'extension' && !extension.ok)}
        onChange={(event) => setForm({ ...form, [name]: event.target.value })}
      />
    </label>
  );
  return (
    <Panel title={t.startStrategy} testId="start-strategy">
      <form className="fields" onSubmit={start}>
        {field('filePath', t.strategyFile)}
        <label>
          {t.programmingLanguage}
          <select value={form.language} onChange={(event) => setForm({ ...form, language: event.target.value })}>
            {Object.entries(languageNames).map(([code, name]) => (
              <option key={code} value={strategyLanguages[code as keyof typeof languageNames]}>
                {name}
              </option>
            ))}
          </select>
        </label>
        {field('fundAccounts', t.accountsWithCommas, first)}
        {field('basicParam', t.basicParameters)}
        {field('extension', t.extension)}
        <button type="submit" disabled={!isWhole || command.phase === 'busy'}>
          {command.phase === 'busy' ? t.starting : t.start}
        </button>
      </form>
      <div className="outcome" data-testid="start-outcome">
        <CommandOutcome command={command}>
          {({ strategyID, ExtField }) => (
            <p>
              {t.started} <code>{strategyID}</code> <small>{layOutShort(ExtField)}</small>
            </p>
          )}
        </CommandOutcome>
      </div>
    </Panel>
  );
}

function layOutShort(extension: Json): string {
  return extension === '' || extension === null ? '' : JSON.stringify(extension);
}
