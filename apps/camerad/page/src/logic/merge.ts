// What an event of the camera makes of what the page knows. Pure: nothing here has state of its own.
import type { ParameterEvent, ParametersView, ParameterValue, SchemeEvent } from '../types';

// Of two states of one thing the newer. A change comes twice, as the answer to who made it and as an event to all, and the
// two in any order: an answer that is older than an event which has been here must not be shown any more.
export function newerOf<State extends { revision: number }>(known: State | null, come: State): State {
  return null !== known && come.revision < known.revision ? known : come;
}

export interface Values {
  channel: number;
  scheme: number;
  revision: number;
  byKey: ReadonlyMap<number, ParameterValue>;
}

export const kNoValues: Values = { channel: 0, scheme: -1, revision: -1, byKey: new Map() };

export function valuesOf(view: ParametersView): Values {
  return {
    channel: view.channel,
    scheme: view.scheme,
    revision: view.revision,
    byKey: new Map(view.parameters.map((parameter) => [parameter.key, parameter])),
  };
}

// An event that the values already contain changes nothing; so does one of another channel or of a scheme that is not
// the one they belong to.
export function withChanges(values: Values, event: ParameterEvent): Values {
  if (event.channel !== values.channel || event.scheme !== values.scheme || event.revision <= values.revision) {
    return values;
  }
  const byKey = new Map(values.byKey);
  for (const change of event.changes) {
    const known = byKey.get(change.key) ?? { key: change.key, name: '', value: change.value, unsaved: false };
    byKey.set(change.key, {
      ...known,
      value: change.value,
      unsaved: change.unsaved,
      ...(undefined === change.stored ? {} : { stored: change.stored }),
    });
  }
  return { ...values, revision: event.revision, byKey };
}

// The camera has gone over to another scheme; the values that differ follow in an event of their own.
export function withScheme(values: Values, event: SchemeEvent): Values {
  return event.channel === values.channel ? { ...values, scheme: event.to } : values;
}

export function withValue(values: Values, value: ParameterValue): Values {
  const byKey = new Map(values.byKey);
  byKey.set(value.key, { ...byKey.get(value.key), ...value });
  return { ...values, byKey };
}
