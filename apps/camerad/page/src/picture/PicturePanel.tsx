import './picture.css';

import { useEffect, useLayoutEffect, useRef, useState } from 'preact/hooks';

import { ApiError, api, explain } from '../api';
import { attempt, channel, currentChannel, dayNight, notify, readOnlyReason } from '../store';
import { Button } from '../ui/Button';
import { CompareText, Divider } from './CompareView';
import { FramePainter, type Kept } from './frames';
import type { Histogram } from './histogram';
import { HistogramView } from './HistogramView';
import { icons } from './icons';
import { LensPad } from './LensPad';
import { PictureStream, type StreamState } from './stream';
import { useView } from './useView';
import { kMostScale, kScaleStep, kWhole, scaleText, zoomAt } from './view';

const kFrames = 15; // a second: smooth enough to set things by, and cheap for a camera

// The live picture of the channel that is shown, and what moves its lens.
export function PicturePanel() {
  if (0 === channel.value) {
    return (
      <section class="picture" aria-label="Picture" data-testid="picture-panel">
        <p class="muted">There is no channel to show a picture of.</p>
      </section>
    );
  }
  return <Picture shown={channel.value} />;
}

function Picture({ shown }: { shown: number }) {
  const figure = useRef<HTMLElement>(null);
  const frame = useRef<HTMLDivElement>(null);
  const canvas = useRef<HTMLCanvasElement>(null);
  const beforeCanvas = useRef<HTMLCanvasElement>(null);
  const painter = useRef<FramePainter | null>(null);
  const stream = useRef<PictureStream | null>(null);

  const [state, setState] = useState<StreamState>({ kind: 'connecting' });
  const [rate, setRate] = useState(0);
  const [hasPicture, setHasPicture] = useState(false);
  const [isFrozen, setFrozen] = useState(false);
  const [histogram, setHistogram] = useState<Histogram | null>(null);
  const [showHistogram, setShowHistogram] = useState(false);
  const [before, setBefore] = useState<Kept | null>(null);
  const [part, setPart] = useState(0.5);
  const [isFull, setFull] = useState(false);
  const [view, changeView] = useView(frame);

  useLayoutEffect(() => {
    if (null === canvas.current) {
      return undefined;
    }
    const made = new FramePainter(canvas.current, setHistogram, (width, height) => {
      setHasPicture(true);
      figure.current?.style.setProperty('--ratio', String(width / height));
    });
    painter.current = made;
    const timer = setInterval(() => setRate(Math.round(made.framesPerSecond())), 500);
    return () => {
      clearInterval(timer);
      made.close();
    };
  }, []);

  // Nobody looks at a frozen picture or a hidden page; the camera need not draw for them. A layout effect, so that no frame
  // follows once "Frozen" can be read.
  useLayoutEffect(() => {
    if (isFrozen) {
      return undefined;
    }
    const opened = new PictureStream({
      open: (signal) =>
        fetch(api.previewUrl(shown, kFrames), { credentials: 'same-origin', cache: 'no-store', signal }),
      onFrame: (jpeg) => painter.current?.take(jpeg),
      onState: setState,
      // Any other request lets the page find out that the session has ended.
      onUnauthorised: () => void api.version().catch(() => undefined),
    });
    stream.current = opened;
    const follow = (): void => (document.hidden ? opened.stop() : opened.start());
    follow();
    document.addEventListener('visibilitychange', follow);
    return () => {
      document.removeEventListener('visibilitychange', follow);
      opened.stop();
      painter.current?.forget();
    };
  }, [isFrozen, shown]);

  useEffect(() => {
    const follow = (): void => setFull(document.fullscreenElement === figure.current && null !== figure.current);
    document.addEventListener('fullscreenchange', follow);
    return () => document.removeEventListener('fullscreenchange', follow);
  }, []);

  const keepBefore = (): void => {
    if (null !== beforeCanvas.current) {
      setBefore(painter.current?.copyTo(beforeCanvas.current) ?? null);
    }
  };
  const transform = `translate(${100 * view.x}%, ${100 * view.y}%) scale(${view.scale})`;
  const night = dayNight.value;
  const isLost = 'lost' === state.kind;

  return (
    <section class="picture" ref={figure} aria-label="Picture" data-testid="picture-panel">
      <div
        ref={frame}
        class={`picture-frame${isLost ? ' lost' : ''}${view.scale > 1 ? ' magnified' : ''}`}
        tabIndex={0}
        role="group"
        aria-label="Picture. Plus and minus magnify, 0 shows the whole, arrow keys move what is magnified."
        data-testid="picture-frame"
      >
        <canvas
          ref={canvas}
          class="picture-layer"
          width={640}
          height={360}
          role="img"
          aria-label={altText(shown, night, isFrozen, hasPicture, isLost)}
          style={{ transform }}
          data-testid="picture"
        />
        <div
          class={`picture-before${null === before ? ' absent' : ''}`}
          style={{ clipPath: `inset(0 ${100 - 100 * part}% 0 0)` }}
          aria-hidden="true"
        >
          <canvas ref={beforeCanvas} class="picture-layer" style={{ transform }} />
          <span class="picture-tag tag-before">Before</span>
        </div>
        {null === before ? null : (
          <>
            {part < 0.85 ? (
              <span class="picture-tag tag-now" aria-hidden="true">
                Now
              </span>
            ) : null}
            <Divider part={part} frame={frame} onMove={setPart} />
          </>
        )}
        <div class="picture-chips">
          <DayNightBadge shown={shown} />
          <ChannelState />
          {isFrozen ? (
            <span class="picture-chip strong" data-testid="picture-frozen">
              Frozen
            </span>
          ) : null}
        </div>
        <div class="picture-chips end">
          {view.scale > 1 ? (
            <span class="picture-chip" data-testid="picture-scale">
              {scaleText(view.scale)}
            </span>
          ) : null}
          {isFrozen || !hasPicture ? null : <span class="picture-chip" data-testid="picture-fps">{`${rate} fps`}</span>}
        </div>
        <StreamText state={state} hasPicture={hasPicture} isFrozen={isFrozen} onTry={() => stream.current?.tryNow()} />
      </div>

      <div class="picture-tools" role="group" aria-label="What can be done with the picture">
        <Button
          small
          pressed={isFrozen}
          reason={hasPicture || isFrozen ? undefined : 'There is no picture yet'}
          title={isFrozen ? 'Go on with the live picture' : 'Keep the last picture on the screen'}
          data-testid="picture-freeze"
          onClick={() => setFrozen(!isFrozen)}
        >
          {isFrozen ? icons.go() : icons.freeze()} Freeze
        </Button>
        <Button
          small
          pressed={null !== before}
          reason={hasPicture ? undefined : 'There is no picture yet'}
          title={null === before ? 'Keep this picture and compare what comes with it' : 'End the comparison'}
          data-testid="picture-compare"
          onClick={() => (null === before ? keepBefore() : setBefore(null))}
        >
          {icons.compare()} Compare
        </Button>
        <Button
          small
          pressed={showHistogram}
          title="How many pixels there are of each level"
          data-testid="picture-histogram-toggle"
          onClick={() => setShowHistogram(!showHistogram)}
        >
          {icons.histogram()} Histogram
        </Button>
        <span class="picture-tools-space" />
        <span class="picture-tools-group">
          <Button
            small
            aria-label="Magnify less"
            title="Magnify less (−)"
            reason={view.scale <= 1 ? 'The whole picture is shown' : undefined}
            data-testid="picture-zoom-out"
            onClick={() => changeView((old) => zoomAt(old, 1 / kScaleStep, 0.5, 0.5))}
          >
            {icons.minus()}
          </Button>
          <Button
            small
            aria-label={`Show the whole picture, now ${scaleText(view.scale)}`}
            title="Show the whole picture (0)"
            class="picture-whole"
            data-testid="picture-zoom-reset"
            onClick={() => changeView(() => kWhole)}
          >
            {scaleText(view.scale)}
          </Button>
          <Button
            small
            aria-label="Magnify more"
            title="Magnify more (+)"
            reason={view.scale >= kMostScale ? 'It is magnified as far as it goes' : undefined}
            data-testid="picture-zoom-in"
            onClick={() => changeView((old) => zoomAt(old, kScaleStep, 0.5, 0.5))}
          >
            {icons.plus()}
          </Button>
        </span>
        <Button
          small
          aria-label="Download this picture"
          title={isFrozen ? 'Download the frozen picture' : 'Download a picture of now'}
          data-testid="picture-download"
          onClick={() => void download(shown, isFrozen ? (painter.current?.shownFile() ?? null) : null)}
        >
          {icons.download()}
        </Button>
        {document.fullscreenEnabled ? (
          <Button
            small
            aria-label="Full screen"
            title={isFull ? 'Leave the full screen' : 'Full screen'}
            pressed={isFull}
            data-testid="picture-fullscreen"
            onClick={() => void toggleFull(figure.current)}
          >
            {icons.full()}
          </Button>
        ) : null}
      </div>

      {null === before || null === histogram ? null : (
        <div class="compare-line">
          <CompareText before={before.histogram} now={histogram} />
          <Button small kind="quiet" data-testid="picture-before-keep" onClick={keepBefore}>
            Compare with now
          </Button>
        </div>
      )}
      {showHistogram ? <HistogramView histogram={histogram} /> : null}
      <LensPad />
    </section>
  );
}

