// What the car and the recorder have to offer: groups of actions in tabs, and a field that finds any of them.

import {ActionForm} from './forms.js';
import {recall, remember} from './memory.js';
import {Tabs} from './tabs.js';
import {DOCS, TABS} from './words.js';

const TAB = 'tab', FOLDED = 'folded';  // what the browser remembers

function helpOf(name) {
  const link = document.createElement('a');
  Object.assign(link, {className: 'help', href: `docs/bench#${DOCS[name]}`, target: '_blank', textContent: '?', title: `About: ${name}`, ariaLabel: `About: ${name}`});
  return link;
}

function groupOf(name) {
  const group = document.createElement('details');
  group.open = !foldedGroups().includes(name);
  group.dataset.group = name;
  const summary = document.createElement('summary');
  summary.textContent = name;
  const actions = document.createElement('div');
  actions.className = 'actions';
  group.append(summary);
  if (DOCS[name]) group.append(helpOf(name));
  group.append(actions);
  group.addEventListener('toggle', () => { if (!group.classList.contains('searched')) fold(name, !group.open); });
  return group;
}

function foldedGroups() {
  try {
    return JSON.parse(recall(FOLDED)) ?? [];
  } catch {
    return [];
  }
}

function fold(name, isFolded) {
  const folded = foldedGroups();
  if (folded.includes(name) === isFolded) return;
  remember(FOLDED, JSON.stringify(isFolded ? [...folded, name] : folded.filter((each) => each !== name)));
}

// The tab in which a group stands: one that the page does not know in the last.
function tabOf(group) {
  const at = TABS.findIndex(([, groups]) => groups.includes(group));
  return at < 0 ? TABS.length - 1 : at;
}

const orderOf = (group) => TABS.flatMap(([, groups]) => groups).indexOf(group.dataset.group);

export class Controls extends EventTarget {
  #connection;
  #work;
  #place;
  #picture;
  #find;
  #found;
  #said;
  #known = '';  // what the bench offered the last time
  #forms = [];
  #state = null;
  #tab = 0;     // which of TABS; as many as there are: all
  #focused = null;
  #tabs;

  // Its event "made": the controls are there. `work` is disabled while the bench is away. In it: the tabs, the field that finds, what it found, what was done, and
  // the `place` for the groups with `picture`, the one that is no action.
  constructor(connection, {work, tabs, find, found, said, place, picture}) {
    super();
    this.#connection = connection;
    this.#work = work;
    this.#place = place;
    this.#picture = picture;
    this.#find = find;
    this.#found = found;
    this.#said = said;
    connection.addEventListener('connection', ({detail}) => detail === 'open' ? this.#come() : this.#leave());
    connection.addEventListener('state', ({detail: {state}}) => {
      this.#state = state;
      for (const form of this.#forms) form.take(state);
    });
    this.#makeTabs(tabs);
    find.addEventListener('input', () => this.#show());
    find.addEventListener('keydown', ({key}) => {
      if (key !== 'Escape') return;
      find.value = '';
      this.#show();
    });
    document.addEventListener('keydown', (event) => {
      if (event.key !== '/' || event.target.matches('input, select') || event.ctrlKey || event.metaKey || event.altKey) return;
      event.preventDefault();
      find.focus();
    });
  }

  // Brings the control of this action into sight.
  show(name) {
    const form = this.#place.querySelector(`form[data-action="${name}"]`);
    if (!form) return;
    this.#tabs.choose(tabOf(form.closest('details').dataset.group));
    form.closest('details').open = true;
    form.querySelector('.act').focus();
  }

  #makeTabs(list) {
    const names = [...TABS.map(([name]) => name), 'All'];
    list.append(...names.map((name) => {
      const tab = Object.assign(document.createElement('button'), {type: 'button', role: 'tab', id: `tab-${name}`, textContent: name});
      tab.setAttribute('aria-controls', this.#place.id);
      return tab;
    }));
    this.#tabs = new Tabs(list, (tab, at) => {
      this.#tab = at;
      this.#place.setAttribute('aria-labelledby', tab.id);
      if (tab.textContent !== (recall(TAB) ?? names[0])) remember(TAB, tab.textContent);
      this.#find.value = '';
      this.#show();
    });
    this.#tabs.choose(Math.max(names.indexOf(recall(TAB)), 0));
  }

  async #come() {
    try {
      const offered = await this.#connection.offered;
      if (JSON.stringify(offered) !== this.#known) this.#make(offered);
      this.#known = JSON.stringify(offered);
    } catch {
      if (this.#known === '') this.#found.textContent = 'The bench does not say what it offers.';
    }
    if (!this.#connection.isOpen) return;
    this.#work.disabled = false;
    if (document.activeElement === document.body) this.#focused?.focus();
  }

  // A control that is disabled loses the focus: it gets it back.
  #leave() {
    if (this.#work.disabled) return;
    this.#focused = this.#work.contains(document.activeElement) ? document.activeElement : null;
    this.#work.disabled = true;
  }

  #make({actions, events}) {
    const groups = new Map();
    const put = (name, element) => {
      if (!groups.has(name)) groups.set(name, groupOf(name));
      groups.get(name).lastElementChild.append(element);
    };
    // What has a place of its own on the page, as the power key, is not there twice.
    const here = actions.filter(({name}) => !document.querySelector(`[data-own="${name}"]`));
    this.#forms = here.map((action) => new ActionForm({...action, events}, this.#connection, this.#said));
    for (const [i, {group}] of here.entries()) put(group, this.#forms[i].element);
    put('Own picture', this.#picture);
    this.#picture.hidden = false;
    this.#place.replaceChildren(...[...groups.values()].sort((a, b) => orderOf(a) - orderOf(b)));
    if (this.#state) for (const form of this.#forms) form.take(this.#state);
    this.#show();
    this.dispatchEvent(new Event('made'));
  }

  // The groups of the tab; or, of all tabs, what has all the words that are looked for.
  #show() {
    const words = this.#find.value.toLowerCase().split(/\s+/).filter(Boolean);
    const known = new Map(this.#forms.map((form) => [form.element, form.words]));
    const folded = foldedGroups();
    let count = 0;
    for (const group of this.#place.children) {
      const forms = [...group.querySelectorAll('form')];
      for (const form of forms) {
        const text = known.get(form) ?? group.textContent.toLowerCase();
        form.hidden = !words.every((word) => text.includes(word));
        count += !form.hidden;
      }
      const isHere = words.length > 0 || this.#tab === TABS.length || tabOf(group.dataset.group) === this.#tab;
      group.hidden = !isHere || forms.every((form) => form.hidden);
      group.classList.toggle('searched', words.length > 0);
      group.open = words.length > 0 || !folded.includes(group.dataset.group);
    }
    this.#found.textContent = words.length === 0 ? '' : count === 0 ? 'No control has these words.' : count === 1 ? '1 control' : `${count} controls`;
  }
}
