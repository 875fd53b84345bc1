import { useEffect, useMemo, useState, useSyncExternalStore } from 'react';
import { useChoice } from './choice';
import type { Control } from './control';
import { ControlPanel } from './ControlPanel';
import { Details } from './Details';
import type { Row, RowKind } from './entry';
import { filtered, type Filter } from './filter';
import { follow } from './follow';
import { Header } from './Header';
import type { LiveTraffic } from './live';
import { MethodTable } from './MethodTable';
import { jsonLines, saveAs } from './save';
import { languages, locales, TextsContext, textsOf, type Language } from './texts';
import { Timeline } from './Timeline';
import { Tools } from './Tools';
import type { Snapshot } from './TrafficStore';
import { Warnings } from './Warnings';

/** Quotes come all the time and say little about calls; host calls and the bus are shown with their call. */
const usualKinds: ReadonlySet<RowKind> = new Set(['page', 'call', 'reply', 'push', 'command']);

const preferred: Language = navigator.language.toLowerCase().startsWith('zh') ? 'zh' : 'en';

export function App({ live, control }: { live: LiveTraffic; control: Control }) {
  const [language, setLanguage] = useChoice('inspector.language', languages, preferred);
  const t = useMemo(() => textsOf(language), [language]);
  useEffect(() => {
    document.documentElement.lang = locales[language];
    document.title = `${t.title} · Varnel Inspector`;
  }, [language, t]);

  const { phase, traffic: current } = useSyncExternalStore(live.watch, live.current);
  const [paused, setPaused] = useState<Snapshot>();
  const traffic = paused ?? current;
  const [filter, setFilter] = useState<Filter>({ page: 0, kinds: usualKinds, method: '', text: '' });
  const [chosen, setChosen] = useState<Row>();
  const shown = useMemo(() => filtered(traffic.rows, filter).reverse(), [traffic.rows, filter]);
  const followed = useMemo(() => chosen && follow(chosen, traffic.rows), [chosen, traffic.rows]);

  return (
    <TextsContext.Provider value={t}>
      <Header phase={phase} language={language} onLanguage={setLanguage} />
      <main className="inspector">
        <Tools
          traffic={traffic}
          shown={shown.length}
          filter={filter}
          onFilter={setFilter}
          isPaused={paused !== undefined}
          onPause={(pause) => setPaused(pause ? live.current().traffic : undefined)}
          onClear={() => {
            live.clear();
            setPaused(undefined);
            setChosen(undefined);
          }}
          onSave={() => saveAs('traffic.jsonl', jsonLines(traffic.rows))}
        />
        <Timeline rows={shown} now={traffic.now} chosen={chosen} onChoose={setChosen} />
        <aside>
          <ControlPanel control={control} language={language} />
          {chosen && followed && (
            <Details chosen={chosen} followed={followed} onChoose={setChosen} onClose={() => setChosen(undefined)} />
          )}
          <Warnings traffic={traffic} page={filter.page} onChoose={setChosen} />
          <MethodTable
            methods={traffic.methods}
            onMethod={(method) => setFilter({ ...filter, method, kinds: new Set([...filter.kinds, 'call', 'reply']) })}
          />
        </aside>
      </main>
    </TextsContext.Provider>
  );
}
