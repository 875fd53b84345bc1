/** The latest values of a measure are enough for its quantiles. */
const keptValues = 1000;

/** Values in µs. */
export class Measure {
  count = 0;
  max = 0;
  private readonly values: number[] = [];

  add(value: number): void {
    this.values[this.count % keptValues] = value;
    ++this.count;
    this.max = Math.max(this.max, value);
  }

  /** Of the latest values: the smallest that is not below the share of them. */
  quantile(share: number): number | undefined {
    const sorted = [...this.values].sort((a, b) => a - b);
    return sorted[Math.max(0, Math.ceil(share * sorted.length) - 1)];
  }
}

export interface MethodStatistics {
  name: string;
  calls: number;
  /** How long its calls held the user-interface thread. */
  held: Measure;
  /** From its calls to the end of writing their replies. */
  answered: Measure;
}

const secondUs = 1_000_000;
const shownSeconds = 5;

/** How many come each second, on average of the last five. */
export class Rate {
  private readonly counts = new Map<number, number>(); // by second

  add(timeUs: number): void {
    const second = Math.floor(timeUs / secondUs);
    this.counts.set(second, (this.counts.get(second) ?? 0) + 1);
    for (const old of this.counts.keys()) {
      if (old >= second - shownSeconds) break;
      this.counts.delete(old);
    }
  }

  at(timeUs: number): number {
    const second = Math.floor(timeUs / secondUs);
    let total = 0;
    for (let back = 1; back <= shownSeconds; ++back) total += this.counts.get(second - back) ?? 0;
    return total / shownSeconds;
  }
}
