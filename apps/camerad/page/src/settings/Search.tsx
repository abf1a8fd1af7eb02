import { useMemo, useState } from 'preact/hooks';

import { search } from '../logic/search';
import { isShown, labelOf, shownWhen } from '../logic/style';
import { reveal, style, valueOf } from './state';

// Finds a parameter by its name, number or a choice, and leads to it.
export function Search() {
  const [query, setQuery] = useState('');
  const [open, setOpen] = useState(false);
  const [at, setAt] = useState(0);
  const hits = useMemo(() => search(style.value, query), [query, style.value]);
  const isOpen = open && '' !== query.trim();
  const active = isOpen ? hits[Math.min(at, hits.length - 1)] : undefined;

  const choose = (key: number) => {
    setOpen(false);
    setQuery('');
    reveal(key);
  };
  const onKeyDown = (event: KeyboardEvent) => {
    if (('ArrowDown' === event.key || 'ArrowUp' === event.key) && 0 < hits.length) {
      event.preventDefault();
      setOpen(true);
      setAt((at + ('ArrowDown' === event.key ? 1 : hits.length - 1)) % hits.length);
    } else if ('Enter' === event.key && undefined !== active) {
      event.preventDefault();
      choose(active.item.key);
    } else if ('Escape' === event.key) {
      setOpen(false);
      setQuery('');
    }
  };
  return (
    <div
      class="search"
      onFocusOut={(event) => {
        if (!(event.relatedTarget instanceof Node && event.currentTarget.contains(event.relatedTarget))) {
          setOpen(false);
        }
      }}
    >
      <input
        type="search"
        role="combobox"
        placeholder="Find a parameter"
        aria-label="Find a parameter by name, number or choice"
        aria-expanded={isOpen}
        aria-controls="search-hits"
        aria-autocomplete="list"
        aria-activedescendant={undefined === active ? undefined : `hit-${active.item.key}`}
        autocomplete="off"
        spellcheck={false}
        value={query}
        data-testid="search"
        onInput={(event) => {
          setQuery(event.currentTarget.value);
          setAt(0);
          setOpen(true);
        }}
        onFocus={() => setOpen(true)}
        onKeyDown={onKeyDown}
      />
      <div class="unseen" role="status">
        {isOpen ? `${hits.length} found` : ''}
      </div>
      <ul id="search-hits" role="listbox" aria-label="Parameters found" hidden={!isOpen || 0 === hits.length}>
        {isOpen
          ? hits.map((hit) => {
              const hidden = !isShown(style.value, hit, valueOf);
              const when = hidden ? shownWhen(style.value, hit) : '';
              return (
                <li
                  key={hit.item.key}
                  id={`hit-${hit.item.key}`}
                  role="option"
                  aria-selected={hit === active}
                  data-testid={`hit-${hit.item.key}`}
                  onMouseDown={(event) => event.preventDefault()}
                  onClick={() => choose(hit.item.key)}
                >
                  <span>{labelOf(style.value, hit.item.key)}</span>
                  <span class="muted">
                    {hit.tab.label}
                    {'' === hit.because ? '' : ` · ${hit.because}`}
                    {hidden ? ` · ${'' === when ? 'not offered now' : `shown when ${when}`}` : ''}
                  </span>
                </li>
              );
            })
          : null}
      </ul>
      {isOpen && 0 === hits.length ? <p class="no-hits">Nothing is called like that.</p> : null}
    </div>
  );
}
