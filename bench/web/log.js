// The log: newest first, no more rows than a person would read.

const KINDS = ['command', 'query', 'event', 'action', 'shell', 'touch', 'screen', 'diagnostic', 'note'];
const QUIET = new Set(['query', 'diagnostic']);  // not shown until asked for: there are many
const MOST_ENTRIES = 2000;
const MOST_ROWS = 300;

// A command that only asks is a kind of its own.
function kindOf(entry) {
  return entry.kind === 'command' && entry.answer !== undefined ? 'query' : entry.kind;
}

function detailOf(entry) {
  const parts = [];
  const add = (name, value) => {
    if (value === undefined || value === '') return;
    parts.push(`${name} ${typeof value === 'object' ? JSON.stringify(value) : value}`);
  };
  if (entry.x !== undefined) add('at', `${entry.x}, ${entry.y}`);
  if (entry.rawX !== undefined) add('panel', `${entry.rawX}, ${entry.rawY}`);
  add('field', entry.field);
  add('event', entry.event);
  add('value', entry.value);
  add('data', entry.data);
  add('answer', typeof entry.answer === 'number' ? Number(entry.answer.toPrecision(6)) : entry.answer);
  for (const [name, value] of Object.entries(entry.arguments ?? {})) add(name, value);
  if (entry.result !== 0) add('result', entry.result);
  add('refused:', entry.error);
  return parts.join(' · ');
}

function timeOf(entry) {
  const time = new Date(entry.time);
  return `${time.toTimeString().slice(0, 8)}.${String(time.getMilliseconds()).padStart(3, '0')}`;
}

function rowOf(entry) {
  const row = document.createElement('li');
  if (entry.missed) {
    row.className = 'gap';
    row.textContent = entry.missed === 1 ? '1 entry is not here' : `${entry.missed} entries are not here`;
    return row;
  }
  row.dataset.kind = kindOf(entry);
  row.dataset.number = entry.number;
  const texts = {time: timeOf(entry), kind: kindOf(entry), name: entry.name, detail: detailOf(entry)};
  for (const [name, text] of Object.entries(texts)) {
    const span = document.createElement('span');
    span.className = name;
    span.textContent = text;
    row.append(span, ' ');
  }
  return row;
}

export class Log {
  #list;
  #pause;
  #entries = [];  // newest first; {missed: count} stands for entries that never came
  #hidden = new Set(QUIET);
  #isPaused = false;
  #top = null;  // the newest entry that is shown during a pause; null: there was none

  constructor(connection, list, kinds, pause) {
    this.#list = list;
    this.#pause = pause;
    for (const kind of KINDS) {
      const label = document.createElement('label');
      const box = Object.assign(document.createElement('input'), {type: 'checkbox', checked: !QUIET.has(kind)});
      box.addEventListener('change', () => {
        if (box.checked) this.#hidden.delete(kind);
        else this.#hidden.add(kind);
        this.#showAll();
      });
      label.append(box, ` ${kind}`);
      kinds.append(label);
    }
    connection.addEventListener('log', ({detail}) => this.#take(detail.entries));
    pause.addEventListener('click', () => {
      this.#isPaused = !this.#isPaused;
      this.#top = this.#entries[0] ?? null;
      pause.setAttribute('aria-pressed', String(this.#isPaused));
      this.#showAll();
    });
  }

  #take(entries) {
    if (entries.length === 0) return;
    if (this.#isOfAnother(entries)) {
      this.#entries = [];
      this.#list.replaceChildren();
    }
    const last = this.#entries[0]?.number ?? 0;
    const news = entries.filter(({number}) => number > last);
    if (news.length === 0) return;
    const missed = news.at(-1).number - last - 1;
    if (missed > 0) news.push({missed});
    this.#entries = [...news, ...this.#entries].slice(0, MOST_ENTRIES);
    if (this.#isPaused) this.#sayWaiting();
    else this.#prepend(news);
  }

  // Whether these are of another bench than what is known: numbers went back, or one has become another entry.
  #isOfAnother(entries) {
    const [known] = this.#entries;
    if (!known) return false;
    const same = entries.find(({number}) => number === known.number);
    return entries[0].number < known.number || (same !== undefined && same.time !== known.time);
  }

  #isShown(entry) { return entry.missed !== undefined || !this.#hidden.has(kindOf(entry)); }

  #prepend(entries) {
    this.#list.prepend(...entries.filter((entry) => this.#isShown(entry)).slice(0, MOST_ROWS).map(rowOf));
    while (this.#list.children.length > MOST_ROWS) this.#list.lastElementChild.remove();
  }

  #showAll() {
    this.#list.replaceChildren();
    this.#prepend(this.#entries.slice(this.#waiting()));
    this.#sayWaiting();
  }

  // How many entries, shown or not, have come since the pause began.
  #waiting() {
    if (!this.#isPaused) return 0;
    const top = this.#entries.indexOf(this.#top);
    return top < 0 ? this.#entries.length : top;
  }

  #sayWaiting() {
    const count = this.#entries.slice(0, this.#waiting()).filter((entry) => this.#isShown(entry)).length;
    this.#pause.textContent = count > 0 ? `Pause (${count} new)` : 'Pause';
  }
}
