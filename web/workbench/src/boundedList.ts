/** A list that keeps its latest items: at most so many, and together at most so many bytes. */
export class BoundedList<Item> {
  private readonly sizes = new Map<Item, number>(); // oldest first
  private total = 0;

  constructor(
    private readonly limit: number,
    private readonly budget: number,
    private readonly onDrop: (item: Item) => void = () => {},
  ) {}

  get bytes(): number {
    return this.total;
  }

  /** Oldest first. */
  get items(): Iterable<Item> {
    return this.sizes.keys();
  }

  push(item: Item, bytes: number): void {
    this.sizes.set(item, bytes);
    this.total += bytes;
    for (const [old, size] of this.sizes) {
      if (this.sizes.size <= this.limit && this.total <= this.budget) break;
      this.sizes.delete(old);
      this.total -= size;
      this.onDrop(old);
    }
  }

  clear(): void {
    this.sizes.clear();
    this.total = 0;
  }
}
