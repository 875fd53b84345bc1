import { linkSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { dirname, join } from 'node:path';

/** A folder with the simulator for one test, because the terminal keeps its settings beside its program. */
export class Home {
  readonly folder: string;
  readonly program: string;

  constructor(simulator = process.env.VARNEL_SIMULATOR!) {
    this.folder = mkdtempSync(join(dirname(simulator), 'home-'));
    this.program = join(this.folder, 'varnel-simulator');
    linkSync(simulator, this.program); // a hard link, not a copy
  }

  /** The settings file of a login, as it stands. */
  settings(login: string): string {
    return readFileSync(join(this.folder, 'work', login, 'WebSettings.ini'), 'utf8');
  }

  remove(): void {
    rmSync(this.folder, { recursive: true });
  }
}
