/** What each fault does, in Chinese. The simulator tells it in English. */
export const faultsInChinese: Readonly<Record<string, string>> = {
  'slow-answers': '服务器晚若干毫秒应答；委托与撤单期间所有页面都要等待',
  'silent-klines': 'K 线请求得不到应答',
  'refuse-orders': '其后 N 笔委托成为废单，并说明原因',
  'refuse-orders-silently': '其后 N 次下单被拒而不说明原因：应答像成功，但没有委托',
  'late-cancels': '其后 N 次撤单太晚：交易所已按限价全部成交',
  'fill-in-parts': '其后 N 笔本可一次全部成交的委托分批成交：先成交一半，余量在之后的行情变化时成交',
  'answer-after-push': '其后 N 次下单在推送之后才应答',
  'late-pushes': '委托、成交、持仓、资产的推送晚若干毫秒到达，因此在应答之后',
  'fail-permissions': '权限服务器失败：任何账号都没有权限。权限只查询一次，请在启动时打开',
  'silent-strategies': '策略平台既不应答，也不发消息',
  'drop-in-call': '其后 N 次调用时页面的连接断开：调用已执行，应答永远不到',
};
