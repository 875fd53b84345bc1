import { strategyLanguages, type Connection, type Json, type StrategyAnswer } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { commaParts, readJson } from '../freeCall';
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

/** Starts a strategy. The platform checks and reads the parameters. */
export function StartStrategyPanel({ sdk, onStarted }: Props) {
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

  const field = (name: Exclude<keyof typeof opening, 'language'>, text: string, hint: string, placeholder = '') => (
    <label className="wide">
      {text} <small>{hint}</small>
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
    <Panel title="启动策略" hint="Start a strategy" testId="start-strategy">
      <form className="fields" onSubmit={start}>
        {field('filePath', '文件', 'file path')}
        <label>
          语言 <small>language</small>
          <select value={form.language} onChange={(event) => setForm({ ...form, language: event.target.value })}>
            {Object.entries(strategyLanguages).map(([name, number]) => (
              <option key={name} value={number}>
                {number} {name}
              </option>
            ))}
          </select>
        </label>
        {field('fundAccounts', '资产账号', 'accounts, with commas', first)}
        {field('basicParam', '基本参数', 'basic parameters, JSON')}
        {field('extension', '扩展', 'extension, JSON')}
        <button type="submit" disabled={!isWhole || command.phase === 'busy'}>
          {command.phase === 'busy' ? '启动中…' : '启动 Start'}
        </button>
      </form>
      <div className="outcome" data-testid="start-outcome">
        <CommandOutcome command={command}>
          {({ strategyID, ExtField }) => (
            <p>
              已启动 started <code>{strategyID}</code> <small>{layOutShort(ExtField)}</small>
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
