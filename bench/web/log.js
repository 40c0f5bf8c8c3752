// The log: newest first, no more rows than a person would read.

const KINDS = ['command', 'query', 'event', 'action', 'shell', 'touch', 'screen', 'diagnostic', 'note'];
const QUIET = new Set(['query', 'diagnostic']);  // not shown until asked for: there are many
const MOST_ROWS = 400;

function detailOf(entry) {
  const parts = [];
  const add = (name, value) => {
    if (value !== undefined && value !== '') parts.push(`${name} ${typeof value === 'object' ? JSON.stringify(value) : value}`);
  };
  if (entry.kind === 'touch') {
    add('at', entry.x === undefined ? undefined : `${entry.x}, ${entry.y}`);
    add('panel', entry.rawX === undefined ? undefined : `${entry.rawX}, ${entry.rawY}`);
    return parts.join(' · ');
  }
  add('field', entry.field);
  add('event', entry.event);
  add('value', entry.value);
  add('data', entry.data);
  add('answer', typeof entry.answer === 'number' ? Number(entry.answer.toPrecision(6)) : entry.answer);
  if (entry.arguments && Object.keys(entry.arguments).length > 0) add('with', entry.arguments);
  if (entry.result !== undefined && entry.result !== 0) add('result', entry.result);
  add('refused:', entry.error);
  return parts.join(' · ');
}

// A command that only asks is a kind of its own.
function kindOf(entry) {
  return entry.kind === 'command' && entry.answer !== undefined ? 'query' : entry.kind;
}

function rowOf(entry) {
  const row = document.createElement('li');
  row.dataset.kind = kindOf(entry);
  row.dataset.number = entry.number;
  const time = new Date(entry.time);
  const part = (name, text) => {
    const span = document.createElement('span');
    span.className = name;
    span.textContent = text;
    row.append(span);
  };
  part('time', `${time.toTimeString().slice(0, 8)}.${String(time.getMilliseconds()).padStart(3, '0')}`);
  part('kind', kindOf(entry));
  part('name', entry.name);
  part('detail', detailOf(entry));
  return row;
}

function gapRow(count) {
  const row = document.createElement('li');
  row.className = 'gap';
  row.textContent = `${count} entries are not shown here`;
  return row;
}

export class Log {
  #list;
  #last = 0;
  #held = null;  // entries that came during a pause, newest first

  constructor(connection, list, kinds, pause) {
    this.#list = list;
    for (const kind of KINDS) {
      const label = document.createElement('label');
      const box = Object.assign(document.createElement('input'), {type: 'checkbox', checked: !QUIET.has(kind)});
      const show = () => list.classList.toggle(`hide-${kind}`, !box.checked);
      box.addEventListener('change', show);
      show();
      label.append(box, ` ${kind}`);
      kinds.append(label);
    }
    connection.addEventListener('log', ({detail}) => this.#take(detail.entries));
    pause.addEventListener('click', () => {
      const held = this.#held;
      this.#held = held ? null : [];
      pause.setAttribute('aria-pressed', String(!held));
      if (held) this.#show(held);
    });
  }

  #take(entries) {
    if (this.#held) this.#held = [...entries, ...this.#held].slice(0, MOST_ROWS);
    else this.#show(entries);
  }

  #show(entries) {
    if (entries.length === 0) return;
    if (entries[0].number <= this.#last) {
      if (entries.at(-1).number > 1) {  // the same bench, connected anew
        entries = entries.filter(({number}) => number > this.#last);
        if (entries.length === 0) return;
      } else {  // another one
        this.#list.replaceChildren();
        this.#last = 0;
      }
    } else {
      entries = entries.filter(({number}) => number > this.#last);
    }
    const rows = entries.map(rowOf);
    const missed = entries.at(-1).number - this.#last - 1;
    if (missed > 0) rows.push(gapRow(missed));
    this.#last = entries[0].number;
    this.#list.prepend(...rows);
    while (this.#list.children.length > MOST_ROWS) this.#list.lastElementChild.remove();
  }
}
