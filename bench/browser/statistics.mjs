const ascending = (a, b) => a - b;

/** A quantile of numbers in ascending order; between two of them it lies on the line. */
function quantile(sorted, part) {
  const place = part * (sorted.length - 1);
  const below = sorted[Math.floor(place)];
  return below + (sorted[Math.ceil(place)] - below) * (place - Math.floor(place));
}

export const median = (numbers) => quantile([...numbers].sort(ascending), 0.5);

/** How numbers that should be the same differ: the middle half of them lies between the quartiles. */
export function spread(numbers) {
  const sorted = [...numbers].sort(ascending);
  return { lowest: sorted[0], q1: quantile(sorted, 0.25), q3: quantile(sorted, 0.75), highest: sorted.at(-1) };
}

/**
 * Median and 99th percentile of times that a clock of the given step has measured. What the clock shows as the same time
 * lay somewhere within a step of it, so equal times are laid out evenly over that step.
 */
export function percentiles(times, step) {
  const ticks = Array.from(times, (time) => Math.round(time / step)).sort(ascending);
  for (let first = 0, end; first < ticks.length; first = end) {
    const tick = ticks[first];
    for (end = first; ticks[end] === tick;) end++;
    for (let i = first; i < end; i++) ticks[i] = tick - 0.5 + (i - first + 0.5) / (end - first);
  }
  return { p50: quantile(ticks, 0.5) * step, p99: quantile(ticks, 0.99) * step };
}

/** The mean time of so many in a row, each. */
export function meansOf(times, inARow) {
  const means = [];
  for (let i = 0; i + inARow <= times.length; i += inARow)
    means.push(times.slice(i, i + inARow).reduce((sum, time) => sum + time) / inARow);
  return means;
}
