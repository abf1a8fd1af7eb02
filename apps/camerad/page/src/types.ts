// The shapes that the camera's HTTP interface gives and takes.

export type Role = 'admin' | 'viewer';

export interface Session {
  name: string;
  role: Role;
  via?: 'cookie' | 'basic' | 'bearer';
  csrf?: string;
}

export interface Account {
  name: string;
  role: Role;
}

export interface Token {
  id: string;
  name: string;
  role: Role;
  expires?: string;
  token?: string; // only in the answer that makes it
}

export interface ChannelView {
  channel: number;
  kind: 'visible' | 'thermal';
  ready: boolean;
  sensorType: number;
  module: string;
  night: boolean;
  busyWith: string | null;
}

export interface ParameterValue {
  key: number;
  name: string;
  value: number;
  default?: number;
  stored?: number;
  unsaved: boolean;
}

export interface ParametersView {
  channel: number;
  scheme: number;
  revision: number;
  parameters: ParameterValue[];
}

export interface ProblemError {
  pointer?: string;
  detail?: string;
}

// RFC 9457, with the members that the camera adds.
export interface Problem {
  type: string;
  title: string;
  status: number;
  detail?: string;
  key?: number;
  errors?: ProblemError[];
}

export interface ChangeResult {
  key: number;
  ok: boolean;
  value?: number; // in force afterwards; absent when it is refused and not known
  problem?: Problem;
}

export interface ChangeResults {
  scheme: number;
  revision: number;
  results: ChangeResult[];
}

export interface Choice {
  value: number;
  label: string;
}

// What the style document says of one parameter. Every word is optional but the key.
export interface StyleItem {
  key: number;
  name: string;
  label: string;
  type: string; // slider, number, switch, choice, button, notice; others may come
  unit?: string;
  default?: number;
  min?: number;
  max?: number;
  step?: number;
  recorded: boolean;
  choices?: Choice[];
  minKey?: number;
  maxKey?: number;
  words?: Record<string, string>;
}

export interface StyleGroup {
  label: string;
  showIf?: string;
  parameters: StyleItem[];
}

export interface StyleTab {
  key: string;
  label: string;
  groups: StyleGroup[];
}

export interface Metadata {
  channel: number;
  revision: number;
  tabs: StyleTab[];
}

export type Follow = 'nothing' | 'schedule' | 'day-night';

// What the schedule takes where no window matches: scheme 0, or scheme 0 by day and scheme 1 at night.
export type Gaps = 'scheme-0' | 'day-night';

export interface TimeWindow {
  start: string; // "HH:MM"
  end: string; // "HH:MM", up to "24:00"
}

export interface SchemeView {
  index: number;
  name: string;
  window: TimeWindow;
  unsaved: number[];
  inForce: TimeWindow[];
}

export interface SchemesView {
  channel: number;
  revision: number;
  current: number;
  automatic: boolean;
  follow: Follow;
  gaps: Gaps;
  factory: number;
  schemes: SchemeView[];
}

export interface SaveFailure {
  scheme: number;
  code: number;
  detail: string;
}

export interface SaveResult {
  saved?: number[];
  discarded?: number[];
  failed?: SaveFailure[];
}

export interface RangeView {
  key: number;
  default: number;
  values: number[];
}

export interface LensView {
  channel?: number;
  zoom: { position: number; ratio: number };
  focus: { position: number; mode: number };
  iris: { position: number };
  sharpness: number;
  moving: boolean;
}

export type LensAction =
  | 'zoom-in'
  | 'zoom-out'
  | 'focus-near'
  | 'focus-far'
  | 'auto-focus'
  | 'iris-open'
  | 'iris-close'
  | 'lens-reset';

export type DayNight = 'day' | 'night';

export interface FixedLight {
  kind: 'fixed';
  lux: number;
}

export interface DayLight {
  kind: 'day';
  sunrise: string;
  sunset: string;
  twilightMinutes: number;
  dayLux: number;
  nightLux: number;
}

export interface Scene {
  light: FixedLight | DayLight;
  lux: number;
  fog: number;
  wind: number;
  car: boolean;
  distance: number;
  temperature: number;
  clockShift: number;
  revision: number;
}

export type ScenePatch = Partial<Omit<Scene, 'lux' | 'light' | 'revision'>> & { light?: Partial<FixedLight> | Partial<DayLight> };

export interface Clock {
  time: string; // "2026-11-21T22:40:05", the camera's local time
  simulated: boolean;
  speed: number;
  revision: number;
}

export interface ClockChange {
  simulated: boolean;
  time?: string;
  speed?: number;
}

export interface Fault {
  id: number;
  text: string;
  matched: number;
  acted: number;
}

// How much the library says.
export interface Level {
  level: number;
  revision: number;
}

export interface LogEntry {
  number: number;
  time: string;
  kind: 'driver' | 'video' | 'message';
  channel: number;
  command: number;
  option: string;
  result: number;
  text: string;
}

export interface LogView {
  entries: LogEntry[];
  last: number;
}

// --- Events: the data of each type ---

export interface ParameterEvent {
  channel: number;
  scheme: number;
  revision: number;
  changes: { key: number; value: number; stored?: number; unsaved: boolean }[];
  by: string;
  origin: string;
}

export interface SchemeEvent {
  channel: number;
  from: number;
  to: number;
  why: 'host' | 'schedule' | 'day-night' | 'start' | 'reset';
  by: string;
}

export interface RangesEvent {
  channel: number;
  revision: number;
  ranges: RangeView[];
}

export interface CameraEvents {
  hello: { last: number; version: string };
  parameter: ParameterEvent;
  scheme: SchemeEvent;
  schemes: SchemesView;
  ranges: RangesEvent;
  driver: { entries: LogEntry[]; dropped: number };
  message: { number: number; time: string; text: string; dropped: number };
  lens: LensView & { channel: number };
  'day-night': { channel: number; state: DayNight };
  clock: Clock;
  scene: Scene;
  faults: { faults: Fault[] } | Fault[];
  level: Level;
  busy: { channel: number; operation: string | null };
  resync: Record<string, never>;
}

export type EventType = keyof CameraEvents;
