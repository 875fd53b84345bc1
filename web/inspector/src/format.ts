/** µs as ms. */
export function milliseconds(us: number): string {
  const ms = us / 1000;
  return `${ms.toFixed(ms < 10 ? 2 : ms < 100 ? 1 : 0)} ms`;
}

export function bytes(size: number): string {
  if (size < 1000) return `${size} B`;
  return size < 1_000_000 ? `${(size / 1000).toFixed(1)} kB` : `${(size / 1_000_000).toFixed(1)} MB`;
}

/** µs since the simulator began, as minutes, seconds and milliseconds. */
export function clock(us: number): string {
  const ms = Math.floor(us / 1000);
  const minutes = Math.floor(ms / 60_000);
  return `${String(minutes).padStart(2, '0')}:${String(Math.floor(ms / 1000) % 60).padStart(2, '0')}.${String(ms % 1000).padStart(3, '0')}`;
}

/** Exchange time, which the simulator counts as if its clock showed UTC: wherever the browser is, it shows the same. */
export function exchangeClock(ms: number): string {
  return new Date(ms).toISOString().slice(0, 19).replace('T', ' ');
}

/** Pretty JSON of a text that is JSON, and of any other value. Other texts stay as they are. */
export function laidOut(value: unknown): string {
  let shown = value;
  if (typeof value === 'string' && value !== '') {
    if (!/^[[{]/.test(value)) return value;
    try {
      shown = JSON.parse(value);
    } catch {
      return value; // it was cut, or it only begins like JSON
    }
  }
  return JSON.stringify(shown, null, 2);
}
