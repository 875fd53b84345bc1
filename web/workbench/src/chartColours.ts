export interface ChartColours {
  text: string;
  line: string;
  /** Behind the candles. */
  ground: string;
  up: string;
  down: string;
}

/** The colours of the theme, as the style sheets have them. */
export function chartColours(element: Element): ChartColours {
  const style = getComputedStyle(element);
  const colour = (name: string) => style.getPropertyValue(name).trim();
  return {
    text: colour('--chart-text'),
    line: colour('--chart-grid'),
    ground: colour('--panel'),
    up: colour('--chart-up'),
    down: colour('--chart-down'),
  };
}
