export {
  ScriptedBridge,
  type AnswerOptions,
  type Deferred,
  type PushName,
  type RecordedCall,
  type Refusal,
  type Script,
} from './ScriptedBridge.js';
