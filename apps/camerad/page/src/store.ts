// Everything that the page knows of the camera, as signals, and the connection that keeps it true.
//
// The camera's events keep the signals up to date. After each (re)connection, and after a "resync", everything is asked
// for anew; events that arrive meanwhile wait until the answers are in.
import { batch, computed, signal } from '@preact/signals';

import { ApiError, api, clientId, eventsUrl, explain, setCsrf, whenSessionEnds } from './api';
import { kNoValues, newerOf, type Values, valuesOf, withChanges, withScheme, withValue } from './logic/merge';
import { NewestWins } from './logic/newest';
import { EventParser } from './logic/sse';
import type {
  CameraEvents,
  ChannelView,
  Clock,
  DayNight,
  EventType,
  Fault,
  LensView,
  Level,
  Metadata,
  ParameterValue,
  Scene,
  SchemesView,
  Session,
} from './types';

// --- What is known ---

export const session = signal<Session | null | undefined>(undefined); // undefined: not asked yet; null: nobody
export const sessionNote = signal(''); // why the login is shown, when it was not asked for
// Live: connected, and everything that is shown is what the camera has.
export const connection = signal<'off' | 'connecting' | 'live' | 'reconnecting'>('off');
export const channels = signal<ChannelView[]>([]);
export const channel = signal(0); // the one that is shown; 0 while there is none
export const metadata = signal<Metadata | null>(null);
export const values = signal<Values>(kNoValues);
export const schemes = signal<SchemesView | null>(null);
export const lens = signal<LensView | null>(null); // null: the channel has none, or it is not known yet
export const dayNight = signal<DayNight | null>(null);
export const scene = signal<Scene | null>(null);
export const clock = signal<Clock | null>(null);
export const clockSeen = signal(0); // performance.now() when `clock` came
export const faults = signal<Fault[]>([]);
export const level = signal<Level | null>(null); // how much the library says; null: not known yet
export const loadProblem = signal(''); // why the camera's state could not be asked for

export const isAdmin = computed(() => 'admin' === session.value?.role);
export const currentChannel = computed(() => channels.value.find((view) => view.channel === channel.value) ?? null);
export const busyWith = computed(() => currentChannel.value?.busyWith ?? null);

// Why nothing can be changed now; empty when it can.
export const readOnlyReason = computed(() => {
  if (!isAdmin.value) {
    return 'You are signed in as a viewer';
  }
  if (null !== busyWith.value) {
    return 'reset' === busyWith.value ? 'The channel is being reset' : 'The channel is starting';
  }
  return 'live' === connection.value ? '' : 'There is no connection to the camera';
});

// What the schemes are called, by their numbers; the factory's is the last.
export function schemeNames(view: SchemesView): string[] {
  return [...view.schemes.map((scheme) => scheme.name), 'Factory'];
}

// Unsaved changes over all schemes.
export const unsavedCount = computed(() =>
  (schemes.value?.schemes ?? []).reduce((sum, scheme) => sum + scheme.unsaved.length, 0),
);

// --- Messages to the person ---

export interface Notice {
  id: number;
  kind: 'info' | 'error';
  text: string;
}

export const notices = signal<Notice[]>([]);
let nextNotice = 1;

export function notify(text: string, kind: Notice['kind'] = 'info'): void {
  const id = nextNotice++;
  notices.value = [...notices.value.slice(-3), { id, kind, text }];
  setTimeout(() => dismiss(id), 'error' === kind ? 12_000 : 5_000);
}

export function dismiss(id: number): void {
  notices.value = notices.value.filter((notice) => notice.id !== id);
}

// Runs something that the person asked for; a failure is shown, not thrown. Resolves to whether it worked.
export async function attempt(what: () => Promise<unknown>, before = ''): Promise<boolean> {
  try {
    await what();
    return true;
  } catch (error) {
    if (!(error instanceof ApiError && 401 === error.status)) {
      notify(before + explain(error), 'error');
    }
    return false;
  }
}

// --- Values that are on their way to the camera ---

// Shown in place of what the camera has, until it has answered.
export const edits = signal<ReadonlyMap<number, number>>(new Map());
// Why the last change of a key was refused; shown with its control until the next change.
export const refusals = signal<ReadonlyMap<number, string>>(new Map());

function without<V>(map: ReadonlyMap<number, V>, key: number): ReadonlyMap<number, V> {
  if (!map.has(key)) {
    return map;
  }
  const copy = new Map(map);
  copy.delete(key);
  return copy;
}

export function setRefusal(key: number, text: string): void {
  refusals.value = '' === text ? without(refusals.value, key) : new Map(refusals.value).set(key, text);
}

