import { fileURLToPath } from 'node:url';
import ts from 'typescript';

const folder = fileURLToPath(new URL('..', import.meta.url));

export interface Comment {
  text: string;
  /** What the terminal answers: what `@wire` says, or else `@returns`. */
  answered: string;
}

/** Reads the comments of what src/index.ts exports. */
export class Comments {
  private readonly checker: ts.TypeChecker;
  private readonly exports: ReadonlyMap<string, ts.Symbol>;

  constructor() {
    const read = ts.readConfigFile(`${folder}tsconfig.build.json`, (path) => ts.sys.readFile(path));
    const { options, fileNames } = ts.parseJsonConfigFileContent(read.config, ts.sys, folder);
    const program = ts.createProgram(fileNames, options);
    this.checker = program.getTypeChecker();
    const index = this.checker.getSymbolAtLocation(program.getSourceFile(`${folder}src/index.ts`)!)!;
    this.exports = new Map(
      this.checker.getExportsOfModule(index).map((symbol) => [symbol.name, this.original(symbol)]),
    );
  }

  /**
   * The comment of an exported type or constant, or of a property within it: ('methods', 'getToken'). Fails when there is
   * none.
   */
  of(name: string, ...path: string[]): Comment {
    const symbol = path.reduce((parent, property) => this.property(parent, property), this.exported(name));
    const text = ts.displayPartsToString(symbol.getDocumentationComment(this.checker)).replace(/\s+/g, ' ');
    if (text === '') throw new Error(`${[name, ...path].join('.')} has no comment`);
    const tags = new Map(symbol.getJsDocTags(this.checker).map((tag) => [tag.name, ts.displayPartsToString(tag.text)]));
    return { text, answered: (tags.get('wire') ?? tags.get('returns') ?? '').replace(/\s+/g, ' ') };
  }

  /** The type of what a call's promise gives. */
  resultOf(call: string): string {
    const [signature] = this.checker
      .getTypeOfSymbol(this.property(this.exported('Connection'), call))
      .getCallSignatures();
    const written = this.checker.typeToString(signature!.getReturnType());
    return written
      .replace(/^Promise<(.*)>$/, '$1')
      .replace(/<(?:SimulatorVocabulary|V)>|Simulator(?=Tick|Candle)/g, '');
  }

  /** The type of a property of an exported interface, as its source has it, without the vocabulary. */
  typeOf(name: string, property: string): string {
    const declaration = this.property(this.exported(name), property).declarations![0] as ts.PropertySignature;
    return declaration
      .type!.getText()
      .replace(/V\['\w+'\]/g, 'string')
      .replace(/<V>|readonly /g, '');
  }

  private exported(name: string): ts.Symbol {
    const found = this.exports.get(name);
    if (!found) throw new Error(`src/index.ts does not export ${name}`);
    return found;
  }

  private original(symbol: ts.Symbol): ts.Symbol {
    return symbol.flags & ts.SymbolFlags.Alias ? this.checker.getAliasedSymbol(symbol) : symbol;
  }

  private property(parent: ts.Symbol, name: string): ts.Symbol {
    const isType = parent.flags & (ts.SymbolFlags.Interface | ts.SymbolFlags.TypeAlias);
    const type = isType ? this.checker.getDeclaredTypeOfSymbol(parent) : this.checker.getTypeOfSymbol(parent);
    const found = type.getProperty(name);
    if (!found) throw new Error(`${parent.name} has no ${name}`);
    return found;
  }
}
