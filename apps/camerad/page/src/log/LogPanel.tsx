import './log.css';

import { useEffect, useLayoutEffect, useMemo, useRef, useState } from 'preact/hooks';

import { api } from '../api';
import { labelsOf } from '../scene/labels';
import { attempt, channels, level, metadata, notify, readOnlyReason, takeLevel } from '../store';
import { Button } from '../ui/Button';
import { Panel } from '../ui/Panel';
import { Select } from '../ui/Select';
import { clearLog, drawn, feedProblem, ring, startLog } from './feed';
import {
  isEverything,
  isFailure,
  kEverything,
  kindWord,
  type LogFilter,
  lineText,
  matcher,
  nameOf,
  timeOf,
  visibleRows,
} from './filter';
import type { LogLine } from './ring';

startLog();

const kRow = 24; // pixels; .log-row has the same height

// Kept while another view is shown.
let lastFilter: LogFilter = kEverything;

// What the library tells the driver and the video module, and what it says of itself, as it happens.
export function LogPanel() {
  const [filter, setFilter] = useState(lastFilter);
  const [paused, setPaused] = useState<{ lines: readonly LogLine[]; received: number } | null>(null);
  const [selected, setSelected] = useState<LogLine | null>(null);
  const change = (part: Partial<LogFilter>): void => {
    lastFilter = { ...filter, ...part };
    setFilter(lastFilter);
  };
  const version = drawn.value;
  const all = null === paused ? ring.shown() : paused.lines;
  const names = useMemo(() => labelsOf(metadata.value), [metadata.value]);
  const lines = useMemo(
    () => (isEverything(filter) ? all.slice() : all.filter(matcher(filter, names))),
    [filter, version, paused, names],
  );
  const missed = null === paused ? 0 : ring.received - paused.received;

  return (
    <Panel
      title="Log"
      testid="log-panel"
      actions={
        <>
          <Button
            small
            pressed={null !== paused}
            data-testid="log-pause"
            onClick={() => setPaused(null === paused ? { lines: ring.shown().slice(), received: ring.received } : null)}
          >
            {null === paused ? 'Pause' : 'Go on'}
          </Button>
          <Button small data-testid="log-copy" onClick={() => void copy(lines)}>
            Copy
          </Button>
          <Button
            small
            data-testid="log-clear"
            onClick={() => {
              clearLog();
              setSelected(null);
              setPaused(null);
            }}
          >
            Clear
          </Button>
        </>
      }
    >
      <div class="log-filter" role="group" aria-label="Which lines are shown">
        <input
          type="search"
          class="log-search"
          placeholder='Filter: words, "a phrase", -without'
          aria-label="Words that a line must have"
          value={filter.text}
          data-testid="log-filter"
          onInput={(event) => change({ text: event.currentTarget.value })}
        />
        <Check label="Driver" on={filter.driver} testid="log-kind-driver" onChange={(driver) => change({ driver })} />
        <Check label="Video" on={filter.video} testid="log-kind-video" onChange={(video) => change({ video })} />
        <Check
          label="Messages"
          on={filter.message}
          testid="log-kind-message"
          onChange={(message) => change({ message })}
        />
        <Check
          label="Failed only"
          on={filter.failedOnly}
          testid="log-failed"
          onChange={(failedOnly) => change({ failedOnly })}
        />
        {channels.value.length < 2 ? null : (
          <Select
            id="log-channel"
            label="Channel"
            value={filter.channel}
            choices={[
              { value: 0, label: 'All channels' },
              ...channels.value.map((view) => ({ value: view.channel, label: `Channel ${view.channel}` })),
            ]}
            testid="log-channel"
            onChange={(number) => change({ channel: number })}
          />
        )}
      </div>
      {'' === feedProblem.value ? null : (
        <p class="problem" role="alert">
          Earlier lines are missing. {feedProblem.value}
        </p>
      )}
      <Lines
        lines={lines}
        names={names}
        emptyText={all.length > 0 ? 'No line passes the filter.' : 'Nothing has been logged yet.'}
        selected={selected}
        onSelect={setSelected}
      />
      {null === selected ? null : (
        <Detail line={selected} name={nameOf(selected, names)} onClose={() => setSelected(null)} />
      )}
      <div class="log-foot">
        <span class="muted" role="status" data-testid="log-count">
          {isEverything(filter) ? `${all.length} lines` : `${lines.length} of ${all.length} lines`}
          {null === paused ? '' : `; paused, ${missed} more came`}
        </span>
        <Level />
      </div>
    </Panel>
  );
}

