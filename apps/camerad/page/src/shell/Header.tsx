import { busyWith, channel, channels, clock, connection, loadProblem, selectChannel } from '../store';
import { deviceTime } from '../time';
import { Chip } from '../ui/Chip';
import { AccountMenu } from './AccountMenu';
import { SaveBar } from './SaveBar';

const kConnection = {
  off: { text: 'not connected', kind: 'warn' },
  connecting: { text: 'connecting', kind: 'warn' },
  live: { text: 'live', kind: 'good' },
  reconnecting: { text: 'reconnecting', kind: 'bad' },
} as const;

export function Header() {
  const state = kConnection[connection.value];
  return (
    <header class="top">
      <h1 class="brand">
        <img src="icon.svg" alt="" width={22} height={22} />
        Camera
      </h1>
      {1 < channels.value.length ? (
        <select
          class="select"
          aria-label="Channel"
          value={String(channel.value)}
          data-testid="channel-select"
          onChange={(event) => selectChannel(Number(event.currentTarget.value))}
        >
          {channels.value.map((view) => (
            <option key={view.channel} value={String(view.channel)}>
              {`Channel ${view.channel}, ${view.kind}`}
            </option>
          ))}
        </select>
      ) : null}
      <span role="status" class="states">
        <Chip testid="connection" kind={state.kind} title="The connection to the camera">
          {state.text}
        </Chip>
        {null === busyWith.value ? null : (
          <Chip testid="busy" kind="warn">
            {'reset' === busyWith.value ? 'being reset' : 'starting'}
          </Chip>
        )}
        {'' === loadProblem.value ? null : <Chip kind="bad">{loadProblem.value}</Chip>}
      </span>
      <DeviceClock />
      <span class="spring" />
      <SaveBar />
      <AccountMenu />
    </header>
  );
}

function DeviceClock() {
  const time = deviceTime.value;
  if (undefined === time || null === clock.value) {
    return null;
  }
  const text = new Date(time).toISOString();
  const { simulated, speed } = clock.value;
  return (
    <span class="clock" title={`The camera's clock, ${text.slice(0, 10)}${simulated ? ', simulated' : ''}`}>
      <time dateTime={text.slice(0, 19)} data-testid="clock">
        {text.slice(11, 19)}
      </time>
      {simulated ? <Chip kind="accent">{0 === speed ? 'stands still' : `× ${speed}`}</Chip> : null}
    </span>
  );
}