interface Change {
  key: number;
  value: number;
}

const held = new Set<number>(); // keys that show what the person has set, whatever the camera has
const together = new Map<number, number[]>(); // keys that were sent as one, by the first of them
const sender = new NewestWins<{ channel: number; changes: Change[] }>(
  async (first, { channel: asked, changes }) => {
    try {
      const answer = await api.change(asked, changes);
      for (const result of asked === channel.value ? answer.results : []) {
        if (undefined !== result.value) {
          takeAnswer(result.key, answer, result.value);
        }
        const isNewest = changes.some(({ key, value }) => key === result.key && value === edits.value.get(key));
        if (!result.ok || isNewest) {
          setRefusal(result.key, result.ok ? '' : (result.problem?.detail ?? result.problem?.title ?? 'The camera refused it.'));
        }
      }
    } catch (error) {
      sender.drop(first);
      changes.forEach(({ key }) => setRefusal(key, explain(error)));
    }
  },
  (first) => (together.get(first) ?? [first]).forEach(forgetEdit),
);

function forgetEdit(key: number): void {
  if (!held.has(key)) {
    edits.value = without(edits.value, key);
  }
}

// The answer to a change may be here before its event. It says nothing of "stored", so that the mark follows from what is
// known. When its event has been here before, another one may have been, too, and the answer is the older of the two.
function takeAnswer(key: number, answer: { scheme: number; revision: number }, value: number): void {
  const known = values.value.byKey.get(key);
  if (answer.scheme === values.value.scheme && (answer.revision > values.value.revision || undefined === known)) {
    const unsaved = undefined !== known?.stored && known.stored !== value;
    values.value = withValue(values.value, { ...(known ?? { key, name: '' }), value, unsaved });
  }
}

// The value that a control shows: what the person has just set, otherwise what the camera has.
export function shownValue(key: number): number | undefined {
  return edits.value.get(key) ?? values.value.byKey.get(key)?.value;
}

export function setParameter(key: number, value: number): void {
  setTogether([{ key, value }]);
}

// Sends several values as one request, in this order. A key is always sent with the same others.
export function setTogether(changes: Change[]): void {
  const keys = changes.map(({ key }) => key);
  const first = keys[0];
  if (undefined === first) {
    return;
  }
  batch(() => {
    edits.value = new Map([...edits.value, ...changes.map(({ key, value }): [number, number] => [key, value])]);
    keys.forEach((key) => setRefusal(key, ''));
  });
  together.set(first, keys);
  sender.set(first, { channel: channel.value, changes });
}

// While a control is held, changes from elsewhere do not move it.
export function holdParameter(key: number, value: number | undefined = shownValue(key)): void {
  held.add(key);
  if (undefined !== value) {
    edits.value = new Map(edits.value).set(key, value);
  }
}

export function releaseParameter(key: number): void {
  held.delete(key);
  if (![...together].some(([first, keys]) => keys.includes(key) && sender.isBusy(first))) {
    forgetEdit(key);
  }
}

// A button sends its number; the camera keeps nothing of it.
export async function pressParameter(key: number, value: number): Promise<boolean> {
  setRefusal(key, '');
  try {
    const answer = await api.change(channel.value, [{ key, value }]);
    const result = answer.results[0];
    if (undefined !== result && !result.ok) {
      setRefusal(key, result.problem?.detail ?? 'The camera refused it.');
      return false;
    }
    return true;
  } catch (error) {
    setRefusal(key, explain(error));
    return false;
  }
}

export async function resetParameter(key: number): Promise<void> {
  setRefusal(key, '');
  try {
    await api.toDefault(channel.value, key);
    loadValuesSoon(); // the answer may be older than an event that has been here
  } catch (error) {
    setRefusal(key, explain(error));
  }
}

function takeValue(value: ParameterValue): void {
  values.value = withValue(values.value, value);
}

// Asks the camera for parameters that no scheme holds. Those that it cannot read stay unknown.
export async function readParameters(keys: number[]): Promise<void> {
  const asked = channel.value;
  for (const key of keys) {
    try {
      const value = await api.parameter(asked, key);
      if (asked !== channel.value) {
        return;
      }
      takeValue(value);
    } catch (error) {
      if (!(error instanceof ApiError) || 0 === error.status || 401 === error.status) {
        return;
      }
    }
  }
}

// What the camera answers to a change, or tells of one: both come this way, and the newer stays.
export function takeSchemes(view: SchemesView): void {
  if (view.channel === channel.value) {
    schemes.value = newerOf(schemes.value, view);
  }
}

