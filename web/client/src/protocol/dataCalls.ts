import type { Method } from './calls.js';

/** Parameters that several calls have. A comment must stand in the file of the call, or the packed types lose it. */

const fundAccount = {
  /** Fund account, as `getFundAccountList` names it, such as "880010001". */
  fundAccount: 'text',
} as const;

const symbol = {
  /** Symbol of the security, such as "609801.SH". Case matters. */
  symbol: 'text',
} as const;

const symbols = {
  /** Symbols of the securities, such as "609801.SH". Case matters. The list must not be empty. */
  symbols: 'commaList',
} as const;

const classes = {
  /**
   * Classes of securities: the answer has what belongs to at least one of them. The terminal decides what an empty
   * list means.
   */
  symbolFilter: 'securityClasses',
} as const;

/** Calls about the login, securities, quotes, settings and permissions. */
export const dataCalls = {
  /**
   * Asks for the token of the login.
   * @returns the token
   */
  getToken: { method: 'Data_getToken_REQ', parameters: {}, answer: 'text' },

  /**
   * Asks who is logged in.
   * @returns the login account
   */
  getLoginTrader: { method: 'Data_getLoginTrader_REQ', parameters: {}, answer: 'text' },

  /**
   * Asks for all traders of the organisation.
   * @returns identifiers of the traders, ascending
   */
  getTraderList: { method: 'Data_getTraderList_REQ', parameters: {}, answer: 'texts' },

  /**
   * Asks for the fund accounts of the login.
   * @returns the fund accounts in the terminal's order
   */
  getFundAccountList: {
    method: 'Data_getFundAccountList_REQ',
    parameters: {
      /**
       * Which accounts. The terminal decides which numbers there are; `fundProperties` has those of the simulator: 0
       * all, 1 stock, 2 futures.
       */
      fundProp: 'integer',
    },
    answer: 'fundAccounts',
  },

  /**
   * Asks for the text that describes this station to the exchange.
   * @returns the station's text with the page's pieces
   */
  getOPStation: {
    method: 'Data_getOPStation_REQ',
    parameters: {
      /** First piece of station information of the page. It may be empty. */
      first: 'text',
      /** Second piece of station information of the page. It may be empty. */
      second: 'text',
    },
    answer: 'text',
  },

  /**
   * Lists securities by class, with their names.
   * @returns the securities, each once
   */
  getSymbolList: { method: 'Data_getSymbolList_REQ', parameters: { ...classes }, answer: 'securityEntries' },

  /**
   * Lists securities by class, with all their details.
   * @returns the securities, each once
   */
  getSymbolListWithDetail: {
    method: 'Data_getSymbolListWithDetail_REQ',
    parameters: { ...classes },
    answer: 'securityDetails',
  },

  /**
   * Asks for the details of securities.
   * @returns one entry for each symbol, in their order; that of an unknown symbol is empty
   */
  getSymbolDetail: { method: 'Data_getSymbolDetail_REQ', parameters: { ...symbols }, answer: 'securityDetails' },

  /**
   * Asks for the current quote of a security. `subscribe` brings its changes.
   * @returns the quote, whose fields the terminal defines; in the simulator that of an unknown symbol is empty
   */
  getCurrentTick: { method: 'Data_getCurrentTick_REQ', parameters: { ...symbol }, answer: 'tick' },

  /** Subscribes the page to quotes: each change comes as the push `tick`. A second subscription changes nothing. */
  subscribe: { method: 'Sub_subscribe_REQ', parameters: { ...symbols }, answer: 'nothing' },

  /** Ends subscriptions of the page to quotes. Watches of the client keep theirs. */
  unsubscribe: { method: 'UnSub_subscribe_REQ', parameters: { ...symbols }, answer: 'nothing' },

  /** Ends all subscriptions of the page to quotes. Watches of the client keep theirs. */
  unsubscribeAll: { method: 'UnSub_subscribeAll_REQ', parameters: {}, answer: 'nothing' },

  /**
   * Asks for candles. **No answer comes when there is no candle**: for an unknown symbol or an empty range, so that the
   * call ends in a `TimeoutError`.
   * @returns the candles in ascending order of time; the terminal defines their fields
   */
  getKLineData: {
    method: 'Data_getKLineData_REQ',
    parameters: {
      ...symbol,
      /**
       * Start of the range in exchange time. In the simulator "yyyyMMdd", "yyyyMMddHHmmss", or "" for the first candle
       * of all.
       */
      startTime: 'text',
      /**
       * End of the range in exchange time; it belongs to the range. In the simulator "yyyyMMdd", "yyyyMMddHHmmss", or
       * "" for now.
       */
      stopTime: 'text',
      /**
       * "1" is the terminal's first period, any other text the second. In the simulator these are a minute and a day:
       * `klinePeriods`.
       */
      period: 'text',
    },
    answer: 'candles',
    deferred: true,
  },

  /**
   * Does nothing: the terminal has no such analysis.
   * @returns always the empty text
   */
  getUpsDownsAnalysis: {
    method: 'Data_getUpsDownsAnalysis_REQ',
    parameters: {
      /** Any text. */
      first: 'text',
      /** Any text. */
      second: 'text',
      /** Any text. */
      third: 'text',
    },
    answer: 'text',
    answersEmpty: true,
  },

  /**
   * Reads a setting of the login account. All pages share the settings, and they survive a restart.
   * @returns what was saved; the empty text when nothing was
   */
  getSetting: {
    method: 'Data_getSetting_REQ',
    parameters: {
      /** Key of letters, digits, dots and underscores, such as "my_page.columns". */
      key: 'text',
    },
    answer: 'text',
  },

  /**
   * Saves a setting of the login account.
   * @returns always the empty text
   */
  saveSetting: {
    method: 'Data_saveSetting_REQ',
    parameters: {
      /** Key of letters, digits, dots and underscores, such as "my_page.columns". The empty key saves nothing. */
      key: 'text',
      /** Any text. */
      value: 'text',
    },
    answer: 'text',
  },

  /**
   * Asks whether a fund account may use a kind of algorithms.
   * @returns 1 or 0, not true or false; 0 for an unknown account or type
   */
  getPermission: {
    method: 'Data_getPermission_REQ',
    parameters: {
      ...fundAccount,
      /** Support type of the algorithms, such as "KFZ;SNB". */
      supportType: 'text',
    },
    answer: 'permission',
  },

  /**
   * Asks the terminal to open its menu of permissions.
   * @returns always the empty text; it does not tell whether the menu opened
   */
  openPermissionMenu: { method: 'Data_openPermissionMenu_REQ', parameters: {}, answer: 'text' },
} as const satisfies Record<string, Method>;
