import type { ComponentChildren } from 'preact';
import { useEffect, useRef, useState } from 'preact/hooks';

import { api } from '../api';
import { attempt, channel, lens, loadLensSoon, metadata, readOnlyReason, shownValue, values } from '../store';
import type { LensAction } from '../types';
import { Button } from '../ui/Button';
import { Hold } from './hold';
import {
  type Family,
  familyOf,
  focusModeText,
  irisText,
  kExposureMode,
  kGoverning,
  lensReason,
  type Offer,
  offerOf,
  offersAnything,
  ratioText,
} from './lens';

const kPause = 1000; // milliseconds without a move, after which what this page did is over

// Moves the lens: what is held goes on until it is let go. Only what the channel has is offered.
export function LensPad() {
  const view = lens.value;
  const offer = offerOf(metadata.value);
  const [own, setOwn] = useState<Family | null>(null);
  const isMoving = true === view?.moving;
  // Between two steps the lens may stand for a moment.
  useEffect(() => {
    if (isMoving) {
      return undefined;
    }
    const timer = setTimeout(() => setOwn(null), kPause);
    return () => clearTimeout(timer);
  }, [isMoving]);
  const governed = kGoverning.map((key) => values.value.byKey.get(key)?.value).join();
  useEffect(() => {
    if (null !== lens.value) {
      loadLensSoon();
    }
  }, [governed]);
  if (null === view || !offersAnything(offer)) {
    return null;
  }
  const part = { offer, own, onOwn: setOwn };
  // What a whole part is blocked by is said beside it: a finger sees no titles.
  const why = (action: LensAction): string =>
    '' !== readOnlyReason.value
      ? ''
      : lensReason(action, { ...view, moving: false }, offer, '', own, shownValue(kExposureMode));
  return (
    <div class="lens" role="group" aria-label="Lens" data-testid="lens-pad">
      {offer.zoom ? (
        <LensPart name="Zoom" text={ratioText(view)} note={`position ${view.zoom.position}`} testid="lens-zoom">
          <LensButton action="zoom-out" label="Out" name="Zoom out" {...part} />
          <LensButton action="zoom-in" label="In" name="Zoom in" {...part} />
        </LensPart>
      ) : null}
      {offer.focus || offer.once ? (
        <LensPart
          name="Focus"
          text={focusModeText(view.focus.mode)}
          note={`position ${view.focus.position}, sharpness ${view.sharpness}`}
          why={offer.focus ? why('focus-near') : ''}
          testid="lens-focus"
        >
          {offer.focus ? <LensButton action="focus-near" label="Near" name="Focus near" {...part} /> : null}
          {offer.focus ? <LensButton action="focus-far" label="Far" name="Focus far" {...part} /> : null}
          {offer.once ? <LensButton action="auto-focus" label="Auto" name="Auto focus once" {...part} /> : null}
        </LensPart>
      ) : null}
      {offer.iris ? (
        <LensPart name="Iris" text={irisText(view)} why={why('iris-open')} testid="lens-iris">
          <LensButton action="iris-close" label="Close" name="Close the iris" {...part} />
          <LensButton action="iris-open" label="Open" name="Open the iris" {...part} />
        </LensPart>
      ) : null}
      <div class="lens-end">
        <span class={`lens-moving${isMoving ? ' on' : ''}`} role="status" data-testid="lens-moving">
          {isMoving ? 'Moving' : 'Standing'}
        </span>
        {'' === readOnlyReason.value ? null : <span class="lens-why muted">{readOnlyReason.value}</span>}
        {offer.reset ? <LensButton action="lens-reset" label="Reset lens" name="Reset lens" {...part} /> : null}
      </div>
    </div>
  );
}

function LensPart({
  name,
  text,
  note = '',
  why = '',
  testid,
  children,
}: {
  name: string;
  text: string;
  note?: string;
  why?: string;
  testid: string;
  children: ComponentChildren;
}) {
  return (
    <div class="lens-part" role="group" aria-label={name}>
      <p>
        <b>{name}</b> <span data-testid={testid}>{text}</span>
        {'' === note ? null : (
          <span class="lens-note muted" data-testid={`${testid}-note`}>
            {note}
          </span>
        )}
      </p>
      <div class="lens-buttons">{children}</div>
      {'' === why ? null : (
        <p class="lens-why muted" data-testid={`${testid}-why`}>
          {why}.
        </p>
      )}
    </div>
  );
}

interface ButtonProps {
  action: LensAction;
  label: string;
  name: string;
  offer: Offer;
  own: Family | null;
  onOwn: (family: Family) => void;
}

// Zoom, focus and iris go on while the button is held by mouse, finger or key; the others act once.
function LensButton({ action, label, name, offer, own, onOwn }: ButtonProps) {
  const view = lens.value;
  const hold = useRef<Hold | null>(null);
  const isPressed = useRef(false); // by a pointer, whose click is still to come
  const family = familyOf(action);
  const repeats = 'zoom' === family || 'focus' === family || 'iris' === family;
  const reason =
    null === view ? '' : lensReason(action, view, offer, readOnlyReason.value, own, shownValue(kExposureMode));

  const step = async (): Promise<boolean> => {
    // Further steps of what is being held add up, whatever was last heard of the lens.
    const now = lens.value;
    if (
      null === now ||
      '' !== lensReason(action, now, offer, readOnlyReason.value, family, shownValue(kExposureMode))
    ) {
      return false;
    }
    const asked = channel.value;
    onOwn(family);
    return attempt(async () => {
      const now = await api.lensAction(asked, action);
      if (asked === channel.value) {
        lens.value = now;
      }
    });
  };
  const stepNow = useRef(step);
  stepNow.current = step;
  if (null === hold.current) {
    hold.current = new Hold(() => stepNow.current());
  }
  const holding = hold.current;
  const begin = (): void => {
    if (repeats && '' === reason) {
      holding.begin();
    }
  };
  const end = (): void => holding.end();
  const leave = (): void => {
    isPressed.current = false;
    end();
  };
  useEffect(() => end, []);

  return (
    <Button
      class="lens-button"
      reason={'' === reason ? undefined : reason}
      aria-label={name}
      title={repeats ? `${name}; goes on while it is held` : name}
      data-testid={action}
      onPointerDown={(event) => {
        if (0 === event.button) {
          isPressed.current = true;
          begin();
        }
      }}
      onPointerUp={end}
      onPointerCancel={leave}
      onPointerLeave={leave}
      onBlur={end}
      onContextMenu={(event) => event.preventDefault()}
      onKeyDown={(event) => {
        if (repeats && (' ' === event.key || 'Enter' === event.key)) {
          event.preventDefault();
          if (!event.repeat) {
            begin();
          }
        }
      }}
      onKeyUp={(event) => {
        if (repeats && ' ' === event.key) {
          event.preventDefault(); // no click for what was held
        }
        end();
      }}
      onClick={() => {
        // A click that comes of a press has been served by it; one that comes alone is that of an assistive technology.
        if (!repeats || !isPressed.current) {
          void step();
        }
        isPressed.current = false;
      }}
    >
      {label}
    </Button>
  );
}
