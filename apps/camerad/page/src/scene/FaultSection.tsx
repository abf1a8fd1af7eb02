import { useMemo, useState } from 'preact/hooks';

import { api, explain } from '../api';
import { attempt, faults, metadata } from '../store';
import { Button } from '../ui/Button';
import { Chip } from '../ui/Chip';
import { type FaultForm, faultText, faultWords, formObjection, kEmptyFault } from './faultText';
import { labelsOf } from './labels';

// What goes wrong in the driver and in the video module, on purpose.
export function FaultSection({ disabled, reason }: { disabled: boolean; reason: string }) {
  const names = useMemo(() => labelsOf(metadata.value), [metadata.value]);
  const name = (number: number): string => names.get(number) ?? '';
  const blocked = disabled ? reason : undefined;
  return (
    <section class="scene-section" aria-labelledby="scene-faults-title">
      <div class="scene-head">
        <h3 id="scene-faults-title">Faults</h3>
        {0 === faults.value.length ? null : (
          <Button
            small
            reason={blocked}
            data-testid="fault-clear"
            onClick={() => void attempt(() => api.clearFaults())}
          >
            Remove all
          </Button>
        )}
      </div>
      {0 === faults.value.length ? (
        <p class="muted" data-testid="fault-none">
          Nothing goes wrong on purpose.
        </p>
      ) : (
        <ul class="fault-list" data-testid="fault-list">
          {faults.value.map((fault) => (
            <li key={fault.id} data-testid={`fault-${fault.id}`}>
              <span class="fault-words">
                {faultWords(fault.text, name)}
                <code>{fault.text}</code>
              </span>
              <Chip
                kind={fault.acted > 0 ? 'warn' : 'plain'}
                title={`${fault.matched} calls matched, it acted on ${fault.acted}`}
              >
                {fault.acted > 0 ? `acted ${fault.acted}×` : 'not yet'}
              </Chip>
              <Button
                small
                kind="quiet"
                reason={blocked}
                aria-label={`Remove fault ${fault.id}`}
                data-testid={`fault-remove-${fault.id}`}
                onClick={() => void attempt(() => api.deleteFault(fault.id))}
              >
                Remove
              </Button>
            </li>
          ))}
        </ul>
      )}
      <AddFault names={names} disabled={disabled} reason={reason} />
    </section>
  );
}

function AddFault({ names, disabled, reason }: { names: Map<number, string>; disabled: boolean; reason: string }) {
  const [form, setForm] = useState<FaultForm>(kEmptyFault);
  const [text, setText] = useState<string | null>(null); // null: as the form says
  const [problem, setProblem] = useState('');
  const change = (part: Partial<FaultForm>): void => {
    setForm({ ...form, ...part });
    setText(null);
    setProblem('');
  };
  const line = text ?? faultText(form);
  const add = async (): Promise<void> => {
    const objection = null === text ? formObjection(form) : '' === text.trim() ? 'Write what goes wrong.' : '';
    if ('' !== objection || disabled) {
      setProblem(objection);
      return;
    }
    try {
      const added = await api.addFault(line.trim());
      // The event may have been here first.
      if (!faults.value.some((fault) => fault.id === added.id)) {
        faults.value = [...faults.value, added];
      }
      setProblem('');
      setText(null);
    } catch (error) {
      setProblem(explain(error));
    }
  };
  return (
    <form
      class="fault-form"
      aria-label="Add a fault"
      onSubmit={(event) => {
        event.preventDefault();
        void add();
      }}
    >
      <div class="fault-fields">
        <label>
          <span>Which</span>
          <select
            class="select"
            value={form.target}
            disabled={disabled}
            data-testid="fault-target"
            onChange={(event) => change({ target: 'key' === event.currentTarget.value ? 'key' : 'cmd' })}
          >
            <option value="cmd">Driver command</option>
            <option value="key">Notification</option>
          </select>
        </label>
        <label>
          <span>Number</span>
          <input
            type="text"
            list="fault-numbers"
            placeholder="2369 or any"
            autocomplete="off"
            value={form.number}
            disabled={disabled}
            data-testid="fault-number"
            onInput={(event) => change({ number: event.currentTarget.value.trim() })}
          />
          <datalist id="fault-numbers">
            {[...names].map(([number, name]) => (
              <option key={number} value={String(number)} label={name} />
            ))}
          </datalist>
        </label>
        {'cmd' === form.target ? (
          <label>
            <span>Option</span>
            <select
              class="select"
              value={form.option}
              disabled={disabled}
              data-testid="fault-option"
              onChange={(event) => change({ option: event.currentTarget.value })}
            >
              <option value="">Any</option>
              {['set', 'get', 'range', 'correct', 'status'].map((option) => (
                <option key={option} value={option}>
                  {option}
                </option>
              ))}
            </select>
          </label>
        ) : null}
        <label>
          <span>What happens</span>
          <select
            class="select"
            value={form.effect}
            disabled={disabled}
            data-testid="fault-effect"
            onChange={(event) => change({ effect: event.currentTarget.value as FaultForm['effect'] })}
          >
            <option value="result">It fails</option>
            <option value="silent">Nothing, unsaid</option>
            <option value="delay">It takes long</option>
          </select>
        </label>
        {'result' === form.effect ? (
          <label>
            <span>Result</span>
            <input
              class="short"
              type="text"
              value={form.result}
              disabled={disabled}
              data-testid="fault-result"
              onInput={(event) => change({ result: event.currentTarget.value.trim() })}
            />
          </label>
        ) : null}
        {'delay' === form.effect ? (
          <label>
            <span>Milliseconds</span>
            <input
              class="short"
              type="text"
              inputMode="numeric"
              value={form.delay}
              disabled={disabled}
              data-testid="fault-delay"
              onInput={(event) => change({ delay: event.currentTarget.value.trim() })}
            />
          </label>
        ) : null}
        <label>
          <span>Times</span>
          <input
            class="short"
            type="text"
            inputMode="numeric"
            placeholder="always"
            value={form.times}
            disabled={disabled}
            data-testid="fault-times"
            onInput={(event) => change({ times: event.currentTarget.value.trim() })}
          />
        </label>
        <label>
          <span>From call</span>
          <input
            class="short"
            type="text"
            inputMode="numeric"
            placeholder="first"
            value={form.nth}
            disabled={disabled}
            data-testid="fault-nth"
            onInput={(event) => change({ nth: event.currentTarget.value.trim() })}
          />
        </label>
        <label>
          <span>Channel</span>
          <input
            class="short"
            type="text"
            inputMode="numeric"
            placeholder="any"
            value={form.channel}
            disabled={disabled}
            data-testid="fault-channel"
            onInput={(event) => change({ channel: event.currentTarget.value.trim() })}
          />
        </label>
      </div>
      <div class="fault-line">
        <label for="fault-text">As text</label>
        <input
          id="fault-text"
          type="text"
          class="mono"
          spellcheck={false}
          autocomplete="off"
          value={line}
          disabled={disabled}
          aria-describedby={'' === problem ? undefined : 'fault-problem'}
          data-testid="fault-text"
          onInput={(event) => {
            setText(event.currentTarget.value);
            setProblem('');
          }}
        />
        <Button type="submit" reason={disabled ? reason : undefined} data-testid="fault-add">
          Add
        </Button>
      </div>
      {'' === problem ? null : (
        <p class="problem" id="fault-problem" role="alert" data-testid="fault-problem">
          {problem}
        </p>
      )}
    </form>
  );
}
