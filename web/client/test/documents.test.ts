import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';

const root = new URL('../../../', import.meta.url);
const documents = [
  'README.md',
  'CONTRIBUTING.md',
  'CHANGELOG.md',
  'web/client/README.md',
  'web/workbench/README.md',
  'examples/page/README.md',
].concat(
  readdirSync(new URL('docs/', root))
    .filter((name) => name.endsWith('.md'))
    .map((name) => `docs/${name}`),
);

const withoutCode = (url: URL) => readFileSync(url, 'utf8').replace(/^```[^]*?^```/gm, '');

/** The anchors of a document's headings, as GitHub makes them. */
function anchorsOf(url: URL): string[] {
  const headings = [...withoutCode(url).matchAll(/^#+ (.*)$/gm)].map(([, text]) => text!.toLowerCase());
  return headings.map((text) => text.replace(/[^\p{L}\p{N}_ -]/gu, '').replace(/ /g, '-'));
}

describe.each(documents)('%s', (document) => {
  const url = new URL(document, root);

  it('links only to what is there', () => {
    const links = [...withoutCode(url).matchAll(/\]\(([^)\s]+)\)/g)].map(([, link]) => new URL(link!, url));
    const files = links.filter(({ protocol }) => protocol === 'file:');
    const broken = files.filter(({ href, hash }) => {
      const target = new URL(href.replace(/#.*/, ''));
      return !existsSync(target) || (hash && !anchorsOf(target).includes(decodeURIComponent(hash.slice(1))));
    });
    expect(broken.map(({ href }) => href)).toEqual([]);
  });
});
