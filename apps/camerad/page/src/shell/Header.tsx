import { channel, channels, clock, connection, logout, selectChannel, session } from '../store';
import { Button } from '../ui/Button';
import { Chip } from '../ui/Chip';

export function Header() {
  return (
    <header class="top">
      <strong class="brand">Camera</strong>
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
      <Chip testid="connection">{connection.value}</Chip>
      <span data-testid="clock">{clock.value?.time.slice(11) ?? ''}</span>
      <span class="spring" />
      <span data-testid="account-name">{session.value?.name}</span>
      <Button kind="quiet" data-testid="logout" onClick={() => void logout()}>
        Sign out
      </Button>
    </header>
  );
}
