// A fault as a form, and as the line of text that the camera takes. The camera judges the line; the form only helps to
// write it.

export interface FaultForm {
  target: 'cmd' | 'key';
  number: string; // a number, or "any"
  channel: string; // empty: any
  option: string; // empty: any; only for a driver call
  effect: 'result' | 'silent' | 'delay';
  result: string;
  delay: string; // milliseconds
  times: string; // empty: always
  nth: string; // empty: the first
}

export const kEmptyFault: FaultForm = {
  target: 'cmd',
  number: '',
  channel: '',
  option: 'set',
  effect: 'result',
  result: '-5',
  delay: '500',
  times: '1',
  nth: '',
};

const kNumber = /^(?:\d{1,10}|0x[0-9a-f]{1,8})$/i;

// What is wrong with the form, for a person; empty when nothing is.
export function formObjection(form: FaultForm): string {
  const name = 'cmd' === form.target ? 'command' : 'key';
  if ('any' !== form.number && !kNumber.test(form.number)) {
    return `Which ${name}? Give its number, or "any".`;
  }
  if ('result' === form.effect && (!/^-?\d{1,9}$/.test(form.result) || 0 === Number(form.result))) {
    return 'Give a result other than 0, such as -5.';
  }
  if ('delay' === form.effect && !(/^\d{1,7}$/.test(form.delay) && Number(form.delay) > 0)) {
    return 'Give a delay in milliseconds.';
  }
  if ('' !== form.channel && !/^[1-9]$/.test(form.channel)) {
    return 'A channel is a number from 1 on, or nothing for any.';
  }
  if ('' !== form.times && !/^[1-9]\d{0,8}$/.test(form.times)) {
    return 'How many times? 1 or more, or nothing for always.';
  }
  if ('' !== form.nth && !/^[1-9]\d{0,8}$/.test(form.nth)) {
    return 'From which call on? 1 or more, or nothing for the first.';
  }
  return '';
}

export function faultText(form: FaultForm): string {
  const fields = [`${form.target}=${form.number || 'any'}`];
  if ('' !== form.channel) {
    // People count channels from 1; the driver counts them from 0.
    fields.push(`ch=${'cmd' === form.target ? Number(form.channel) - 1 : form.channel}`);
  }
  if ('cmd' === form.target && '' !== form.option) {
    fields.push(`opt=${form.option}`);
  }
  if ('' !== form.nth) {
    fields.push(`nth=${form.nth}`);
  }
  if ('result' === form.effect) {
    fields.push(`result=${form.result}`);
  } else if ('silent' === form.effect) {
    fields.push('silent=1');
  } else {
    fields.push(`delay=${Number(form.delay) * 1000}`);
  }
  if ('' !== form.times) {
    fields.push(`times=${form.times}`);
  }
  return fields.join(' ');
}

// A fault in words: "Driver command 2369, set: returns -5, once".
export function faultWords(text: string, name: (number: number) => string = () => ''): string {
  const fields = new Map(
    text
      .trim()
      .split(/\s+/)
      .map((field) => {
        const at = field.indexOf('=');
        return [field.slice(0, at), field.slice(at + 1)] as const;
      }),
  );
  const isKey = fields.has('key');
  const number = fields.get(isKey ? 'key' : 'cmd') ?? 'any';
  const called = 'any' === number ? '' : name(Number(number));
  const what = isKey ? 'notification' : 'driver command';
  const channel = fields.get('ch');
  const option = fields.get('opt');
  const subject = [
    'any' === number
      ? `Any ${what}`
      : `${isKey ? 'Notification' : 'Driver command'} ${number}` + ('' === called ? '' : ` (${called})`),
    undefined === option || 'any' === option ? '' : option,
    undefined === channel || 'any' === channel ? '' : `channel ${isKey ? channel : Number(channel) + 1}`,
  ]
    .filter((part) => '' !== part)
    .join(', ');
  const effects: string[] = [];
  const delay = Number(fields.get('delay') ?? 0);
  if (delay > 0) {
    effects.push(`waits ${delay >= 1000 ? `${delay / 1000} ms` : `${delay} µs`}`);
  }
  const result = Number(fields.get('result') ?? 0);
  if (0 !== result) {
    effects.push(`returns ${result}`);
  } else if ('1' === fields.get('silent')) {
    effects.push('does nothing and says that it did');
  }
  const nth = Number(fields.get('nth') ?? 1);
  if (nth > 1) {
    effects.push(`from call ${nth} on`);
  }
  const times = Number(fields.get('times') ?? -1);
  effects.push(times < 0 ? 'always' : 1 === times ? 'once' : `${times} times`);
  return `${subject}: ${effects.join(', ')}`;
}
