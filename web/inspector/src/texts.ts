import { createContext, useContext } from 'react';
import { withParts, type InOneLanguage, type TextTable } from '../../workbench/src/texts/table';

const table = {
  title: ['调用记录', 'Inspector'],
  about: ['页面与模拟终端之间的往来', 'What passes between pages and the simulated terminal'],
  connecting: ['连接中', 'Connecting'],
  open: ['已连接', 'Connected'],
  closed: ['已断开，正在重连', 'Disconnected, connecting again'],
  language: ['语言', 'Language'],
  theme: ['主题', 'Theme'],
  themeSystem: ['跟随系统', 'As the system'],
  themeLight: ['浅色', 'Light'],
  themeDark: ['深色', 'Dark'],

  page: ['页面', 'Page'],
  allPages: ['所有页面', 'All pages'],
  pageNumber: withParts(
    (number: number) => `页面 ${number}`,
    (number: number) => `Page ${number}`,
  ),
  method: ['方法', 'Method'],
  allMethods: ['所有方法', 'All methods'],
  search: ['查找', 'Search'],
  searchHint: ['名称、调用编号或参数', 'Name, uuid or arguments'],
  kinds: ['种类', 'Kinds'],
  kindPage: ['页面', 'Pages'],
  kindCall: ['调用', 'Calls'],
  kindReply: ['应答', 'Replies'],
  kindPush: ['推送', 'Pushes'],
  kindCommand: ['命令', 'Commands'],
  kindHost: ['终端接口', 'Host calls'],
  kindBus: ['消息总线', 'Message bus'],
  kindQuote: ['行情', 'Quotes'],
  pause: ['暂停', 'Pause'],
  clear: ['清空', 'Clear'],
  save: ['保存为 JSON Lines', 'Save as JSON Lines'],
  rates: withParts(
    (calls: string, replies: string, pushes: string) => `每秒：调用 ${calls} · 应答 ${replies} · 推送 ${pushes}`,
    (calls: string, replies: string, pushes: string) =>
      `Each second: ${calls} calls · ${replies} replies · ${pushes} pushes`,
  ),
  shown: withParts(
    (shown: string, kept: string, total: string) => `显示 ${shown} / 保留 ${kept} / 共 ${total} 条`,
    (shown: string, kept: string, total: string) => `${shown} shown / ${kept} kept / ${total} in all`,
  ),
  lost: withParts(
    (count: string) => `本页太慢，丢失 ${count} 条`,
    (count: string) => `This page was too slow: ${count} entries are lost`,
  ),

  timeline: ['时间线，最新在上', 'Timeline, newest first'],
  nothingYet: ['暂无', 'Nothing yet'],
  time: ['时间', 'Time'],
  name: ['名称', 'Name'],
  uuid: ['调用编号', 'uuid'],
  size: ['大小', 'Size'],
  held: ['占用界面线程', 'Held the UI thread'],
  toPage: ['到达页面', 'To the page'],
  pageOpened: ['页面已连接', 'The page has connected'],
  pageClosed: ['页面已断开', 'The page has gone'],
  call: ['调用', 'Call'],
  event: ['事件', 'Event'],
  reply: ['应答', 'Reply'],
  push: ['推送', 'Push'],
  hostCall: ['终端接口调用', 'Host call'],
  hostRequest: ['总线请求', 'Bus request'],
  hostAnswer: ['总线应答', 'Bus answer'],
  hostEvent: ['总线事件', 'Bus event'],
  quote: ['行情', 'Quote'],

  followed: ['本次调用', 'This call'],
  followedHint: ['选择一行，查看其调用的全过程', 'Choose a line to see all of its call in order'],
  back: ['关闭', 'Close'],
  details: ['明细', 'Details'],
  arguments: ['参数', 'Arguments'],
  noArguments: ['无参数', 'No arguments'],
  cut: ['过长的部分已省略', 'Long parts are left out'],
  records: withParts(
    (shown: number, count: number) => `前 ${shown} 条，共 ${count} 条`,
    (shown: number, count: number) => `The first ${shown} of ${count} records`,
  ),
  messageId: ['消息编号', 'Message'],
  exchangeTime: ['交易所时间', 'Exchange time'],
  operations: ['各接口调用次数', 'Calls of each operation'],

  warnings: ['警告', 'Warnings'],
  noWarnings: ['无', 'None'],
  unhandled: ['无人处理', 'Nobody handles it'],
  unanswered: ['逾 5 秒无应答', 'No answer for 5 seconds'],
  slow: ['占用界面线程超过一帧（16.7 ms）', 'Held the UI thread longer than a frame (16.7 ms)'],
  moreWarnings: withParts(
    (count: number) => `另有 ${count} 条较早的警告`,
    (count: number) => `${count} older warnings`,
  ),

  control: ['控制', 'Control'],
  standsStill: ['已暂停', 'paused'],
  activeFaults: withParts(
    (count: number) => `${count} 个故障`,
    (count: number) => (count === 1 ? '1 fault' : `${count} faults`),
  ),
  standStill: ['暂停时间', 'Pause'],
  goOn: ['继续', 'Resume'],
  step: ['下一次行情', 'Next quotes'],
  jumpToClose: ['跳到收盘', 'Jump to the close'],
  speed: ['速度', 'Speed'],
  burst: ['突发委托笔数', 'Orders of a burst'],
  enterBurst: ['突发', 'Burst'],
  dropPages: ['断开所有页面', 'Break all connections'],
  command: ['命令', 'Command'],
  run: ['执行', 'Run'],
  done: withParts(
    (command: string) => `已执行：${command}`,
    (command: string) => `Done: ${command}`,
  ),
  clearFaults: ['清除所有故障', 'Clear all faults'],

  statistics: ['各方法统计', 'Methods'],
  calls: ['次数', 'Calls'],
  heldFigures: ['占用 p50 / p99 / 最大', 'Held p50 / p99 / max'],
  answeredFigures: ['应答 p50 / p99 / 最大', 'Answered p50 / p99 / max'],
} as const satisfies TextTable;

export const languages = ['zh', 'en'] as const;
export type Language = (typeof languages)[number];
export const languageNames: Readonly<Record<Language, string>> = { zh: '中文', en: 'English' };
export const locales: Readonly<Record<Language, string>> = { zh: 'zh-CN', en: 'en' };

export type Texts = InOneLanguage<typeof table>;

export function textsOf(language: Language): Texts {
  const at = languages.indexOf(language);
  return Object.fromEntries(Object.entries(table).map(([key, text]) => [key, text[at]])) as unknown as Texts;
}

export const TextsContext = createContext<Texts>(textsOf('en'));

/** The texts in the language of the page. */
export function useTexts(): Texts {
  return useContext(TextsContext);
}
