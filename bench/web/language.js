// The language that the camera speaks: a switch, and a question at first sight. The browser remembers the answer.

import {recall, remember} from './memory.js';

const KEY = 'language';

const nameOf = (code, language = 'en') => new Intl.DisplayNames([language], {type: 'language'}).of(code);

function buttonOf(text, act) {
  const button = document.createElement('button');
  Object.assign(button, {type: 'button', textContent: text, onclick: act});
  return button;
}

export class Language {
  #connection;
  #select;
  #offer;
  #fault;
  #choices = [];
  #spoken = null;
  #chosen = recall(KEY);  // by this browser
  #isNew = false;      // a connection that has not yet said what the camera speaks

  // `select` is the switch, `offer` an empty place for the question; `fault` says what is refused.
  constructor(connection, select, offer, fault) {
    this.#connection = connection;
    this.#select = select;
    this.#offer = offer;
    this.#fault = fault;
    connection.addEventListener('connection', ({detail}) => { if (detail === 'open') this.#come(); });
    connection.addEventListener('state', ({detail: {state}}) => {
      if (state.interface.language === this.#spoken) return;
      this.#spoken = state.interface.language;
      this.#show();
    });
    select.addEventListener('change', () => this.#choose(select.value));
  }

  async #come() {
    this.#isNew = true;
    this.#spoken = null;
    try {
      const {actions} = await this.#connection.offered;
      this.#choices = actions.find(({name}) => name === 'language').arguments[0].choices;
    } catch {
      return;  // the bench has gone again
    }
    this.#select.replaceChildren(...this.#choices.map(
      (code) => Object.assign(new Option(nameOf(code, code), code), {lang: code})));
    this.#show();
  }

  #ask(code) { return this.#connection.ask('action', {name: 'language', to: code}); }

  #show() {
    if (!this.#choices.includes(this.#spoken)) return;
    this.#select.value = this.#spoken;
    const hasChosen = this.#choices.includes(this.#chosen);
    if (this.#isNew && hasChosen && this.#chosen !== this.#spoken) this.#ask(this.#chosen);
    this.#isNew = false;
    const wanted = hasChosen ? this.#spoken : this.#preferred();
    this.#offer.replaceChildren(...(wanted === this.#spoken ? [] : this.#question(wanted)));
  }

  // The first of the browser's languages that the camera speaks; none of them: English, if it can.
  #preferred() {
    return [...navigator.languages.map((tag) => tag.split('-')[0]), 'en', this.#spoken].find((code) => this.#choices.includes(code));
  }

  #question(wanted) {
    const text = document.createElement('p');
    text.textContent = `The camera speaks ${nameOf(this.#spoken)}. Show it in ${nameOf(wanted)}?`;
    const spoken = this.#spoken;
    return [text, buttonOf(`Show in ${nameOf(wanted)}`, () => this.#choose(wanted)),
            buttonOf(`Keep ${nameOf(spoken)}`, () => this.#choose(spoken))];
  }

  async #choose(code) {
    const refusal = code === this.#spoken ? null : await this.#ask(code);
    this.#fault.textContent = refusal ?? '';
    if (refusal === null) {
      this.#chosen = this.#spoken = code;
      remember(KEY, code);
      // The question goes, and with it the focus.
      if (this.#offer.contains(document.activeElement)) this.#select.focus({preventScroll: true});
    }
    this.#show();
  }
}