function Check({
  label,
  on,
  testid,
  onChange,
}: {
  label: string;
  on: boolean;
  testid: string;
  onChange: (on: boolean) => void;
}) {
  return (
    <label class="log-check">
      <input
        type="checkbox"
        checked={on}
        data-testid={testid}
        onChange={(event) => onChange(event.currentTarget.checked)}
      />
      {label}
    </label>
  );
}

interface LinesProps {
  lines: readonly LogLine[];
  names: ReadonlyMap<number, string>;
  emptyText: string;
  selected: LogLine | null;
  onSelect: (line: LogLine | null) => void;
}

// Draws only the rows that can be seen. At the end it follows what comes; scrolled up it stays with the lines that are
// read, also while the oldest go.
function Lines({ lines, names, emptyText, selected, onSelect }: LinesProps) {
  const box = useRef<HTMLDivElement>(null);
  const [place, setPlace] = useState({ top: 0, height: 400 });
  const [isFollowing, setFollowing] = useState(true);
  const anchor = useRef({ number: 0, offset: 0 });
  const newestRead = useRef(0);

  const look = (): void => {
    const element = box.current;
    if (null === element) {
      return;
    }
    const isAtEnd = element.scrollHeight - element.scrollTop - element.clientHeight < kRow;
    const row = Math.min(lines.length - 1, Math.floor(element.scrollTop / kRow));
    anchor.current = { number: lines[row]?.number ?? 0, offset: element.scrollTop - row * kRow };
    setFollowing(isAtEnd);
    setPlace({ top: element.scrollTop, height: element.clientHeight });
  };

  useLayoutEffect(() => {
    const element = box.current;
    if (null === element) {
      return;
    }
    if (isFollowing) {
      element.scrollTop = element.scrollHeight;
      newestRead.current = lines[lines.length - 1]?.number ?? 0;
    } else {
      const wanted = rowOf(lines, anchor.current.number) * kRow + anchor.current.offset;
      if (Math.abs(element.scrollTop - wanted) >= 1) {
        element.scrollTop = wanted;
      }
    }
    if (element.scrollTop !== place.top || element.clientHeight !== place.height) {
      setPlace({ top: element.scrollTop, height: element.clientHeight });
    }
  }, [lines, isFollowing]);

  useEffect(() => {
    const element = box.current;
    if (null === element) {
      return undefined;
    }
    const observer = new ResizeObserver(() => setPlace({ top: element.scrollTop, height: element.clientHeight }));
    observer.observe(element);
    return () => observer.disconnect();
  }, []);

  const { from, to } = visibleRows(lines.length, kRow, place.top, place.height);
  const unread = isFollowing ? 0 : lines.length - rowOf(lines, newestRead.current + 1);
  return (
    <div class="log-lines">
      <div
        ref={box}
        class="log-scroll"
        role="log"
        aria-label="Log lines. Enter shows a line in full."
        aria-live="off"
        tabIndex={0}
        data-testid="log-lines"
        data-following={isFollowing}
        onScroll={look}
        onKeyDown={(event) => {
          // Enter opens the topmost line that can be seen, and the arrows go from line to line as long as one is open.
          const row = null === selected ? Math.ceil(place.top / kRow) : rowOf(lines, selected.number);
          const step = null === selected ? 0 : 'ArrowDown' === event.key ? 1 : 'ArrowUp' === event.key ? -1 : 0;
          if ('Escape' === event.key && null !== selected) {
            onSelect(null);
          } else if (('Enter' === event.key && null === selected) || 0 !== step) {
            const line = lines[Math.min(lines.length - 1, Math.max(0, row + step))];
            if (undefined !== line) {
              event.preventDefault();
              onSelect(line);
              bringInto(event.currentTarget, rowOf(lines, line.number));
            }
          }
        }}
        onWheel={(event) => {
          const element = event.currentTarget;
          if (event.deltaY < 0 && element.scrollTop > 0) {
            look();
            setFollowing(false);
          }
        }}
      >
        <div class="log-rows" style={{ height: `${lines.length * kRow}px` }}>
          <div class="log-window" style={{ transform: `translateY(${from * kRow}px)` }}>
            {lines.slice(from, to).map((line) => (
              <Row
                key={line.number}
                line={line}
                name={nameOf(line, names)}
                isSelected={selected?.number === line.number}
                onSelect={onSelect}
              />
            ))}
          </div>
        </div>
        {0 === lines.length ? <p class="log-empty muted">{emptyText}</p> : null}
      </div>
      {isFollowing ? null : (
        <Button small kind="primary" class="log-newest" data-testid="log-newest" onClick={() => setFollowing(true)}>
          {unread > 0 ? `↓ ${unread} new` : '↓ Newest'}
        </Button>
      )}
    </div>
  );
}

