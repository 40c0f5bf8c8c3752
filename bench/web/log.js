// The log: newest first, what follows from a touch, an event or an action below it, no more rows than a person would read.

import {download} from './download.js';
import {causesFirst, isEffect, kindOf, QUERY, rowOf, tellEffect, textOf} from './logrow.js';

const KINDS = ['touch', 'action', 'event', 'command', QUERY, 'screen', 'voice', 'shell', 'note', 'diagnostic'];
const QUIET = new Set([QUERY, 'diagnostic']);  // not shown until asked for: there are many
const MOST_ENTRIES = 2000;
const MOST_ROWS = 300;

export class Log extends EventTarget {
  #list;
  #pause;
  #find;
  #entries = [];  // newest first; {missed: count} stands for entries that never came
  #hidden = new Set(QUIET);
  #words = [];      // that are looked for
  #isPaused = false;
  #top = null;      // the newest entry that is shown during a pause; null: there was none
  #head = null;     // of the newest group: its entry,
  #headRow = null;  // its row,
  #lastRow = null;  // and the last row of the group
  #marked = null;   // number

  // Its event "marked" has the entry that was marked, or null.
  constructor(connection, {list, kinds, pause, find, copy, save}) {
    super();
    this.#list = list;
    this.#pause = pause;
    this.#find = find;
    kinds.append(...KINDS.map((kind) => this.#boxOf(kind)));
    connection.addEventListener('log', ({detail}) => this.#take(detail.entries));
    pause.addEventListener('click', () => {
      this.#isPaused = !this.#isPaused;
      this.#top = this.#entries[0] ?? null;
      pause.setAttribute('aria-pressed', String(this.#isPaused));
      this.#showAll();
    });
    find.addEventListener('input', () => this.#look());
    copy.addEventListener('click', () => navigator.clipboard.writeText(this.#shown().map(textOf).join('\n')));
    save.addEventListener('click', () => this.#save());
  }

  // Marks the entry of this number, and brings it into sight of the list; null: none.
  mark(number) {
    this.#marked = number;
    const entry = this.#entries.find((each) => each.number === number) ?? null;
    this.#list.querySelector('[aria-current]')?.removeAttribute('aria-current');
    const row = entry && this.#list.querySelector(`[data-number="${number}"]`);
    if (row) {
      row.setAttribute('aria-current', 'true');
      this.#list.scrollTop = row.offsetTop - this.#list.clientHeight / 2;
    }
    this.dispatchEvent(new CustomEvent('marked', {detail: entry}));
  }

  // All that is known, oldest first.
  get entries() { return this.#entries.filter(({missed}) => missed === undefined).toReversed(); }

  // The newest entry for which `isIt`; undefined when there is none.
  newest(isIt) { return this.#entries.find(isIt); }

  // `entry` and all after it, oldest first.
  since(entry) { return this.#entries.slice(0, this.#entries.indexOf(entry) + 1).reverse(); }

  #boxOf(kind) {
    const label = document.createElement('label');
    const box = Object.assign(document.createElement('input'), {type: 'checkbox', checked: !QUIET.has(kind)});
    box.addEventListener('change', () => {
      if (box.checked) this.#hidden.delete(kind);
      else this.#hidden.add(kind);
      this.#showAll();
    });
    label.append(box, ` ${kind}`);
    return label;
  }

  #look() {
    this.#words = this.#find.value.toLowerCase().split(/\s+/).filter(Boolean);
    this.#showAll();
  }

  #take(entries) {
    if (entries.length === 0) return;
    if (this.#isOfAnother(entries)) {
      this.#entries = [];
      this.#clear();
    }
    const last = this.#entries[0]?.number ?? 0;
    const news = entries.filter(({number}) => number > last);
    if (news.length === 0) return;
    const missed = news.at(-1).number - last - 1;
    if (missed > 0) news.push({missed});
    this.#entries = [...news, ...this.#entries].slice(0, MOST_ENTRIES);
    if (this.#isPaused) this.#sayWaiting();
    else this.#add(news);
    this.dispatchEvent(new CustomEvent('news', {detail: news}));
  }

  // Whether these are of another bench than what is known: numbers went back, or one has become another entry.
  #isOfAnother(entries) {
    const [known] = this.#entries;
    if (!known) return false;
    const same = entries.find(({number}) => number === known.number);
    return entries[0].number < known.number || (same !== undefined && same.time !== known.time);
  }

  #isShown(entry) {
    if (entry.missed !== undefined) return this.#words.length === 0;
    if (this.#words.length === 0) return !this.#hidden.has(kindOf(entry));
    const text = textOf(entry).toLowerCase();
    return this.#words.every((word) => text.includes(word));
  }

  #shown() { return this.#entries.slice(this.#waiting()).filter((entry) => this.#isShown(entry)); }

  // Groups stand newest first; in a group what came first.
  #add(entries) {
    for (const entry of causesFirst(entries.filter((each) => this.#isShown(each)).slice(0, MOST_ROWS).reverse())) {
      if (isEffect(entry, this.#head)) this.#follow(entry);
      else this.#begin(entry);
    }
    while (this.#list.children.length > MOST_ROWS) this.#list.lastElementChild.remove();
    if (this.#marked !== null) this.#list.querySelector(`[data-number="${this.#marked}"]`)?.setAttribute('aria-current', 'true');
  }

  #begin(entry) {
    this.#head = entry;
    this.#headRow = this.#lastRow = rowOf(entry, null);
    this.#list.prepend(this.#headRow);
  }

  // Of a finger that moves only its last place is shown, and its release by what the touch is then called.
  #follow(entry) {
    tellEffect(this.#headRow, this.#head, entry);
    if (entry.kind === 'touch' && entry.name === 'release') return;
    const row = rowOf(entry, this.#head);
    if (entry.kind === 'touch' && this.#lastRow.querySelector('.name').textContent === 'move') this.#lastRow.replaceWith(row);
    else this.#lastRow.after(row);
    this.#lastRow = row;
  }

  #clear() {
    this.#head = this.#headRow = this.#lastRow = null;
    this.#list.replaceChildren();
  }

  #showAll() {
    this.#clear();
    this.#add(this.#entries.slice(this.#waiting()));
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

  // All that is known, one JSON object a line, oldest first.
  #save() {
    const lines = this.entries.map((entry) => `${JSON.stringify(entry)}\n`);
    download('dash-camera-log.jsonl', new Blob(lines, {type: 'application/jsonl'}));
  }
}
