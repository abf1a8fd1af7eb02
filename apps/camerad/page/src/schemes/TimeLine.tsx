import { useEffect, useRef } from 'preact/hooks';

import { dayOf, inForceIn, kDay, moved, type Part, type Piece, snapped, type Span, timeText } from '../logic/windows';
import { readOnlyReason, schemeNames, schemes } from '../store';
import { deviceMinute } from '../time';
import { holdWindow, setWindow, shownSpan } from './drafts';

const kGrid = 15; // minutes, for the pointer and the arrow keys
const kHours = [0, 3, 6, 9, 12, 15, 18, 21, 24];

// A piece of the day as an element with a place on the line. Styles are set by script, as the page's policy asks.
function useSpan(from: number, to: number) {
  const box = useRef<HTMLDivElement>(null);
  useEffect(() => {
    box.current?.style.setProperty('left', `${(100 * from) / kDay}%`);
    box.current?.style.setProperty('width', `${(100 * Math.max(0, to - from)) / kDay}%`);
  }, [from, to]);
  return box;
}

// 24 hours: a lane for each scheme, and below them what will be in force by the rule.
export function TimeLine() {
  const view = schemes.value;
  if (null === view) {
    return null;
  }
  const spans = view.schemes.map((scheme) => shownSpan(scheme.index));
  const isUsed = view.automatic && 'schedule' === view.follow;
  const names = schemeNames(view);
  const pieces = dayOf(spans, view.gaps);
  const day = pieces.map((piece) => `${timeText(piece.from)} to ${timeText(piece.to)} ${inForceIn(piece, names)}`).join(', ');
  return (
    <div class={`time-line${isUsed ? '' : ' unused'}`} data-testid="time-line">
      <div class="hours" aria-hidden="true">
        {kHours.map((hour) => (
          <Hour key={hour} hour={hour} />
        ))}
      </div>
      {view.schemes.map((scheme, index) => (
        <div class="lane-row" key={scheme.index}>
          <span class="lane-name" id={`lane-name-${index}`}>
            {scheme.name}
          </span>
          <Lane index={index} name={scheme.name} span={spans[index] as Span} />
        </div>
      ))}
      <div class="lane-row result">
        <span class="lane-name">{isUsed ? 'In force' : 'Would be'}</span>
        <div class="lane" data-testid="lane-result" role="img" aria-label={`${isUsed ? 'In force' : 'Would be in force'}: ${day}`}>
          {pieces.map((piece) => (
            <PieceView key={piece.from} piece={piece} name={inForceIn(piece, names)} />
          ))}
          <Now />
        </div>
      </div>
    </div>
  );
}

function Hour({ hour }: { hour: number }) {
  const box = useSpan(60 * hour, 60 * hour);
  return (
    <div ref={box} class="hour">
      <span>{String(hour).padStart(2, '0')}</span>
    </div>
  );
}

function Now() {
  const minute = deviceMinute.value;
  const box = useSpan(minute ?? 0, minute ?? 0);
  return undefined === minute ? null : (
    <div ref={box} class="now" data-testid="now-marker" data-minute={minute} title={`Now: ${timeText(minute)}`} />
  );
}

function PieceView({ piece: { from, to, scheme, matching }, name }: { piece: Piece; name: string }) {
  const box = useSpan(from, to);
  const kind = 0 === matching.length ? 'gap' : 1 < matching.length ? 'overlap' : '';
  const why = 'gap' === kind ? ', no window matches' : 'overlap' === kind ? ', windows overlap' : '';
  return (
    <div
      ref={box}
      class={`piece ${null === scheme ? 'lane-day-night' : `lane-${scheme % 4}`} ${kind}`}
      title={`${timeText(from)} to ${timeText(to)}: ${name}${why}`}
      data-testid={`piece-${from}`}
      data-scheme={scheme ?? 'day-night'}
    >
      <span>{name}</span>
    </div>
  );
}

function Lane({ index, name, span }: { index: number; name: string; span: Span }) {
  const lane = useRef<HTMLDivElement>(null);
  const isEmpty = span.from >= span.to;
  const body = useSpan(Math.min(span.from, kDay), isEmpty ? Math.min(span.from, kDay) : Math.min(span.to, kDay));
  const drag = useRef<{ part: Part; from: Span; x: number; width: number; moved: boolean } | null>(null);
  const isLocked = '' !== readOnlyReason.value;

  const start = (event: PointerEvent, part: Part) => {
    if (isLocked || 0 !== event.button || null === lane.current) {
      return;
    }
    event.preventDefault();
    event.stopPropagation();
    (event.currentTarget as HTMLElement).focus();
    lane.current.setPointerCapture(event.pointerId);
    drag.current = { part, from: span, x: event.clientX, width: lane.current.clientWidth, moved: false };
  };
  const move = (event: PointerEvent) => {
    const current = drag.current;
    if (null === current || 0 === current.width) {
      return;
    }
    const by = ((event.clientX - current.x) / current.width) * kDay;
    if (!current.moved && 3 > Math.abs(event.clientX - current.x)) {
      return; // a press is no drag
    }
    current.moved = true;
    const anchor = 'to' === current.part ? current.from.to : current.from.from;
    holdWindow(index, moved(current.from, current.part, snapped(anchor + by, event.shiftKey ? 1 : kGrid)));
  };
  const end = () => {
    const current = drag.current;
    drag.current = null;
    if (true === current?.moved) {
      setWindow(index, shownSpan(index));
    }
  };
  const press = (event: KeyboardEvent, part: Part) => {
    const step = event.shiftKey ? 1 : kGrid;
    const at = 'to' === part ? span.to : span.from;
    const wanted: Record<string, number> = {
      ArrowLeft: at - step,
      ArrowDown: at - step,
      ArrowRight: at + step,
      ArrowUp: at + step,
      PageDown: at - 60,
      PageUp: at + 60,
      Home: 0,
      End: kDay,
    };
    const to = wanted[event.key];
    if (undefined === to || isLocked) {
      return;
    }
    event.preventDefault();
    const grid = event.shiftKey || 'Home' === event.key || 'End' === event.key ? 1 : kGrid;
    // The first press brings an odd minute to the grid.
    const next = to > at ? Math.floor(to / grid) * grid : Math.ceil(to / grid) * grid;
    setWindow(index, moved(span, part, next));
  };
  const handle = (part: Part, label: string, value: number) => ({
    role: 'slider' as const,
    tabIndex: 0,
    'aria-label': `${name}: ${label}`,
    'aria-valuemin': 0,
    'aria-valuemax': kDay,
    'aria-valuenow': value,
    'aria-valuetext': 'whole' === part ? `${timeText(span.from)} to ${timeText(span.to)}` : timeText(value),
    'aria-disabled': isLocked ? true : undefined,
    onPointerDown: (event: PointerEvent) => start(event, part),
    onKeyDown: (event: KeyboardEvent) => press(event, part),
    'data-testid': `window-${index}-${part}`,
  });
  return (
    <div
      ref={lane}
      class="lane"
      data-testid={`lane-${index}`}
      onPointerMove={move}
      onPointerUp={end}
      onPointerCancel={end}
    >
      <div ref={body} class={`window lane-${index % 4}${isEmpty ? ' empty' : ''}`}>
        <div class="body" {...handle('whole', 'whole window', span.from)} />
        <div class="edge from" {...handle('from', 'start', span.from)} />
        <div class="edge to" {...handle('to', 'end', span.to)} />
      </div>
      <Now />
    </div>
  );
}
