import { fileURLToPath } from 'node:url';
import ts from 'typescript';

const folder = fileURLToPath(new URL('..', import.meta.url));
const pagePath = `${folder}page.ts`;

/** The declarations of the package, as `npm run build` writes them, by path. */
function makeDeclarations(): { files: ReadonlyMap<string, string>; options: ts.CompilerOptions } {
  const read = ts.readConfigFile(`${folder}tsconfig.build.json`, (path) => ts.sys.readFile(path));
  const { options, fileNames } = ts.parseJsonConfigFileContent(read.config, ts.sys, folder);
  const files = new Map<string, string>();
  const program = ts.createProgram(fileNames, { ...options, emitDeclarationOnly: true });
  program.emit(undefined, (path, text) => files.set(path, text));
  return { files, options };
}

let made: ReturnType<typeof makeDeclarations> | undefined;
const declarations = () => (made ??= makeDeclarations());

/** All editors share the files that they have read. */
const registry = ts.createDocumentRegistry();

/** What an editor shows at a place of a page. */
export interface Shown {
  /** The type or signature, on one line. */
  display: string;
  /** The comment with its tags. */
  comment: string;
}

const textOf = (parts: readonly ts.SymbolDisplayPart[] | undefined) => ts.displayPartsToString([...(parts ?? [])]);

function shown(info: Pick<ts.QuickInfo, 'displayParts' | 'documentation' | 'tags'>): Shown {
  const tags = (info.tags ?? []).map(({ name, text }) => `@${name} ${textOf(text)}`);
  return {
    display: textOf(info.displayParts).replace(/\s+/g, ' '),
    comment: [textOf(info.documentation), ...tags].join('\n'),
  };
}

/** An editor with a page that uses the package as its users have it: only through its declarations. */
export class Editor {
  private readonly service: ts.LanguageService;

  /** `¦` marks places in the page: the first character of a name, or where a name is to be completed. */
  constructor(private readonly page: string) {
    const { files: declared, options } = declarations();
    const files = new Map([...declared, [pagePath, page.replace(/¦/g, '')]]);
    const host: ts.LanguageServiceHost = {
      getCompilationSettings: () => ({ ...options, noEmit: true, declaration: false }),
      getScriptFileNames: () => [pagePath],
      getScriptVersion: (path) => (path === pagePath ? page : ''),
      getScriptSnapshot: (path) => {
        const text = files.get(path) ?? ts.sys.readFile(path);
        return text === undefined ? undefined : ts.ScriptSnapshot.fromString(text);
      },
      getCurrentDirectory: () => folder,
      getDefaultLibFileName: ts.getDefaultLibFilePath,
      fileExists: (path) => files.has(path) || ts.sys.fileExists(path),
      readFile: (path) => files.get(path) ?? ts.sys.readFile(path),
    };
    this.service = ts.createLanguageService(host, registry);
  }

  /** Errors of the page, without the places. */
  errors(): string[] {
    return this.service
      .getSemanticDiagnostics(pagePath)
      .map(({ messageText }) => ts.flattenDiagnosticMessageText(messageText, '\n'));
  }

  /** What hovering shows at the mark before this text. */
  hover(marked: string): Shown {
    const info = this.service.getQuickInfoAtPosition(pagePath, this.position(marked));
    if (!info) throw new Error(`nothing is shown at ${marked}`);
    return shown(info);
  }

  /** What a list of completions shows for a name, at the mark before this text. */
  completion(marked: string, name: string): Shown {
    const at = this.position(marked);
    const details = this.service.getCompletionEntryDetails(
      pagePath,
      at,
      name,
      undefined,
      undefined,
      undefined,
      undefined,
    );
    if (!details) throw new Error(`no completion ${name} at ${marked}`);
    return shown(details);
  }

  /** The names in the list of completions. */
  completions(marked: string): string[] {
    const list = this.service.getCompletionsAtPosition(pagePath, this.position(marked), undefined);
    return (list?.entries ?? []).map(({ name }) => name);
  }

  private position(marked: string): number {
    const at = this.page.indexOf(marked);
    if (!marked.includes('¦') || at < 0) throw new Error(`the page has no "${marked}"`);
    return this.page.slice(0, at + marked.indexOf('¦')).replace(/¦/g, '').length;
  }
}
