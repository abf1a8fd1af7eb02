// Numbers as a person types and reads them.

export interface Limits {
  min?: number | undefined;
  max?: number | undefined;
  step?: number | undefined;
}

// What the number may be, in words: "0 to 100", "0 to 100 in steps of 5".
export function limitsText({ min, max, step }: Limits): string {
  const steps = undefined !== step && 1 < step ? ` in steps of ${step}` : '';
  if (undefined !== min && undefined !== max) {
    return `${numberText(min)} to ${numberText(max)}${steps}`;
  }
  if (undefined !== min) {
    return `${numberText(min)} or more${steps}`;
  }
  if (undefined !== max) {
    return `${numberText(max)} or less${steps}`;
  }
  return `a whole number${steps}`;
}

// With a real minus sign.
export function numberText(value: number): string {
  return String(value).replace('-', '\u2212');
}

// Takes a whole number as it is typed: with blanks around it, with any kind of minus sign.
export function parseNumber(text: string, limits: Limits = {}): { value: number } | { objection: string } {
  const plain = text.trim().replace(/^[\u2212\u2013]/, '-');
  const value = Number(plain);
  if (!/^[+-]?\d+$/.test(plain) || !Number.isSafeInteger(value)) {
    return { objection: `Type a whole number: ${limitsText(limits)}.` };
  }
  const { min, max, step = 1 } = limits;
  if ((undefined !== min && value < min) || (undefined !== max && value > max)) {
    return { objection: `It takes ${limitsText(limits)}.` };
  }
  if (1 < step && 0 !== (value - (min ?? 0)) % step) {
    return { objection: `It takes ${limitsText(limits)}.` };
  }
  return { value: 0 === value ? 0 : value };
}
