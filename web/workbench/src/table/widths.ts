/** Characters that are two columns wide in a fixed-width font: Chinese, full-width signs. */
const wide = /[\u1100-\u115f\u2e80-\ua4cf\uac00-\ud7a3\uf900-\ufaff\ufe30-\ufe6f\uff00-\uff60\uffe0-\uffe6]/g;

/** The width of a text in characters of a fixed-width font. */
export function textWidth(text: string): number {
  return text.length + (text.match(wide)?.length ?? 0);
}
