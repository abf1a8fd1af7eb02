import type { RefObject } from 'preact';
import { useEffect, useRef, useState } from 'preact/hooks';

import { type Fingers, fingersOf, kWhole, keyView, panBy, pinch, type View, wheelFactor, zoomAt } from './view';

// Magnifies and moves the picture in its frame by wheel, fingers, mouse and keys.
export function useView(frame: RefObject<HTMLElement>): [View, (change: (view: View) => View) => void] {
  const [view, setView] = useState<View>(kWhole);
  const now = useRef(view);
  now.current = view;

  useEffect(() => {
    const element = frame.current;
    if (null === element) {
      return undefined;
    }
    const change = (next: View): void => {
      now.current = next;
      setView(next);
    };
    const placeOf = (event: { clientX: number; clientY: number }): [number, number] => {
      const box = element.getBoundingClientRect();
      return [(event.clientX - box.left) / Math.max(1, box.width), (event.clientY - box.top) / Math.max(1, box.height)];
    };
    const pointers = new Map<number, [number, number]>();
    const two = (): Fingers | undefined => {
      const [first, second] = [...pointers.values()];
      return undefined === first || undefined === second ? undefined : fingersOf(...first, ...second);
    };
    const onWheel = (event: WheelEvent): void => {
      if (now.current.scale <= 1 && event.deltaY >= 0) {
        return; // the page scrolls on
      }
      event.preventDefault();
      const lines = 1 === event.deltaMode ? 33 : 1;
      change(zoomAt(now.current, wheelFactor(event.deltaY * lines), ...placeOf(event)));
    };
    const onDown = (event: PointerEvent): void => {
      if (isControl(event.target, element) || (0 !== event.button && 'mouse' === event.pointerType)) {
        return;
      }
      pointers.set(event.pointerId, placeOf(event));
      if (now.current.scale > 1 || pointers.size > 1) {
        element.setPointerCapture(event.pointerId);
      }
    };
    const onMove = (event: PointerEvent): void => {
      const before = pointers.get(event.pointerId);
      if (undefined === before) {
        return;
      }
      const place = placeOf(event);
      const apart = two();
      pointers.set(event.pointerId, place);
      const moved = two();
      if (undefined !== apart && undefined !== moved) {
        change(pinch(now.current, apart, moved));
      } else if (now.current.scale > 1) {
        change(panBy(now.current, place[0] - before[0], place[1] - before[1]));
      }
    };
    const onUp = (event: PointerEvent): void => {
      pointers.delete(event.pointerId);
    };
    const onDouble = (event: MouseEvent): void => {
      if (!isControl(event.target, element)) {
        change(now.current.scale > 1 ? kWhole : zoomAt(now.current, 3, ...placeOf(event)));
      }
    };
    const onKey = (event: KeyboardEvent): void => {
      if (event.target !== element || event.ctrlKey || event.metaKey || event.altKey) {
        return;
      }
      const next = keyView(now.current, event.key);
      if (undefined !== next) {
        event.preventDefault();
        change(next);
      }
    };
    element.addEventListener('wheel', onWheel, { passive: false });
    element.addEventListener('pointerdown', onDown);
    element.addEventListener('pointermove', onMove);
    element.addEventListener('pointerup', onUp);
    element.addEventListener('pointercancel', onUp);
    element.addEventListener('lostpointercapture', onUp);
    element.addEventListener('pointerleave', onUp);
    element.addEventListener('dblclick', onDouble);
    element.addEventListener('keydown', onKey);
    return () => {
      element.removeEventListener('wheel', onWheel);
      element.removeEventListener('pointerdown', onDown);
      element.removeEventListener('pointermove', onMove);
      element.removeEventListener('pointerup', onUp);
      element.removeEventListener('pointercancel', onUp);
      element.removeEventListener('lostpointercapture', onUp);
      element.removeEventListener('pointerleave', onUp);
      element.removeEventListener('dblclick', onDouble);
      element.removeEventListener('keydown', onKey);
    };
  }, []);

  return [view, (change) => setView((before) => change(before))];
}

// Buttons and sliders that lie over the picture keep what is meant for them.
function isControl(target: EventTarget | null, frame: HTMLElement): boolean {
  return target instanceof Element && target !== frame && null !== target.closest('button, [role="slider"], a');
}
