// The form of one action: its button, a field for each argument, and what the bench said to it.

import {valuesOf} from './facts.js';
import {iconOf} from './icon.js';
import {CODES, ICONS, SLIDERS, UNITS, wordsOf} from './words.js';

const LONG_ENOUGH = 1800;  // ms that "done" stays

const LONG_CHOICE = 14;    // letters: such a list stands below its button, so that nothing of it is cut

const EVENT = 'RECV_ZEL_STATUS_';  // how the names of all events begin

const make = (tag, members = {}) => Object.assign(document.createElement(tag), members);

// The choices of an argument with their words: bare codes are numbers that say little.
function choicesOf(action, argument) {
  if (argument.name === 'event') return action.events.map(({event, name}) => [event, `${event}: ${name.replace(EVENT, '')}`]);
  const words = CODES[`${action.name} ${argument.name}`];
  if (argument.choices) return argument.choices.map((code) => [code, words?.[code] ? `${code}: ${words[code]}` : code]);
  return words && Object.entries(words).map(([code, text]) => [code, `${code}: ${text}`]);
}

function fieldOf(action, argument) {
  const choices = choicesOf(action, argument);
  if (!choices)
    return make('input', {type: 'number', name: argument.name, min: argument.min, max: argument.max, step: argument.fraction ? 'any' : '1',
                          defaultValue: argument.default, required: !argument.optional});
  const select = make('select', {name: argument.name});
  for (const [code, text] of choices) select.add(new Option(text, code, Number(code) === argument.default));
  return select;
}

function sliderOf(action, {min, max, fraction}, field) {
  const slider = make('input', {type: 'range', min, max, step: fraction ? '0.1' : '1', value: field.value, ariaLabel: action.label});
  slider.addEventListener('input', () => {
    field.value = slider.value;
    field.dispatchEvent(new Event('input', {bubbles: true}));
  });
  slider.addEventListener('change', () => slider.form.requestSubmit());
  return slider;
}

const unitOf = (action, argument) => UNITS[`${action} ${argument}`] ?? UNITS[argument];

// "Speed (km/h)": the unit stands behind the field as well, so that it is only heard here.
function labelOf({name: action, label, arguments: list}) {
  const [, words, unit = ''] = label.match(/^(.*?)( \([^)]*\))?$/);
  const span = make('span', {textContent: words});
  if (list.some(({name}) => unit === ` (${unitOf(action, name)})`)) span.append(make('span', {className: 'unseen', textContent: unit}));
  else span.append(unit);
  return span;
}

export class ActionForm {
  element;
  #action;
  #button;
  #refusal;
  #connection;
  #reason = '';
  #isEdited = false;  // by a person, and not yet sent
  #isTold = false;    // what it shows, by the state
  #state = null;
  #timer = 0;

  // `said` is told what was done, for those who hear the page.
  constructor(action, connection, said) {
    this.#action = action;
    this.#connection = connection;
    this.#button = make('button', {className: 'act'});
    if (ICONS[action.name]) this.#button.append(iconOf(ICONS[action.name]));
    this.#button.append(labelOf(action));
    this.#refusal = make('p', {className: 'refusal', role: 'alert'});
    this.element = make('form', {className: 'action'});
    this.element.dataset.action = action.name;
    this.element.append(this.#button, ...this.#fields(), this.#refusal);
    this.element.addEventListener('input', ({target}) => {
      this.#isEdited = true;
      this.#turn(target.form);
    });
    this.element.addEventListener('submit', (event) => {
      event.preventDefault();
      this.#send(said);
    });
  }

  // What a person may look for.
  get words() { return `${this.#action.group} ${this.#action.name} ${this.element.textContent}`.toLowerCase(); }

  take(state) {
    this.#state = state;
    this.#reason = state.unavailable?.[this.#action.name] ?? '';
    this.#button.setAttribute('aria-disabled', String(this.#reason !== ''));
    this.#button.title = this.#reason;
    if (this.#reason === '' && this.#refusal.dataset.why === 'now') this.#say('');
    if (!this.#isEdited) this.#fill();
  }

  // Shows what is, where the state tells it; what was armed and is no more begins anew.
  #fill() {
    const values = Object.entries(valuesOf(this.#action, this.#state));
    if (values.length === 0 && this.#isTold) this.element.reset();
    this.#isTold = values.length > 0;
    for (const [name, value] of values) {
      const field = this.element.elements[name];
      if (field && field !== document.activeElement && value !== undefined) field.value = value;
    }
    this.#turn(this.element);
  }

  #turn(form) {
    const slider = form.querySelector('[type=range]');
    if (slider) slider.value = form.elements[this.#action.arguments[0].name].value;
  }

  #fields() {
    const {arguments: list, name} = this.#action;
    if (list.length === 0) return [];
    const place = make('div', {className: list.length > 1 ? 'fields many' : 'fields'});
    place.classList.toggle('wide', list.some((argument) => choicesOf(this.#action, argument)?.some(([, text]) => text.length > LONG_CHOICE)));
    for (const argument of list) {
      const field = fieldOf(this.#action, argument);
      const label = make('label');
      const unit = unitOf(name, argument.name);
      const words = unit ?? wordsOf(argument.name);
      if (list.length === 1 && !unit) label.append(make('span', {className: 'unseen', textContent: `${words} `}), field);
      else if (list.length === 1) label.append(field, ` ${words}`);
      else label.append(`${words} `, field);
      if (SLIDERS.includes(name)) place.append(sliderOf(this.#action, argument, field));
      place.append(label);
    }
    return [place];
  }

  get #members() {
    const given = this.#action.arguments.map((argument) => [argument, this.element.elements[argument.name]]).filter(([, field]) => field.value !== '');
    return Object.fromEntries(given.map(([{name, choices}, field]) => [name, choices ? field.value : Number(field.value)]));
  }

  async #send(said) {
    if (this.#reason !== '') return this.#say(this.#reason, 'now');
    const refusal = await this.#connection.ask('action', {...this.#members, name: this.#action.name});
    this.#say(refusal ?? '', 'then');
    if (refusal !== null) return;
    this.#isEdited = false;
    said.textContent = `${this.#action.label}: done`;
    this.#button.classList.add('done');
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => this.#button.classList.remove('done'), LONG_ENOUGH);
  }

  // `why`: "now" it cannot act, or it was refused "then".
  #say(text, why = '') {
    this.#refusal.textContent = text;
    this.#refusal.dataset.why = why;
  }
}
