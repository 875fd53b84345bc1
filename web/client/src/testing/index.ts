export {
  ScriptedBridge,
  type AnswerOptions,
  type Deferred,
  type RecordedCall,
  type Refusal,
  type Script,
} from './ScriptedBridge.js';
