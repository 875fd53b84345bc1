import { answerTime, rowOf, textLength, type Entry, type Lost, type Row, type RowKind } from './entry';
import { Measure, Rate, type MethodStatistics } from './statistics';

export interface Bounds {
  rows: number;
  /** Characters of the arguments. */
  text: number;
}

const usualBounds: Bounds = { rows: 20_000, text: 32 * 2 ** 20 };

/** What stays when the bounds are reached. Dropping moves all other rows, so many are dropped at a time. */
const keptShare = 0.9;

/** A page can call any name. Those above this number are counted together. */
const maxMethods = 500;

const rateKinds = ['call', 'reply', 'push'] as const;

export interface Snapshot {
  /** The kept rows, oldest first. */
  rows: readonly Row[];
  /** The pages that were opened and not closed, and those that kept rows name, ascending. */
  pages: readonly number[];
  methods: readonly MethodStatistics[];
  /** Each second. */
  rates: Readonly<Record<(typeof rateKinds)[number], number>>;
  /** All rows since the page was opened. */
  total: number;
  /** Entries that the simulator could not send, because this page was too slow. */
  lost: number;
  /** µs since the simulator began. */
  now: number;
}

/** What the simulator tells, with its ends joined to their rows. Bounded. */
export class TrafficStore {
  private rows: Row[] = [];
  private readonly byNumber = new Map<number, Row>();
  private readonly lengths = new Map<Row, number>();
  private text = 0;
  private total = 0;
  private lost = 0;
  private readonly pages = new Set<number>();
  private readonly methods = new Map<string, MethodStatistics>();
  private readonly rates = { call: new Rate(), reply: new Rate(), push: new Rate() };
  private latest = { time: 0, heardMs: 0 };

  constructor(
    private readonly bounds = usualBounds,
    private readonly clockMs: () => number = () => performance.now(),
  ) {}

  add(batch: readonly (Entry | Lost)[]): void {
    for (const entry of batch) {
      if (entry.kind === 'lost') this.lost += entry.count;
      else this.addOne(entry);
    }
    if (this.rows.length > this.bounds.rows || this.text > this.bounds.text) this.drop();
  }

  clear(): void {
    this.rows = [];
    this.byNumber.clear();
    this.lengths.clear();
    this.text = this.total = this.lost = 0;
    this.methods.clear();
  }

  /** For the beginning of another connection, which tells everything anew. */
  restart(): void {
    this.clear();
    this.pages.clear();
    this.latest = { time: 0, heardMs: 0 };
    for (const kind of rateKinds) this.rates[kind] = new Rate();
  }

  snapshot(): Snapshot {
    const now = this.latest.time + (this.latest.time && (this.clockMs() - this.latest.heardMs) * 1000);
    return {
      rows: [...this.rows],
      pages: [...this.pages].sort((a, b) => a - b),
      methods: [...this.methods.values()],
      rates: { call: this.rates.call.at(now), reply: this.rates.reply.at(now), push: this.rates.push.at(now) },
      total: this.total,
      lost: this.lost,
      now,
    };
  }

  private addOne(entry: Entry): void {
    this.latest = { time: entry.time ?? 0, heardMs: this.clockMs() };
    const row = rowOf(entry);
    if (row) this.addRow(row);
    else this.end(entry);
  }

  private addRow(row: Row): void {
    const { entry, kind } = row;
    const length = textLength(entry.args);
    this.rows.push(row);
    this.byNumber.set(entry.number, row);
    this.lengths.set(row, length);
    this.text += length;
    ++this.total;
    if (entry.page) this.pages.add(entry.page);
    if (isRateKind(kind)) this.rates[kind].add(entry.time ?? 0);
    if (kind === 'call') ++this.methodOf(row).calls;
    const call = kind === 'reply' ? this.byNumber.get(entry.call ?? 0) : undefined;
    if (call) call.reply ??= row;
  }

  private end(entry: Entry): void {
    const row = this.byNumber.get(entry.of ?? 0);
    if (!row) return; // it has been dropped
    row.end = entry;
    if (row.kind === 'call') this.methodOf(row).held.add(entry.duration ?? 0);
    const call = row.kind === 'reply' ? this.byNumber.get(row.entry.call ?? 0) : undefined;
    const time = call?.reply === row ? answerTime(call) : undefined;
    if (time !== undefined) this.methodOf(call!).answered.add(time);
  }

  private methodOf({ entry }: Row): MethodStatistics {
    const known = this.methods.has(entry.name ?? '') || this.methods.size < maxMethods;
    const name = known ? (entry.name ?? '') : '…';
    let method = this.methods.get(name);
    if (!method) {
      method = { name, calls: 0, held: new Measure(), answered: new Measure() };
      this.methods.set(name, method);
    }
    return method;
  }

  private drop(): void {
    const rows = this.bounds.rows * keptShare;
    const text = this.bounds.text * keptShare;
    let dropped = 0;
    while (dropped < this.rows.length && (this.rows.length - dropped > rows || this.text > text)) {
      const row = this.rows[dropped++]!;
      this.byNumber.delete(row.entry.number);
      this.text -= this.lengths.get(row)!;
      this.lengths.delete(row);
    }
    this.rows.splice(0, dropped);
  }
}

function isRateKind(kind: RowKind): kind is (typeof rateKinds)[number] {
  return (rateKinds as readonly string[]).includes(kind);
}