export function takeScene(view: Scene): void {
  scene.value = newerOf(scene.value, view);
}

export function takeClock(view: Clock): void {
  if (view === newerOf(clock.value, view)) {
    showClock(view);
  }
}

export function takeLevel(view: Level): void {
  level.value = newerOf(level.value, view);
}

export async function changeSchemes(change: Parameters<typeof api.changeSchemes>[1]): Promise<boolean> {
  return attempt(async () => takeSchemes(await api.changeSchemes(channel.value, change)));
}

// --- Session ---

let stream: AbortController | null = null;

whenSessionEnds(() => {
  if (null !== session.value) {
    endSession('Your session has ended. Sign in again to go on.');
  }
});

function endSession(note: string): void {
  disconnect();
  setCsrf(undefined);
  batch(() => {
    session.value = null;
    sessionNote.value = note;
  });
}

function beginSession(view: Session): void {
  setCsrf(view.csrf);
  batch(() => {
    session.value = view;
    sessionNote.value = '';
  });
  connect();
}

// Asks who is signed in. Called once when the page starts.
export async function start(): Promise<void> {
  try {
    beginSession(await api.session());
  } catch (error) {
    if (error instanceof ApiError && 401 === error.status) {
      session.value = null;
    } else {
      loadProblem.value = explain(error);
      setTimeout(() => void start(), 2_000);
    }
  }
}

export async function login(user: string, password: string): Promise<void> {
  beginSession(await api.login(user, password));
}

export async function logout(): Promise<void> {
  if (await attempt(() => api.logout())) {
    endSession('');
  }
}

// --- Events ---

type Handler<T extends EventType> = (data: CameraEvents[T]) => void;
const handlers = new Map<EventType, Set<(data: never) => void>>();
const anewHandlers = new Set<() => void>();

// For panels: to be told of each event of a type. Returns how to end it.
export function onEvent<T extends EventType>(type: T, handler: Handler<T>): () => void {
  const set = handlers.get(type) ?? new Set();
  handlers.set(type, set);
  set.add(handler as (data: never) => void);
  return () => set.delete(handler as (data: never) => void);
}

// For panels that keep something of their own: called whenever events may have been lost.
export function onAnew(handler: () => void): () => void {
  anewHandlers.add(handler);
  return () => anewHandlers.delete(handler);
}

let waitingEvents: { type: EventType; data: unknown }[] | null = null; // not null while the state is being asked for

function take(type: EventType, data: unknown): void {
  if ('resync' === type || 'hello' === type) {
    void loadAll();
  } else if (null !== waitingEvents && 'driver' !== type && 'message' !== type) {
    waitingEvents.push({ type, data });
    return;
  } else {
    apply(type, data);
  }
  for (const handler of handlers.get(type) ?? []) {
    (handler as (data: unknown) => void)(data);
  }
}

function apply(type: EventType, data: unknown): void {
  const shown = channel.value;
  switch (type) {
    case 'parameter': {
      const event = data as CameraEvents['parameter'];
      if (event.channel === shown && event.scheme !== values.value.scheme) {
        loadValuesSoon();
      } else {
        values.value = withChanges(values.value, event);
      }
      break;
    }
    case 'scheme': {
      const event = data as CameraEvents['scheme'];
      values.value = withScheme(values.value, event);
      break;
    }
    case 'schemes':
      takeSchemes(data as SchemesView);
      break;
    case 'ranges':
      if ((data as CameraEvents['ranges']).channel === shown) {
        loadMetadataSoon();
      }
      break;
    case 'lens':
      if ((data as CameraEvents['lens']).channel === shown) {
        lens.value = data as LensView;
      }
      break;
    case 'day-night': {
      const event = data as CameraEvents['day-night'];
      channels.value = channels.value.map((view) =>
        view.channel === event.channel ? { ...view, night: 'night' === event.state } : view,
      );
      if (event.channel === shown) {
        dayNight.value = event.state;
      }
      break;
    }
    case 'clock':
      takeClock(data as Clock);
      break;
    case 'scene':
      takeScene(data as Scene);
      break;
    case 'level':
      takeLevel(data as Level);
      break;
    case 'faults': {
      const list = data as CameraEvents['faults'];
      faults.value = Array.isArray(list) ? list : list.faults;
      break;
    }
    case 'busy': {
      const event = data as CameraEvents['busy'];
      channels.value = channels.value.map((view) =>
        view.channel === event.channel ? { ...view, busyWith: event.operation, ready: null === event.operation } : view,
      );
      if (null === event.operation) {
        void loadAll(); // after a reset nothing is as it was
      }
      break;
    }
    default:
      break;
  }
}

