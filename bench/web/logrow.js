// One entry of the log as a row: what a person did, or what came, with what followed from it below.

export const QUERY = 'query';  // a command that only asks: a kind of its own, for there are many

export const kindOf = (entry) => entry.kind === 'command' && entry.answer !== undefined ? QUERY : entry.kind;

const CAUSES = ['touch', 'action', 'event'];
const EFFECT = 1500;       // ms within which something follows from a cause
const BY_AN_ACTION = 150;  // an event or a note that comes sooner after an action is its doing
const AT_ONCE = 30;        // and so is what comes just before

// An action stands in the log behind what it did: here before it. `entries` are oldest first.
export function causesFirst(entries) {
  const ordered = [];
  for (const entry of entries) {
    let at = ordered.length;
    while (entry.kind === 'action' && at > 0 && ['event', 'note', 'voice'].includes(ordered[at - 1].kind) && entry.time - ordered[at - 1].time < AT_ONCE) --at;
    ordered.splice(at, 0, entry);
  }
  return ordered;
}

// Whether `entry` is shown below `head`, from which it follows.
export function isEffect(entry, head) {
  if (!head || head.missed || entry.missed || !CAUSES.includes(head.kind)) return false;
  const since = entry.time - head.time;
  if (entry.kind === 'touch') return entry.name !== 'press' && head.kind === 'touch';
  if (entry.kind === 'action') return false;
  if (entry.kind === 'event' || entry.kind === 'note') return head.kind === 'action' && since < BY_AN_ACTION;
  return since < EFFECT;
}

const isRefused = ({error, result}) => error !== undefined || (result !== undefined && result !== 0);

// What a row says beside its name, as texts; numbers that the name says as well only when it is not `short`.
export function detailsOf(entry, short = false) {
  const details = [];
  const add = (name, value) => {
    if (value === undefined || value === '') return;
    details.push(`${name} ${typeof value === 'object' ? JSON.stringify(value) : value}`);
  };
  if (entry.x !== undefined) add('at', `${entry.x}, ${entry.y}`);
  if (entry.rawX !== undefined) add('panel', `${entry.rawX}, ${entry.rawY}`);
  if (!short) {
    add('field', entry.field);
    add('event', entry.event);
  }
  add('value', entry.value);
  add('data', entry.data);
  add('answer', typeof entry.answer === 'number' ? Number(entry.answer.toPrecision(6)) : entry.answer);
  for (const [name, value] of Object.entries(entry.arguments ?? {})) add(name, value);
  return details;
}

export function timeOf(entry) {
  const time = new Date(entry.time);
  return `${time.toTimeString().slice(0, 8)}.${String(time.getMilliseconds()).padStart(3, '0')}`;
}

// For who looks for a text: all that the row says.
export const textOf = (entry) =>
  [timeOf(entry), kindOf(entry), entry.name, ...detailsOf(entry), isRefused(entry) ? `refused ${entry.error ?? entry.result}` : ''].join(' ');

function spanOf(name, text) {
  const span = document.createElement('span');
  span.className = name;
  span.append(...text.split(/(?<=_)/).flatMap((part) => [part, document.createElement('wbr')]));  // a long name breaks between its words
  return span;
}

const refusalOf = ({error, result}) => `refused${error === undefined ? `, ${result}` : `: ${error}`}`;

// `head`: the entry from which this one follows, or null.
export function rowOf(entry, head) {
  const row = document.createElement('li');
  if (entry.missed) {
    row.className = 'gap';
    row.textContent = entry.missed === 1 ? '1 entry is not here' : `${entry.missed} entries are not here`;
    return row;
  }
  row.dataset.kind = kindOf(entry);
  row.dataset.number = entry.number;
  row.classList.toggle('under', head !== null);
  row.classList.toggle('refused', isRefused(entry));
  const link = document.createElement('a');
  link.href = `#log-${entry.number}`;
  link.className = 'time';
  link.textContent = head ? '└' : timeOf(entry);
  if (head) link.ariaLabel = timeOf(entry);
  const since = head ? `${Math.max(entry.time - head.time, 0)} ms` : '';
  row.append(link, ' ', spanOf('kind', kindOf(entry)), ' ', spanOf('name', entry.name), ' ', spanOf('since', since), ' ',
             spanOf('detail', detailsOf(entry, head !== null).join(' · ')));
  if (isRefused(entry)) row.append(' ', spanOf('no', refusalOf(entry)));
  return row;
}

// What became of a head, on its row: a touch is a tap, a hold or a drag, and it led to a screen.
export function tellEffect(row, head, entry) {
  const since = entry.time - head.time;
  if (entry.kind === 'touch' && entry.name === 'release' && row.dataset.gesture === undefined) {
    row.dataset.gesture = since < 800 ? 'tap' : 'hold';
    row.querySelector('.name').textContent = since < 800 ? 'tap' : `hold ${(since / 1000).toFixed(1)} s`;
  } else if (entry.kind === 'touch' && entry.name === 'move') {
    row.dataset.gesture = 'drag';
    row.querySelector('.name').textContent = 'drag';
  } else if (entry.kind === 'screen') {
    row.querySelector('.since').textContent = `${entry.name.replace(/^screen /, '')} ${since} ms`;
  }
}
