import type { ComponentChildren, JSX } from 'preact';

interface Props extends Omit<JSX.HTMLAttributes<HTMLButtonElement>, 'icon' | 'onClick'> {
  kind?: 'plain' | 'primary' | 'danger' | 'quiet';
  small?: boolean;
  disabled?: boolean;
  // Why it cannot be pressed; the button stays reachable and says so.
  reason?: string | undefined;
  pressed?: boolean;
  onClick?: (event: JSX.TargetedMouseEvent<HTMLButtonElement>) => void;
  type?: 'button' | 'submit';
  children?: ComponentChildren;
}

// A button with a reason is not taken out of the order of the keyboard: who comes to it hears why it does nothing.
export function Button({ kind = 'plain', small, reason, pressed, onClick, type = 'button', class: extra, title, ...rest }: Props) {
  const blocked = undefined !== reason && '' !== reason;
  return (
    <button
      {...rest}
      type={type}
      class={`button ${kind}${true === small ? ' small' : ''}${undefined === extra ? '' : ` ${String(extra)}`}`}
      aria-pressed={pressed}
      aria-disabled={blocked ? true : undefined}
      title={blocked ? reason : title}
      onClick={(event) => {
        if (blocked) {
          event.preventDefault();
        } else {
          onClick?.(event);
        }
      }}
    />
  );
}
