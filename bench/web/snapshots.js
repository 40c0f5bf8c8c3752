// States of the camera that were saved under a name, to go back to.

import {post} from './post.js';

function buttonOf(text, name, act) {
  const button = document.createElement('button');
  Object.assign(button, {type: 'button', textContent: text, ariaLabel: `${text}: ${name}`, onclick: act});
  return button;
}

export class Snapshots {
  #list;
  #refusal;
  #shown = '';

  constructor(connection, place) {
    const form = place.querySelector('form');
    this.#list = place.querySelector('ul');
    this.#refusal = place.querySelector('.refusal');
    form.onsubmit = async (event) => {
      event.preventDefault();
      if (await this.#ask({save: form.elements.name.value.trim()})) form.reset();
    };
    place.querySelector('[name=factory]').onclick = async () => {
      this.#refusal.textContent = await connection.ask('action', {name: 'factoryReset'}) ?? '';
    };
    connection.follow((state) => {
      this.#show(state.snapshots ?? []);
      for (const button of place.querySelectorAll('button')) button.disabled = Boolean(state.snapshotWork);
    });
  }

  async #ask(request) {
    this.#refusal.textContent = await post('snapshot', request);
    return this.#refusal.textContent === '';
  }

  #show(snapshots) {
    const json = JSON.stringify(snapshots);
    if (json === this.#shown) return;
    this.#shown = json;
    this.#list.replaceChildren(...snapshots.map(({name, time, bytes}) => {
      const row = document.createElement('li');
      const text = document.createElement('span');
      text.textContent = `${name} · ${new Date(time).toLocaleTimeString()} · ${(bytes / 1048576).toFixed(1)} MB`;
      row.append(text, buttonOf('Go back', name, () => this.#ask({restore: name})), buttonOf('Remove', name, () => this.#ask({remove: name})));
      return row;
    }));
  }
}
