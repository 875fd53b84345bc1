import { withParts, type TextTable } from './table';

/** The desk around the views, and what every panel uses. */
export const common = {
  title: ['模拟工作台', 'Varnel Workbench'],
  cannotStart: ['模拟工作台无法启动', 'The workbench cannot start'],
  openFromSimulator: ['请从模拟终端打开此页面。', 'Open this page from the simulator.'],
  simulation: ['模拟环境 · 非真实行情与交易', 'Simulation · no real quotes, no real trading'],
  loginTrader: ['登录交易员', 'Login trader'],
  madeUp: ['所有账户、证券与行情均为虚构。', 'All accounts, securities and quotes are made up.'],
  charts: ['图表：', 'Charts: '],
  notices: ['许可声明', 'Notices'],

  connecting: ['连接中', 'Connecting'],
  connected: ['已连接', 'Connected'],
  reconnecting: ['正在重新连接', 'Reconnecting'],
  disconnected: ['已断开', 'Disconnected'],
  pleaseReload: ['请刷新页面', 'Please reload the page'],

  language: ['语言', 'Language'],
  theme: ['主题', 'Theme'],
  themeSystem: ['跟随系统', 'System'],
  themeLight: ['浅色', 'Light'],
  themeDark: ['深色', 'Dark'],
  settingsNotRead: ['设置读取失败', 'The settings could not be read'],
  settingsNotSaved: ['设置保存失败', 'The settings could not be saved'],

  views: ['视图', 'Views'],
  overview: ['总览', 'Overview'],
  trade: ['交易', 'Trade'],
  securities: ['证券', 'Securities'],
  orders: ['委托与成交', 'Orders'],
  holdings: ['资产与持仓', 'Holdings'],
  strategies: ['策略', 'Strategies'],
  resizeHandle: ['调整面板大小', 'Resize the panels'],

  waiting: ['等待应答…', 'Waiting for the answer…'],
  notAskedYet: ['尚未查询', 'Not asked yet'],
  noAnswerWithin: withParts(
    (seconds: number) => `${seconds} 秒内无应答`,
    (seconds: number) => `No answer within ${seconds} seconds`,
  ),
  notSent: ['未发送：没有连接', 'Not sent: there is no connection'],
  closedWhileWaiting: ['等待应答时连接已断开', 'The connection ended before the answer came'],
  unreadableAnswer: ['应答无法解读', 'The answer could not be read'],
  refusedCall: ['终端拒绝了请求', 'The terminal refused the request'],
  outcomeUnknown: ['结果未知', 'The outcome is unknown'],

  ask: ['查询', 'Ask'],
  refresh: ['刷新', 'Refresh'],
  find: ['查找', 'Find'],
  add: ['添加', 'Add'],
  cancel: ['取消', 'Cancel'],
  close: ['关闭', 'Close'],
  yes: ['是', 'Yes'],
  no: ['否', 'No'],
  all: ['全部', 'All'],
  any: ['不限', 'Any'],
  none: ['无', 'None'],
  nothingYet: ['暂无', 'Nothing yet'],
  emptyText: ['（空）', '(empty)'],
  newestFirst: withParts(
    (title: string) => `${title}，新的在前`,
    (title: string) => `${title}, newest first`,
  ),
  account: ['资产账号', 'Account'],
  symbol: ['证券标识', 'Symbol'],

  filterRows: ['筛选', 'Filter'],
  filterRowsOf: withParts(
    (table: string) => `筛选：${table}`,
    (table: string) => `Filter: ${table}`,
  ),
  columns: ['列', 'Columns'],
  columnsOf: withParts(
    (table: string) => `选择列：${table}`,
    (table: string) => `Columns: ${table}`,
  ),
  resetColumns: ['恢复默认列', 'Reset the columns'],
  actions: ['操作', 'Actions'],
  rowCount: withParts(
    (count: string) => `${count} 条`,
    (count: string) => `${count} rows`,
  ),
  rowCountOf: withParts(
    (count: string, all: string) => `${count} / ${all} 条`,
    (count: string, all: string) => `${count} of ${all} rows`,
  ),
  noRows: ['无记录', 'No records'],
  noMatchingRows: ['没有符合筛选的记录', 'No records match the filter'],

  up: ['涨', 'up'],
  down: ['跌', 'down'],
} as const satisfies TextTable;
