interface Props {
  id: string;
  label?: string | undefined; // without it, a <label for> names the switch
  on: boolean | undefined; // undefined: not known
  disabled?: boolean | undefined;
  describedBy?: string | undefined;
  testid?: string | undefined;
  onChange: (on: boolean) => void;
}

export function Switch({ id, label, on, disabled, describedBy, testid, onChange }: Props) {
  return (
    <input
      id={id}
      type="checkbox"
      role="switch"
      class="switch"
      checked={true === on}
      disabled={disabled}
      aria-label={label}
      aria-describedby={describedBy}
      data-testid={testid}
      onChange={(event) => {
        const wanted = event.currentTarget.checked;
        event.currentTarget.checked = true === on; // until the state follows
        onChange(wanted);
      }}
    />
  );
}
