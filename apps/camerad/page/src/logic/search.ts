// Finds parameters by what a person may remember of them.
import type { Style, Place } from './style';

export interface Hit extends Place {
  score: number; // smaller is better
  because: string; // what matched, when it is not the label: "choice 1/25 s"
}

const fold = (text: string) =>
  text
    .normalize('NFKD')
    .replace(/\p{M}/gu, '')
    .toLowerCase();

// How well one word fits a text: 0 the whole, 1 its beginning, 2 the beginning of a word in it, 3 inside; undefined not.
function fit(text: string, word: string): number | undefined {
  const at = text.indexOf(word);
  if (0 > at) {
    return undefined;
  }
  if (0 === at) {
    return text === word ? 0 : 1;
  }
  return new RegExp(`[^\\p{L}\\p{N}]${word.replace(/[^\p{L}\p{N}]/gu, '\\$&')}`, 'u').test(text) ? 2 : 3;
}

// Every word of the query has to be found: in the label, the name, the number, a choice, the group or the tab.
export function search(style: Style, query: string, most = 12): Hit[] {
  const words = fold(query)
    .split(/\s+/)
    .filter((word) => '' !== word);
  if (0 === words.length) {
    return [];
  }
  const hits: Hit[] = [];
  for (const place of style.places.values()) {
    const { item, group, tab } = place;
    const fields: { text: string; cost: number; because: string }[] = [
      { text: item.label, cost: 0, because: '' },
      { text: String(item.key), cost: 2, because: `number ${item.key}` },
      { text: item.name, cost: 10, because: item.name },
      { text: item.name.replace(/^KEY_/, '').replaceAll('_', ' '), cost: 10, because: item.name },
      { text: group.label, cost: 20, because: `group ${group.label}` },
      { text: tab.label, cost: 30, because: `tab ${tab.label}` },
      { text: item.words?.['text'] ?? '', cost: 20, because: item.words?.['text'] ?? '' },
      ...(item.choices ?? []).map((choice) => ({ text: choice.label, cost: 15, because: `choice ${choice.label}` })),
    ].filter((field) => '' !== field.text);
    let score = 0;
    const reasons = new Set<string>();
    const isHit = words.every((word) => {
      let best: { score: number; because: string } | undefined;
      for (const field of fields) {
        const found = fit(fold(field.text), word);
        // A number is meant as a whole or from its beginning: "34" is not 2340.
        if (undefined === found || (field.text === String(item.key) && 1 < found)) {
          continue;
        }
        if (undefined === best || found + field.cost < best.score) {
          best = { score: found + field.cost, because: field.because };
        }
      }
      if (undefined === best) {
        return false;
      }
      score += best.score;
      if ('' !== best.because) {
        reasons.add(best.because);
      }
      return true;
    });
    if (isHit) {
      hits.push({ ...place, score, because: [...reasons].join(', ') });
    }
  }
  return hits.sort((a, b) => a.score - b.score).slice(0, most);
}