function showClock(view: Clock): void {
  batch(() => {
    clock.value = view;
    clockSeen.value = performance.now();
  });
}

// --- Asking for everything ---

let loadNumber = 0;

// When the camera does not answer, the state keeps what it had, the reason is shown, and it is asked again.
async function loadAll(): Promise<void> {
  const mine = ++loadNumber;
  waitingEvents = []; // the answers hold all that came before
  try {
    const [list, sceneView, clockView, faultList, levelView] = await Promise.all([
      api.channels(),
      api.scene(),
      api.clock(),
      api.faults(),
      api.messageLevel(),
    ]);
    if (mine !== loadNumber) {
      return;
    }
    const chosen = list.channels.some((view) => view.channel === channel.value)
      ? channel.value
      : (list.channels[0]?.channel ?? 0);
    // This much holds even when the channel does not answer, so that another one can be chosen.
    batch(() => {
      channels.value = list.channels;
      channel.value = chosen;
      // Taken as they are: the camera may have begun anew, and with it the revisions.
      scene.value = sceneView;
      showClock(clockView);
      faults.value = faultList.faults;
      level.value = levelView;
    });
    const state = 0 === chosen ? null : await loadChannel(chosen);
    if (mine !== loadNumber) {
      return;
    }
    batch(() => {
      if (null !== state) {
        takeChannel(state);
      }
      loadProblem.value = '';
      if (null !== stream) {
        connection.value = 'live';
      }
    });
  } catch (error) {
    if (mine !== loadNumber) {
      return;
    }
    loadProblem.value = explain(error);
    if (null !== session.value) {
      const pause = error instanceof ApiError ? (error.retryAfter ?? 2) : 2;
      setTimeout(() => {
        if (mine === loadNumber && null !== session.value) {
          void loadAll();
        }
      }, pause * 1000);
    }
    return; // events go on waiting: what they change is not known
  }
  const waiting = waitingEvents ?? [];
  waitingEvents = null;
  for (const event of waiting) {
    take(event.type, event.data);
  }
  for (const handler of anewHandlers) {
    handler();
  }
}

interface ChannelState {
  channel: number;
  metadata: Metadata;
  values: Values;
  schemes: SchemesView;
  lens: LensView | null;
  dayNight: DayNight | null;
}

// What a channel may not have (a lens, a day/night state) is left out when it is refused.
async function optional<T>(answer: Promise<T>): Promise<T | null> {
  try {
    return await answer;
  } catch (error) {
    if (error instanceof ApiError && 400 <= error.status && 401 !== error.status) {
      return null;
    }
    throw error;
  }
}

async function loadChannel(chosen: number): Promise<ChannelState> {
  const [metadataView, parametersView, schemesView, lensView, dayNightView] = await Promise.all([
    api.metadata(chosen),
    api.parameters(chosen),
    api.schemes(chosen),
    optional(api.lens(chosen)),
    optional(api.dayNight(chosen)),
  ]);
  return {
    channel: chosen,
    metadata: metadataView,
    values: valuesOf(parametersView),
    schemes: schemesView,
    lens: lensView,
    dayNight: dayNightView?.state ?? null,
  };
}

function takeChannel(state: ChannelState): void {
  // Values of parameters that no scheme holds were asked for one by one; they stay until they are asked for again.
  const kept = state.channel === values.value.channel ? [...values.value.byKey.values()] : [];
  const byKey = new Map(state.values.byKey);
  for (const value of kept) {
    if (!byKey.has(value.key)) {
      byKey.set(value.key, value);
    }
  }
  metadata.value = state.metadata;
  values.value = { ...state.values, byKey };
  schemes.value = state.schemes;
  lens.value = state.lens;
  dayNight.value = state.dayNight;
}

export function selectChannel(chosen: number): void {
  if (chosen === channel.value) {
    return;
  }
  batch(() => {
    channel.value = chosen;
    metadata.value = null;
    values.value = kNoValues;
    schemes.value = null;
    lens.value = null;
    dayNight.value = null;
    edits.value = new Map();
    refusals.value = new Map();
  });
  void loadAll();
}

function soon(load: () => Promise<void>): () => void {
  let running = false;
  let again = false;
  const run = async (): Promise<void> => {
    if (running) {
      again = true;
      return;
    }
    running = true;
    do {
      again = false;
      try {
        await load();
      } catch (error) {
        loadProblem.value = explain(error);
      }
    } while (again);
    running = false;
  };
  return () => void run();
}

