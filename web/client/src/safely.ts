/** A listener that throws does not stop the others. Its error becomes an uncaught one. */
export function callSafely(task: () => void): void {
  try {
    task();
  } catch (error) {
    setTimeout(() => {
      throw error;
    });
  }
}

/** Listeners of one kind. A function that is added twice is called twice. */
export class Listeners<Event> {
  private readonly all = new Set<{ readonly listener: (event: Event) => void }>();

  readonly add = (listener: (event: Event) => void): (() => void) => {
    const own = { listener };
    this.all.add(own);
    return () => void this.all.delete(own);
  };

  tell(event: Event): void {
    for (const own of [...this.all]) if (this.all.has(own)) callSafely(() => own.listener(event));
  }

  clear(): void {
    this.all.clear();
  }
}
