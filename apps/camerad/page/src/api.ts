// The camera's HTTP interface, typed. Every function resolves to what the camera answers, or rejects with an ApiError.
import type {
  Account,
  ChannelView,
  ChangeResults,
  Clock,
  ClockChange,
  DayNight,
  Fault,
  LensAction,
  LensView,
  Level,
  LogView,
  Metadata,
  ParametersView,
  ParameterValue,
  Problem,
  Role,
  SaveResult,
  Scene,
  ScenePatch,
  SchemesView,
  Session,
  TimeWindow,
  Token,
} from './types';

const kBase = 'api/v1';
const kPatience = 20_000; // milliseconds for an ordinary request
const kLongPatience = 90_000; // for a reset, a power cycle and the like

// Why a request was not done: what the camera answered, or that it could not be reached (status 0).
export class ApiError extends Error {
  constructor(
    readonly problem: Problem,
    readonly retryAfter?: number,
  ) {
    super(problem.detail || problem.title);
    this.name = 'ApiError';
  }

  get status(): number {
    return this.problem.status;
  }

  // The last word of the problem's type: "bad-value".
  get type(): string {
    return this.problem.type.replace(/^.*\//, '');
  }
}

// What a person is told of anything that was thrown.
export function explain(error: unknown): string {
  return error instanceof Error ? error.message : String(error);
}

// A mark of this page, by which it recognises its own changes in events. Made of letters that the camera takes.
export const clientId = 'page-' + Array.from(crypto.getRandomValues(new Uint8Array(9)), (byte) => byte.toString(36)).join('');

let csrf: string | undefined;
let onSessionEnd: () => void = () => undefined;

export function setCsrf(proof: string | undefined): void {
  csrf = proof;
}

// Called when the camera no longer knows who asks.
export function whenSessionEnds(handler: () => void): void {
  onSessionEnd = handler;
}

function problemOf(status: number, text: string): Problem {
  try {
    const parsed: unknown = JSON.parse(text);
    if (null !== parsed && 'object' === typeof parsed && 'title' in parsed) {
      return { type: '/problems/unknown', ...(parsed as object), status } as Problem;
    }
  } catch {
    // Something between the page and the camera answered in its own words.
  }
  return { type: '/problems/unknown', title: `The camera answered with status ${status}.`, status };
}

function retryAfterOf(headers: Headers): number | undefined {
  const seconds = Number.parseInt(headers.get('Retry-After') ?? '', 10);
  return Number.isFinite(seconds) && 0 <= seconds ? seconds : undefined;
}

export interface Asking {
  patience?: number;
  keepSession?: boolean; // a 401 is an answer here, not the end of the session
}

export async function send<T>(method: string, path: string, body?: unknown, asking: Asking = {}): Promise<T> {
  const headers: Record<string, string> = { Accept: 'application/json', 'X-Client-Id': clientId };
  if (undefined !== body) {
    headers['Content-Type'] = 'application/json';
  }
  if ('GET' !== method && undefined !== csrf) {
    headers['X-CSRF-Token'] = csrf;
  }
  const abort = new AbortController();
  const timer = setTimeout(() => abort.abort(), asking.patience ?? kPatience);
  try {
    const response = await fetch(`${kBase}${path}`, {
      method,
      headers,
      body: undefined === body ? null : JSON.stringify(body),
      credentials: 'same-origin',
      cache: 'no-store',
      signal: abort.signal,
    });
    const text = await response.text();
    if (!response.ok) {
      if (401 === response.status && true !== asking.keepSession) {
        onSessionEnd();
      }
      throw new ApiError(problemOf(response.status, text), retryAfterOf(response.headers));
    }
    return ('' === text ? undefined : JSON.parse(text)) as T;
  } catch (error) {
    if (error instanceof ApiError) {
      throw error;
    }
    const detail = abort.signal.aborted
      ? 'The camera did not answer in time.'
      : error instanceof SyntaxError
        ? 'The camera sent an answer that this page cannot read.'
        : 'The camera cannot be reached.';
    throw new ApiError({ type: '/problems/unreachable', title: 'No answer', status: 0, detail });
  } finally {
    clearTimeout(timer);
  }
}

const get = <T>(path: string, asking?: Asking) => send<T>('GET', path, undefined, asking);
const at = (channel: number) => `/channels/${channel}`;
const name = (text: string) => encodeURIComponent(text);

export const api = {
  session: () => get<Session>('/session', { keepSession: true }),
  login: (user: string, password: string) =>
    send<Session>('POST', '/session', { name: user, password }, { keepSession: true }),
  logout: () => send<void>('DELETE', '/session', undefined, { keepSession: true }),
  changePassword: (old: string, fresh: string) =>
    send<void>('PUT', '/session/password', { old, new: fresh }, { keepSession: true }),
  accounts: () => get<{ accounts: Account[] }>('/accounts'),
  putAccount: (user: string, account: { password?: string; role?: Role }) =>
    send<Account>('PUT', `/accounts/${name(user)}`, account),
  deleteAccount: (user: string) => send<void>('DELETE', `/accounts/${name(user)}`),
  tokens: () => get<{ tokens: Token[] }>('/tokens'),
  addToken: (token: { name: string; role: Role; days?: number }) => send<Token>('POST', '/tokens', token),
  deleteToken: (id: string) => send<void>('DELETE', `/tokens/${name(id)}`),

  channels: () => get<{ channels: ChannelView[] }>('/channels'),
  parameters: (channel: number) => get<ParametersView>(`${at(channel)}/parameters`),
  parameter: (channel: number, key: number) => get<ParameterValue>(`${at(channel)}/parameters/${key}`),
  change: (channel: number, changes: { key: number; value: number }[]) =>
    send<ChangeResults>('PATCH', `${at(channel)}/parameters`, { parameters: changes }),
  toDefault: (channel: number, key: number) => send<ParameterValue>('POST', `${at(channel)}/parameters/${key}/default`),
  restoreParameter: (channel: number, key: number) =>
    send<ParameterValue>('POST', `${at(channel)}/parameters/${key}/restore`),
  metadata: (channel: number) => get<Metadata>(`${at(channel)}/metadata`),
  schemes: (channel: number) => get<SchemesView>(`${at(channel)}/schemes`),
  changeSchemes: (channel: number, change: { current?: number; automatic?: boolean; follow?: string }) =>
    send<SchemesView>('PATCH', `${at(channel)}/schemes`, change),
  changeScheme: (channel: number, index: number, change: { name?: string; window?: TimeWindow }) =>
    send<SchemesView>('PATCH', `${at(channel)}/schemes/${index}`, change),
  save: (channel: number) => send<SaveResult>('POST', `${at(channel)}/save`, undefined, { patience: kLongPatience }),
  discard: (channel: number) => send<SaveResult>('POST', `${at(channel)}/discard`, undefined, { patience: kLongPatience }),
  reset: (channel: number) =>
    send<ChannelView>('POST', `${at(channel)}/reset`, { confirm: 'factory' }, { patience: kLongPatience }),
  lens: (channel: number) => get<LensView>(`${at(channel)}/lens`),
  moveLens: (channel: number, target: { zoom?: number; focus?: number; iris?: number; focusMode?: number }) =>
    send<LensView>('PUT', `${at(channel)}/lens`, target),
  lensAction: (channel: number, action: LensAction) => send<LensView>('POST', `${at(channel)}/lens/${action}`),
  dayNight: (channel: number) => get<{ state: DayNight }>(`${at(channel)}/day-night`),
  setDayNight: (channel: number, state: DayNight) =>
    send<{ state: DayNight }>('PUT', `${at(channel)}/day-night`, { state }),
  snapshotUrl: (channel: number) => `${kBase}${at(channel)}/snapshot.jpg`,
  previewUrl: (channel: number, fps?: number) =>
    `${kBase}${at(channel)}/preview.mjpg${undefined === fps ? '' : `?fps=${fps}`}`,

  scene: () => get<Scene>('/scene'),
  changeScene: (patch: ScenePatch) => send<Scene>('PATCH', '/scene', patch),
  clock: () => get<Clock>('/clock'),
  setClock: (change: ClockChange) => send<Clock>('PUT', '/clock', change),
  faults: () => get<{ faults: Fault[] }>('/faults'),
  addFault: (text: string) => send<Fault>('POST', '/faults', { text }),
  deleteFault: (id: number) => send<void>('DELETE', `/faults/${id}`),
  clearFaults: () => send<void>('DELETE', '/faults'),
  powerCycle: () => send<void>('POST', '/power-cycle', undefined, { patience: kLongPatience }),
  log: (after: number, limit = 500) => get<LogView>(`/log?after=${after}&limit=${limit}`),
  messageLevel: () => get<Level>('/messages/level'),
  setMessageLevel: (level: number) => send<Level>('PUT', '/messages/level', { level }),
  version: () => get<{ name: string; version: string; api: string }>('/version'),
};

export const eventsUrl = `${kBase}/events`;
