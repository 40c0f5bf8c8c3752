// The state at a glance: voltage, card and car; and with a cross what can be ended: work on the card, and what is armed.

import {iconOf} from './icon.js';
import {CODES} from './words.js';

// What is armed, in words.
const ARMED = {
  commandsFail: ({number}) => number === 1 ? 'next command fails' : `next ${number} commands fail`,
  sdCheckFinds: ({fault}) => `next check finds ${CODES['sdCheckFinds fault'][fault] ?? fault}`,
  sdFormatFails: ({number}) => number === 1 ? 'next format fails' : `next ${number} formats fail`,
  voltageVerdict: ({verdict}) => `voltage compensation: ${verdict}`,
  voiceEndSuppress: () => 'no end of a voice is told',
  panelAskew: () => 'touch panel askew',
};

function chipOf(text, kind = '') {
  const chip = document.createElement('span');
  chip.className = `chip ${kind}`;
  chip.textContent = text;
  return chip;
}

const wordsOf = ({action, arguments: given}) => ARMED[action]?.(given) ?? [action, ...Object.values(given)].join(' ');

function factsOf(recorder) {
  if (!recorder) return ['Recorder stopped'];
  return [`${recorder.power.volts.toFixed(1)} V`, `Card ${recorder.card}`, recorder.parking.parked ? 'Parked' : 'Driving'];
}

// What can be ended by a cross: the work on the card, and what is armed.
function endsOf({recorder, armed}) {
  const work = recorder?.cardWork;
  const percent = work && Math.floor(100 * work.done / Math.max(work.of, 1));
  return [
    ...(work?.what === 'fill' ? [{text: `filling the card: ${percent} %`, cross: 'Stop filling the card', request: {name: 'sdFullStop'}}] : []),
    ...(armed ?? []).map((each) => ({text: `armed: ${wordsOf(each)}`, cross: `Disarm: ${wordsOf(each)}`, request: each.disarm})),
  ];
}

export class Chips {
  #connection;
  #fault;
  #shown = '';

  // `facts` and `armed` take the chips; `fault` says why something does not end.
  constructor(connection, facts, armed, fault) {
    this.#connection = connection;
    this.#fault = fault;
    connection.addEventListener('state', ({detail: {state}}) => {
      const texts = factsOf(state.recorder);
      const ends = endsOf(state);
      const json = JSON.stringify([texts, ends]);
      if (json === this.#shown) return;
      this.#shown = json;
      facts.replaceChildren(...texts.map((text) => chipOf(text)));
      const had = armed.contains(document.activeElement);
      armed.replaceChildren(...ends.map((each) => this.#chipToEnd(each)));
      if (had) armed.querySelector('button')?.focus();
    });
  }

  #chipToEnd({text, cross: name, request}) {
    const chip = chipOf(text, 'warn');
    const cross = document.createElement('button');
    Object.assign(cross, {type: 'button', title: name, ariaLabel: name});
    cross.append(iconOf('mdi-close'));
    cross.addEventListener('click', async () => {
      this.#fault.textContent = await this.#connection.ask('action', request) ?? '';
    });
    chip.append(cross);
    return chip;
  }
}
