import { QueryClient, QueryClientProvider } from '@tanstack/react-query';
import { useEffect, type ReactNode } from 'react';
import { useSetting } from '../settings/useSetting';
import { locales, textsOf } from '../texts';
import { languageKey, preferredLanguage, readLanguage, TextsContext } from '../texts/useTexts';
import { DeskContext, type Desk } from './DeskContext';

/** The answers that panels share. */
export const queries = new QueryClient({
  defaultOptions: {
    queries: {
      // The bridge is no network: it works without one. A call is never repeated by itself.
      networkMode: 'always',
      retry: false,
      refetchOnWindowFocus: false,
      refetchOnReconnect: false,
    },
  },
});

/** Gives everything inside it the desk, its language and the answers that panels share. */
export function Providers({ desk, children }: { desk: Desk; children: ReactNode }) {
  return (
    <DeskContext value={desk}>
      <QueryClientProvider client={queries}>
        <InLanguage>{children}</InLanguage>
      </QueryClientProvider>
    </DeskContext>
  );
}

function InLanguage({ children }: { children: ReactNode }) {
  const [language] = useSetting(languageKey, readLanguage, preferredLanguage());
  const texts = textsOf(language);
  useEffect(() => {
    document.documentElement.lang = locales[language];
    document.title = texts.title;
  }, [language, texts]);
  return <TextsContext value={texts}>{children}</TextsContext>;
}
