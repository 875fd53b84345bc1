import {
  openOrderStatuses,
  orderStatuses,
  type Cell,
  type Entrust,
  type Execution,
  type Position,
  type SecurityDetail,
} from '@varnel/web-client';
import { valueOf } from './table/cellColumn';
import type { Texts } from './texts';

type Row = Entrust | Execution;

export const orderIdOf = ({ orderId }: Row) => valueOf(orderId);
export const executionIdOf = ({ execId }: Execution) => valueOf(execId);

/** Whether the order is open and nobody has asked to cancel it yet. */
export function canBeCancelled({ status }: Pick<Entrust, 'status'>): boolean {
  const open: readonly string[] = openOrderStatuses;
  return open.includes(valueOf(status)) && valueOf(status) !== orderStatuses.toBeCancelled;
}

/** The status in the language of the desk: the terminal's own text in Chinese. */
export function statusText({ status }: Entrust, t: Texts): string {
  return t.language === 'zh' ? String(status.displayRole) : t.code('status', valueOf(status));
}

const timeOf = (record: Row) => valueOf('dealTime' in record ? record.dealTime : record.entrustTime);

/** The newest records first. Of the same time those that came later stand before. */
export function newestFirst<Item extends Row>(records: readonly Item[]): readonly Item[] {
  const timed = [...records].reverse().map((record) => ({ record, time: timeOf(record) }));
  timed.sort((one, other) => (one.time < other.time ? 1 : one.time > other.time ? -1 : 0));
  return timed.map(({ record }) => record);
}

/** Whether a record is of this security. Records have no symbol, only code and name. */
export function isOf(
  record: Row | Position,
  { securityId, displayName }: Pick<SecurityDetail, 'securityId' | 'displayName'>,
): boolean {
  return shown(record.securityId) === securityId && shown(record.securityName) === displayName;
}

/** Orders and executions have a pair for each field, positions a plain value. */
function shown(field: Cell | Position['securityId']): string {
  const isPair = typeof field === 'object' && field !== null && 'displayRole' in field;
  return String(isPair ? field.displayRole : field);
}