// Whether what was asked for a channel may still be taken over: it is still shown, and no load of everything is under way.
const isStill = (asked: number) => asked === channel.value && null === waitingEvents;

const loadValuesSoon = soon(async () => {
  const asked = channel.value;
  const view = valuesOf(await api.parameters(asked));
  if (isStill(asked) && view === newerOf(values.value, view)) {
    values.value = { ...view, byKey: new Map([...values.value.byKey, ...view.byKey]) };
  }
});

const loadMetadataSoon = soon(async () => {
  const asked = channel.value;
  const view = await api.metadata(asked);
  if (isStill(asked)) {
    metadata.value = view;
  }
  const fresh = valuesOf(await api.parameters(asked));
  if (isStill(asked) && fresh === newerOf(values.value, fresh)) {
    values.value = { ...fresh, byKey: new Map([...values.value.byKey, ...fresh.byKey]) };
  }
});

// The camera tells of its lens when it moves, not when the way it is moved has been set.
export const loadLensSoon = soon(async () => {
  const asked = channel.value;
  const before = lens.value;
  const view = await optional(api.lens(asked));
  if (isStill(asked) && before === lens.value) {
    lens.value = view; // what came meanwhile by an event is newer
  }
});

// --- The connection ---

const kSilence = 25_000; // the camera says something at least every 10 s
const kHiddenTime = 60_000; // a page that nobody sees gives its connection back after this time
const kPauses = [500, 1_000, 2_000, 4_000, 5_000];
let hiddenTimer: ReturnType<typeof setTimeout> | undefined;

function connect(): void {
  if (null !== stream) {
    return;
  }
  stream = new AbortController();
  connection.value = 'connecting';
  void keepConnected(stream.signal);
}

function disconnect(): void {
  stream?.abort();
  stream = null;
  loadNumber += 1;
  waitingEvents = null;
  connection.value = 'off';
}

async function keepConnected(signal: AbortSignal): Promise<void> {
  for (let failures = 0; !signal.aborted; ) {
    let pause = kPauses[Math.min(failures, kPauses.length - 1)] ?? 0;
    try {
      await listen(signal, () => (failures = 0));
    } catch (error) {
      if (error instanceof ApiError && 401 === error.status && !signal.aborted) {
        endSession('Your session has ended. Sign in again to go on.');
      } else if (error instanceof ApiError && undefined !== error.retryAfter) {
        pause = Math.max(pause, 1000 * error.retryAfter);
      }
    }
    if (!signal.aborted) {
      connection.value = 'reconnecting';
      failures += 1;
      await rest(pause * (0.75 + Math.random() / 2), signal);
    }
  }
}

function rest(milliseconds: number, signal: AbortSignal): Promise<void> {
  return new Promise((resolve) => {
    const timer = setTimeout(done, milliseconds);
    function done(): void {
      clearTimeout(timer);
      signal.removeEventListener('abort', done);
      resolve();
    }
    signal.addEventListener('abort', done);
  });
}

// One connection, until it ends in whatever way.
async function listen(signal: AbortSignal, opened: () => void): Promise<void> {
  const abort = new AbortController();
  const stop = () => abort.abort();
  signal.addEventListener('abort', stop);
  let silence = setTimeout(stop, kSilence);
  try {
    const response = await fetch(eventsUrl, {
      headers: { Accept: 'text/event-stream', 'X-Client-Id': clientId },
      credentials: 'same-origin',
      cache: 'no-store',
      signal: abort.signal,
    });
    if (!response.ok || null === response.body) {
      const after = Number.parseInt(response.headers.get('Retry-After') ?? '', 10);
      const problem = { type: '/problems/no-events', title: 'No events', status: response.status };
      throw new ApiError(problem, Number.isFinite(after) ? after : undefined);
    }
    const reader = response.body.getReader();
    const decoder = new TextDecoder();
    const parser = new EventParser();
    for (;;) {
      const { done, value } = await reader.read();
      if (done) {
        return;
      }
      clearTimeout(silence);
      silence = setTimeout(stop, kSilence);
      for (const event of parser.push(decoder.decode(value, { stream: true }))) {
        if ('hello' === event.type) {
          opened();
        }
        take(event.type as EventType, JSON.parse(event.data));
      }
    }
  } finally {
    clearTimeout(silence);
    signal.removeEventListener('abort', stop);
    abort.abort();
  }
}

if ('undefined' !== typeof document) {
  document.addEventListener('visibilitychange', () => {
    clearTimeout(hiddenTimer);
    if (document.hidden) {
      hiddenTimer = setTimeout(disconnect, kHiddenTime);
    } else if (session.value) {
      connect();
    }
  });
}
