// What was just done to the camera, or the entry that is looked at: as a command of the shell, as a link, and all since
// then as a scenario.

import {causesFirst, isEffect} from './logrow.js';

const HOLD = 60;        // ms of a tap unless it was longer
const INPUTS = ['touch', 'action', 'event'];

export const isInput = ({kind, name}) => INPUTS.includes(kind) && (kind !== 'touch' || name === 'press');

// What a POST takes to do again what the entries begin with, [path, body]; null: it is nothing that is done.
export function requestOf([entry, ...after]) {
  if (!entry || !isInput(entry)) return null;
  if (entry.kind === 'action') return ['action', {name: entry.name, ...entry.arguments}];
  if (entry.kind === 'event') return ['event', {event: entry.event, value: entry.value}];
  const spot = entry.x === undefined ? {x: entry.rawX, y: entry.rawY, raw: true} : {x: entry.x, y: entry.y};
  const end = after.findIndex(({kind, name}) => kind === 'touch' && name !== 'move');
  const moves = after.slice(0, end < 0 ? 0 : end).filter(({kind}) => kind === 'touch');
  if (moves.length > 0 && moves.length < 100 && !spot.raw) {
    const points = [entry, ...moves];
    return ['touch', {action: 'path', path: points.map(({x, y, time}, i) => ({x, y, ...(i > 0 && {ms: Math.max(time - points[i - 1].time, 1)})}))}];
  }
  return ['touch', {action: 'tap', ...spot, ms: end < 0 ? HOLD : Math.max(after[end].time - entry.time, HOLD)}];
}

const quoted = (text) => `'${text.replaceAll("'", "'\\''")}'`;

const curlOf = ([path, body]) => `curl -s ${location.origin}/api/${path} -d ${quoted(JSON.stringify(body))}`;

// The lines of a scenario that does again what `entries`, oldest first, tell: what followed from an action is not done twice.
export function scenarioOf(entries) {
  const lines = [];
  const ordered = causesFirst(entries);
  let first = null, last = null;
  for (const [i, entry] of ordered.entries()) {
    if (!isInput(entry) || entry.error || isEffect(entry, last)) continue;
    first ??= entry;
    const [path, body] = requestOf(ordered.slice(i));
    const {name, ...rest} = body;
    lines.push({ms: entry.time - first.time, ...(path === 'touch' ? {touch: body} : path === 'action' ? {action: name, ...rest} : body)});
    last = entry;
  }
  return lines.map((line) => `${JSON.stringify(line)}\n`).join('');
}

export class Entry {
  #log;
  #text;
  #copies;
  #shown = null;
  #isMarked = false;

  // `text` takes the command; `copies` are the buttons that copy it, and the link.
  constructor(log, text, [copy, link]) {
    this.#log = log;
    this.#text = text;
    this.#copies = [copy, link];
    log.addEventListener('marked', ({detail}) => {
      this.#isMarked = detail !== null;
      this.#show(detail ?? log.newest(isInput));
    });
    log.addEventListener('news', () => { if (!this.#isMarked) this.#show(log.newest(isInput)); });
    copy.addEventListener('click', () => this.#copy(copy, this.#text.textContent));
    link.addEventListener('click', () => this.#copy(link, `${location.origin}/#log-${this.#shown.number}`));
    this.#show(null);
  }

  #show(entry) {
    this.#shown = entry ?? null;
    const request = entry && requestOf(this.#log.since(entry));
    this.#text.textContent = request ? curlOf(request) : entry ? JSON.stringify(entry) : 'Nothing was done yet.';
    for (const button of this.#copies) button.disabled = !entry;
  }

  async #copy(button, text) {
    await navigator.clipboard.writeText(text);
    button.classList.add('done');
    setTimeout(() => button.classList.remove('done'), 1500);
  }
}
