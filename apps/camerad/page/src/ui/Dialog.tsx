import type { ComponentChildren } from 'preact';
import { useEffect, useRef } from 'preact/hooks';

interface Props {
  title: string;
  testid?: string | undefined;
  onClose: () => void;
  children: ComponentChildren;
}

let nextId = 1;

// A modal dialog: the focus stays in it, Escape closes it, and the focus goes back to where it came from. The browser's
// own <dialog> does all of it.
export function Dialog({ title, testid, onClose, children }: Props) {
  const box = useRef<HTMLDialogElement>(null);
  const id = useRef(`dialog-${nextId++}`);
  useEffect(() => {
    const before = document.activeElement;
    const dialog = box.current;
    dialog?.showModal();
    return () => {
      dialog?.close(); // while it is modal, nothing behind it can have the focus
      if (before instanceof HTMLElement && before.isConnected) {
        before.focus();
      }
    };
  }, []);
  return (
    <dialog
      ref={box}
      class="dialog"
      aria-labelledby={id.current}
      data-testid={testid}
      onCancel={(event) => {
        event.preventDefault();
        onClose();
      }}
      onClick={(event) => {
        if (event.target === box.current) {
          onClose(); // beside the box
        }
      }}
    >
      <div class="dialog-box">
        <h2 id={id.current}>{title}</h2>
        {children}
      </div>
    </dialog>
  );
}