// Scrolls no further than needed for a row to be seen whole.
function bringInto(element: HTMLElement, row: number): void {
  const top = Math.min(element.scrollTop, row * kRow);
  element.scrollTop = Math.max(top, (row + 1) * kRow - element.clientHeight);
}

// The first row whose number is not lower.
function rowOf(lines: readonly LogLine[], number: number): number {
  let low = 0;
  let high = lines.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if ((lines[middle] as LogLine).number < number) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

function Row({
  line,
  name,
  isSelected,
  onSelect,
}: {
  line: LogLine;
  name: string;
  isSelected: boolean;
  onSelect: (line: LogLine | null) => void;
}) {
  const isBad = isFailure(line);
  return (
    <div
      class={`log-row ${line.kind}${isBad ? ' failed' : ''}${isSelected ? ' selected' : ''}`}
      data-testid="log-row"
      data-number={line.number}
      onClick={() => onSelect(isSelected ? null : line)}
    >
      <span class="log-time">{timeOf(line)}</span>
      <span class="log-kind">{kindWord(line.kind)}</span>
      <span class="log-text">
        {isBad ? (
          <span class="log-mark" role="img" aria-label="failed">
            ✕{' '}
          </span>
        ) : null}
        {line.text}
        {'' === name ? null : <span class="log-name"> {name}</span>}
      </span>
    </div>
  );
}

function Detail({ line, name, onClose }: { line: LogLine; name: string; onClose: () => void }) {
  return (
    <div class="log-detail" role="status" data-testid="log-detail">
      <p class="log-detail-text">
        {lineText(line)}
        {'' === name ? '' : `  ${name}`}
      </p>
      <Button kind="quiet" small aria-label="Close the line" onClick={onClose}>
        ×
      </Button>
    </div>
  );
}

const kLevels: { value: number; label: string }[] = [
  { value: 0, label: '0: assertions' },
  { value: 1, label: '1: as usual' },
  { value: 2, label: '2' },
  { value: 3, label: '3' },
  { value: 4, label: '4: warnings too' },
  { value: 5, label: '5' },
  { value: 6, label: '6: each parameter and call' },
  { value: 7, label: '7: style documents too' },
  { value: 8, label: '8: everything' },
];

// How much the library says.
function Level() {
  const reason = readOnlyReason.value;
  return (
    <span class="log-level" title={'' === reason ? 'How much the library says' : reason}>
      <label for="log-level">Messages up to level</label>
      <Select
        id="log-level"
        value={level.value?.level}
        choices={kLevels}
        disabled={'' !== reason}
        testid="log-level"
        onChange={(wanted) => void attempt(async () => takeLevel(await api.setMessageLevel(wanted)))}
      />
    </span>
  );
}

async function copy(lines: readonly LogLine[]): Promise<void> {
  const text = lines.map((line) => `${lineText(line)}\n`).join('');
  let isDone = false;
  try {
    await navigator.clipboard.writeText(text);
    isDone = true;
  } catch {
    isDone = copyByHand(text); // no clipboard without TLS, or not allowed
  }
  notify(
    isDone
      ? `${lines.length} ${1 === lines.length ? 'line is' : 'lines are'} in the clipboard.`
      : 'The browser does not let this page write to the clipboard.',
    isDone ? 'info' : 'error',
  );
}

function copyByHand(text: string): boolean {
  const area = document.createElement('textarea');
  const before = document.activeElement;
  area.value = text;
  area.className = 'unseen';
  document.body.append(area);
  area.select();
  const isDone = document.execCommand('copy');
  area.remove();
  if (before instanceof HTMLElement) {
    before.focus();
  }
  return isDone;
}
