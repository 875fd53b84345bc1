import { createContext, useContext } from 'react';
import { languages, textsOf, type Language, type Texts } from '.';

/** Chinese for browsers in Chinese, otherwise English. */
export function preferredLanguage(ofBrowser = navigator.language): Language {
  return ofBrowser.toLowerCase().startsWith('zh') ? 'zh' : 'en';
}

export const languageKey = 'workbench.language';

export function readLanguage(value: unknown): Language | undefined {
  return languages.find((language) => language === value);
}

export const TextsContext = createContext<Texts>(textsOf('en'));

/** The texts in the language of the desk. */
export function useTexts(): Texts {
  return useContext(TextsContext);
}
