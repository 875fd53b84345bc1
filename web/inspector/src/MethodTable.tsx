import { milliseconds } from './format';
import type { Measure, MethodStatistics } from './statistics';
import { useTexts } from './texts';

function figures(measure: Measure): string {
  const [half, most] = [measure.quantile(0.5), measure.quantile(0.99)];
  return half === undefined || most === undefined
    ? '—'
    : [half, most, measure.max].map((us) => milliseconds(us).replace(' ms', '')).join(' / ');
}

interface Props {
  methods: readonly MethodStatistics[];
  onMethod: (method: string) => void;
}

/** Times of each method, the most called first. */
export function MethodTable({ methods, onMethod }: Props) {
  const t = useTexts();
  const sorted = [...methods].sort((a, b) => b.calls - a.calls || (a.name < b.name ? -1 : 1));
  return (
    <section className="panel" data-testid="methods">
      <h2>
        {t.statistics} <small>ms</small>
      </h2>
      <table>
        <thead>
          <tr>
            <th scope="col">{t.method}</th>
            <th scope="col">{t.calls}</th>
            <th scope="col">{t.heldFigures}</th>
            <th scope="col">{t.answeredFigures}</th>
          </tr>
        </thead>
        <tbody>
          {sorted.map((method) => (
            <tr key={method.name} data-name={method.name}>
              <th scope="row">
                <button type="button" className="link" onClick={() => onMethod(method.name)}>
                  {method.name || '""'}
                </button>
              </th>
              <td>{method.calls}</td>
              <td>{figures(method.held)}</td>
              <td>{figures(method.answered)}</td>
            </tr>
          ))}
        </tbody>
      </table>
    </section>
  );
}
