import { withParts, type TextTable } from './table';

const orders = (count: number) => (count === 1 ? '1 order' : `${count} orders`);

/** Order ticket, ladder, basket, blotter, orders, K-lines and inspector. */
export const trading = {
  ticket: ['下单', 'Order ticket'],
  tag: ['标签', 'Tag'],
  ownTag: ['自动', 'automatic'],
  marketPrice: ['市价', 'Market'],
  tradable: ['可交易量', 'Tradable'],
  review: ['核对委托', 'Review the order'],
  sending: ['发送中…', 'Sending…'],
  confirmation: ['确认', 'Confirmation'],
  confirmOrder: ['确认发送', 'Send the order'],
  back: ['返回', 'Back'],
  suggestionsFor: ['候选证券', 'Matching securities'],
  noSuchSecurity: ['没有这只证券', 'There is no such security'],
  pricesNow: ['当前价格', 'Current prices'],
  takePrice: withParts(
    (name: string, price: string) => `取${name}价 ${price}`,
    (name: string, price: string) => `Take the price ${price} (${name})`,
  ),

  accepted: ['已受理', 'Accepted'],
  refused: ['被拒', 'Refused'],
  refusedBecause: withParts(
    (reason: string) => `被拒：${reason}`,
    (reason: string) => `Refused: ${reason}`,
  ),
  refusedWithoutReason: [
    '终端未受理，亦未说明原因，没有委托',
    'Not taken by the terminal, which gave no reason; there is no order',
  ],
  outcomeUnknownLook: [
    '结果未知：委托可能已在终端。请先查找，勿重复下单。',
    'Outcome unknown: the terminal may have the order. Look it up; do not place it again.',
  ],
  outcomeUnknownOf: withParts(
    (count: number) => `结果未知 ${count} 笔，请先查委托，勿重复提交。`,
    (count: number) => `Outcome unknown for ${orders(count)}. Look at the orders before you send anything again.`,
  ),
  commandUnknown: [
    '结果未知，请先查看实际状态，勿重复提交。',
    'Outcome unknown: look at what became of it before you send anything again.',
  ],
  tagOf: withParts(
    (tag: string) => `标签 ${tag}`,
    (tag: string) => `Tag ${tag}`,
  ),
  lookUp: ['按标签查找', 'Look it up by its tag'],
  lookingUp: ['查找中…', 'Looking it up…'],
  foundByTag: withParts(
    (count: number, tag: string) => `标签 ${tag}：找到 ${count} 笔委托`,
    (count: number, tag: string) => `Tag ${tag}: ${orders(count)} found`,
  ),
  notFoundByTag: withParts(
    (tag: string) => `标签 ${tag}：目前没有委托。它仍可能稍后出现，请稍后再查。`,
    (tag: string) => `Tag ${tag}: no order so far. It may still come, so look again later.`,
  ),

  ladder: ['五档', 'Ladder'],
  ladderHelp: [
    '点击左列买入、右列卖出：把方向和价格填入下单。方向键移动，回车选择。',
    'Press on the left to buy, on the right to sell: side and price go to the ticket. Arrow keys move, Enter chooses.',
  ],
  buyAt: withParts(
    (price: string) => `买入 ${price}`,
    (price: string) => `Buy at ${price}`,
  ),
  sellAt: withParts(
    (price: string) => `卖出 ${price}`,
    (price: string) => `Sell at ${price}`,
  ),
  noLevels: ['暂无买卖盘', 'No bids and no offers'],
  chooseForLadder: ['请先在下单中选择证券', 'Choose a security in the ticket first'],
  ownAt: withParts(
    (qty: string, price: string) => `本方挂单 ${qty}，价格 ${price}`,
    (qty: string, price: string) => `Own open orders: ${qty} at ${price}`,
  ),
  ownElsewhere: withParts(
    (count: number) => `其他价位挂单 ${count} 笔`,
    (count: number) => `${orders(count)} at other prices`,
  ),
  oneClick: ['一键下单', 'One-click sending'],
  oneClickQty: ['每次数量', 'Quantity each time'],
  oneClickWarning: withParts(
    (qty: string) => `点击价位立即发送限价单，数量 ${qty}，不再确认`,
    (qty: string) => `A press on a level sends a limit order of ${qty} at once, without confirmation`,
  ),

  basket: ['篮子', 'Basket'],
  basketOrders: [
    '委托，每行一笔：证券标识,买卖,数量,价格（无价格为市价）',
    'Orders, one a line: symbol,side,quantity,price (no price: market)',
  ],
  basketLine: withParts(
    (line: number) => `第 ${line} 行应为：证券标识,买卖,数量,价格`,
    (line: number) => `Line ${line} must be: symbol,side,quantity,price`,
  ),
  placeBasket: withParts(
    (count: number) => `发送篮子（${count} 笔）`,
    (count: number) => `Place ${orders(count)}`,
  ),
  basketQuestion: withParts(
    (account: string, count: number) => `${account} 篮子，共 ${count} 笔`,
    (account: string, count: number) => `${account}: a basket of ${orders(count)}`,
  ),
  basketOutcome: withParts(
    (accepted: number, refused: number) => `已受理 ${accepted}，被拒 ${refused}`,
    (accepted: number, refused: number) => `${accepted} accepted, ${refused} refused`,
  ),

  blotter: ['委托簿', 'Blotter'],
  openOrders: ['可撤委托', 'Open orders'],
  latestOrders: ['最近委托', 'Latest orders'],
  pick: withParts(
    (id: string) => `选择 ${id}`,
    (id: string) => `Pick ${id}`,
  ),
  cancelOrder: withParts(
    (id: string) => `撤单 ${id}`,
    (id: string) => `Cancel ${id}`,
  ),
  cancelShort: ['撤', 'Cancel'],
  cancelPicked: withParts(
    (count: number) => `撤所选（${count}）`,
    (count: number) => `Cancel picked (${count})`,
  ),
  cancelAll: withParts(
    (count: number) => `全部撤单（${count}）`,
    (count: number) => `Cancel all open (${count})`,
  ),
  cancelQuestion: withParts(
    (count: number) => `撤销 ${count} 笔未成交委托？`,
    (count: number) => `Cancel ${orders(count)}?`,
  ),
  cancelNow: ['确认撤单', 'Cancel them now'],
  cancelsAccepted: withParts(
    (count: number) => `已提交撤单 ${count} 笔`,
    (count: number) => `Asked to cancel ${orders(count)}`,
  ),
  cancelRefused: withParts(
    (count: number) => `未能撤销 ${count} 笔`,
    (count: number) => `${orders(count)} not cancelled`,
  ),
  cancelUnknown: withParts(
    (count: number) => `${count} 笔撤单结果未知，请查看委托状态`,
    (count: number) => `Unknown whether ${orders(count)} were cancelled: look at their status`,
  ),
  cancelUnsent: withParts(
    (count: number) => `${count} 笔撤单未发送`,
    (count: number) => `Cancels of ${orders(count)} were not sent`,
  ),
  noOpenOrders: ['没有可撤委托', 'No open orders'],
  noOwnOpenOrder: ['本页没有可撤的委托', 'This page has placed no order that is still open'],

  ordersOnly: ['委托', 'Orders'],
  book: ['持仓与成交', 'Positions and executions'],
  executions: ['成交', 'Executions'],
  latestExecutions: ['最近成交', 'Latest executions'],
  closePosition: ['平仓', 'Close'],
  closePositionOf: withParts(
    (name: string) => `平仓 ${name}`,
    (name: string) => `Close ${name}`,
  ),

  hotKeys: ['快捷键', 'Hot keys'],
  keyTicket: ['到下单：证券', 'To the ticket: security'],
  keyBuy: ['买入；期货再按切换开平', 'Buy; again for futures: open or close'],
  keySell: ['卖出；期货再按切换开平', 'Sell; again for futures: open or close'],
  keyPrice: ['到价格', 'To the price'],
  keyQty: ['到数量', 'To the quantity'],
  keyLadder: ['到五档', 'To the ladder'],
  keyBlotter: ['到委托簿', 'To the blotter'],
  keyCancelLast: ['撤销本页最近一笔委托（先确认）', 'Cancel the last order of this page (asks first)'],
  keyCancelAll: ['全部撤单（先确认）', 'Cancel all open orders (asks first)'],
  keyHelp: ['显示快捷键', 'Show the hot keys'],
  keyStep: ['价格一跳、数量一步；翻页键为十倍', 'Price by a tick, quantity by a step; page keys by ten'],
  keyReview: ['核对，再按确认发送', 'Review the order; again: send it'],
  keyBack: ['返回修改', 'Back to the ticket'],
  keysUp: ['↑ ↓', '↑ ↓'],
  keysEnter: ['回车', 'Enter'],
  keysEscape: ['Esc', 'Esc'],

  source: ['来源', 'Source'],
  instance: ['策略实例', 'Strategy instance'],
  rowsPerPage: ['每页', 'Rows a page'],
  trader: ['交易员', 'Trader'],
  firstPage: ['首页', 'First page'],
  previousPage: ['上页', 'Previous page'],
  nextPage: ['下页', 'Next page'],
  lastPage: ['末页', 'Last page'],
  pageRange: withParts(
    (first: string, last: string, total: string) => `第 ${first}–${last} 笔，共 ${total} 笔`,
    (first: string, last: string, total: string) => `${first}–${last} of ${total}`,
  ),
  pageEmpty: withParts(
    (total: string) => `无记录，共 ${total} 笔`,
    (total: string) => `None of ${total}`,
  ),

  klines: ['K线', 'K-lines'],
  klineOfDays: withParts(
    (symbol: string) => `${symbol} 日线`,
    (symbol: string) => `${symbol}, days`,
  ),
  klineOfMinutes: withParts(
    (symbol: string) => `${symbol} 分钟线`,
    (symbol: string) => `${symbol}, minutes`,
  ),
  rangeStart: ['开始', 'Start'],
  rangeStop: ['结束', 'Stop'],
  klinesAsked: withParts(
    (symbol: string) => `等待 ${symbol} 的K线…`,
    (symbol: string) => `Waiting for the candles of ${symbol}…`,
  ),
  earliest: ['最早', 'earliest'],
  latest: ['最新', 'latest'],
  period: ['周期', 'Period'],
  periodMinute: ['1 分钟', 'Minute'],
  periodDay: ['日', 'Day'],
  candles: withParts(
    (count: string) => `${count} 根K线`,
    (count: string) => `${count} candles`,
  ),
  chartDescription: withParts(
    (title: string, count: string) => `${title}，${count} 根K线，明细见下表`,
    (title: string, count: string) => `${title}, ${count} candles; the table below has the figures`,
  ),
  klineTable: withParts(
    (title: string) => `${title} 明细`,
    (title: string) => `${title}, figures`,
  ),
  closePrice: ['收盘', 'Close'],
  candleVolume: ['成交量', 'Volume'],
  candleAmount: ['成交额', 'Turnover'],

  inspector: ['调用记录', 'Inspector'],
  seeAllCalls: ['在新窗口查看所有调用、应答与推送', 'See every call, reply and push in a window of its own'],
  answer: ['应答', 'Answer'],
  noAnswerYet: ['尚无应答', 'No answer yet'],
  cutAfter: withParts(
    (kept: string, length: string) => `…（共 ${length} 字符，显示前 ${kept} 个）`,
    (kept: string, length: string) => `… (${length} characters; the first ${kept} are shown)`,
  ),
  freeCall: ['自由调用', 'Call anything'],
  method: ['方法', 'Method'],
  arguments: ['参数：JSON 数组，首项为调用编号', 'Arguments: a JSON array; the first is the call identifier'],
  notJson: withParts(
    (reason: string) => `不是 JSON：${reason}`,
    (reason: string) => `Not JSON: ${reason}`,
  ),
  notArray: ['须为数组，例如 ["u1", 1]', 'It must be an array, such as ["u1", 1]'],
} as const satisfies TextTable;