function altText(
  shown: number,
  night: 'day' | 'night' | null,
  isFrozen: boolean,
  hasPicture: boolean,
  isLost: boolean,
): string {
  if (!hasPicture) {
    return `Channel ${shown}: no picture yet`;
  }
  const state = null === night ? '' : `, ${night}`;
  const what = isFrozen ? 'Frozen picture' : isLost ? 'Last picture before the connection was lost' : 'Live picture';
  return `${what} of channel ${shown}${state}`;
}

// Says whether the channel works by day or by night; pressed, it forces the other.
function DayNightBadge({ shown }: { shown: number }) {
  const state = dayNight.value;
  const [isBusy, setBusy] = useState(false);
  if (null === state) {
    return null;
  }
  const isNight = 'night' === state;
  const other = isNight ? 'day' : 'night';
  const reason = readOnlyReason.value;
  const force = async (): Promise<void> => {
    setBusy(true);
    await attempt(async () => {
      dayNight.value = (await api.setDayNight(shown, other)).state;
      notify(`Forced to ${other}. The camera decides by itself again once its day and night mode is set.`);
    });
    setBusy(false);
  };
  return (
    <Button
      small
      class="picture-chip"
      reason={'' === reason ? undefined : reason}
      title={`The channel works by ${state}. Force it to ${other}`}
      aria-label={`${isNight ? 'Night' : 'Day'}. Force the channel to ${other}`}
      aria-busy={isBusy}
      data-testid="day-night-badge"
      data-state={state}
      onClick={() => void (isBusy ? undefined : force())}
    >
      {isNight ? icons.moon() : icons.sun()} {isNight ? 'Night' : 'Day'}
    </Button>
  );
}

// What the channel is busy with, when it is.
function ChannelState() {
  const view = currentChannel.value;
  const text =
    null === view || (null === view.busyWith && view.ready)
      ? ''
      : 'reset' === view.busyWith
        ? 'Being reset'
        : null !== view.busyWith
          ? 'Starting'
          : 'Not ready';
  return (
    <span role="status">
      {'' === text ? null : (
        <span class="picture-chip strong" data-testid="channel-state">
          {text}
        </span>
      )}
    </span>
  );
}

function StreamText({
  state,
  hasPicture,
  isFrozen,
  onTry,
}: {
  state: StreamState;
  hasPicture: boolean;
  isFrozen: boolean;
  onTry: () => void;
}) {
  const isLost = 'lost' === state.kind && !isFrozen;
  const text = isLost
    ? `${hasPicture ? 'The picture is lost' : 'No picture'}. ${state.why} Trying again in ${state.seconds} s.`
    : hasPicture
      ? ''
      : 'Waiting for the first picture …';
  return (
    <div class="picture-text" role="status" data-testid="picture-state" data-state={isFrozen ? 'frozen' : state.kind}>
      {'' === text ? null : (
        <p>
          {text}
          {isLost ? (
            <Button small data-testid="picture-try" onClick={onTry}>
              Try now
            </Button>
          ) : null}
        </p>
      )}
    </div>
  );
}

async function toggleFull(figure: HTMLElement | null): Promise<void> {
  try {
    if (null !== document.fullscreenElement) {
      await document.exitFullscreen();
    } else {
      await figure?.requestFullscreen();
    }
  } catch {
    notify('The browser does not allow the full screen.', 'error');
  }
}

// A frozen picture as it stands there; otherwise one that the camera draws now.
async function download(shown: number, frozen: Uint8Array | null): Promise<void> {
  try {
    const file = null === frozen ? await snapshot(shown) : new Blob([frozen], { type: 'image/jpeg' });
    const url = URL.createObjectURL(file);
    const link = document.createElement('a');
    link.href = url;
    link.download = `channel-${shown}-${new Date().toISOString().slice(0, 19).replace(/[:T]/g, '-')}.jpg`;
    link.click();
    setTimeout(() => URL.revokeObjectURL(url), 10_000);
  } catch (error) {
    notify(`The picture could not be downloaded. ${explain(error)}`, 'error');
  }
}

async function snapshot(shown: number): Promise<Blob> {
  const response = await fetch(api.snapshotUrl(shown), { credentials: 'same-origin', cache: 'no-store' });
  if (!response.ok) {
    throw new ApiError({
      type: '/problems/unknown',
      title: `The camera answered with status ${response.status}.`,
      status: response.status,
    });
  }
  return response.blob();
}
