// Recordings of use: one is made, taken home, looked through step by step, and replayed by a second bench.

import {post} from './post.js';

// The lines of a file; null when it is no recording.
function linesOf(text) {
  try {
    const lines = text.split('\n').filter(Boolean).map((line) => JSON.parse(line));
    return lines.length > 1 && lines[0].version === 1 ? lines : null;
  } catch {
    return null;
  }
}

function textOf({ms, kind, request, name, of, seen}) {
  const what = request ? JSON.stringify({...request, ...(request.png && {png: '…'})}) : [of, name].filter(Boolean).join(' ');
  return [`${(ms / 1000).toFixed(1)} s`, kind, what, seen?.screen && `on ${[seen.screen, seen.own, seen.event].filter(Boolean).join(', ')}`].filter(Boolean).join(' · ');
}

function pictureOf(src, text) {
  const figure = document.createElement('figure');
  const caption = document.createElement('figcaption');
  caption.textContent = text;
  figure.append(Object.assign(document.createElement('img'), {src, alt: text, width: 240, height: 160}), caption);
  return figure;
}

export class Recordings {
  #place;
  #find;
  #lines = [];
  #shown = '';

  // `place` has the parts, each by its name.
  constructor(connection, place) {
    this.#place = place;
    this.#find = (name) => place.querySelector(`[name=${name}]`);
    this.#find('file').addEventListener('change', ({target}) => this.#take(target.files[0]));
    document.addEventListener('dragover', (event) => event.preventDefault());
    document.addEventListener('drop', (event) => {
      event.preventDefault();
      this.#take(event.dataTransfer.files[0]);
    });
    this.#find('step').addEventListener('input', () => this.#look());
    this.#find('stop').addEventListener('click', async () => this.#say(await post('replay/stop', new Blob())));
    connection.follow((state) => {
      this.#showRecord(state.record);
      this.#showReplay(state.replay);
    });
  }

  // A file to replay.
  async #take(file) {
    if (!file) return;
    this.#lines = linesOf(await file.text()) ?? [];
    if (this.#lines.length === 0) return this.#say(`${file.name} is no recording of use.`);
    this.#find('step').max = this.#lines.length - 1;
    this.#find('step').value = 1;
    this.#place.querySelector('.steps').hidden = false;
    this.#look();
    this.#say(await post(`replay${this.#find('fast').checked ? '?fast=1' : ''}`, file));
  }

  #say(text) { this.#place.querySelector('.refusal').textContent = text; }

  #look() {
    const line = this.#lines[Number(this.#find('step').value)];
    const text = `${this.#find('step').value} of ${this.#lines.length - 1} · ${textOf(line)}`;
    this.#place.querySelector('.step').textContent = text;
    this.#find('step').setAttribute('aria-valuetext', text);
  }

  #showRecord(record) {
    this.#place.querySelector('.recorded').textContent = record
      ? `${record.on ? 'Recording' : 'Recorded'}: ${record.seconds} s, ${record.inputs} ${record.inputs === 1 ? 'input' : 'inputs'}, ${Math.ceil(record.bytes / 1024)} KB`
      : 'Record, above: the camera restarts, and all that is done to it from then on is in the recording.';
    this.#place.querySelector('a').hidden = !record?.inputs;
  }

  #showReplay(replay) {
    const json = JSON.stringify(replay ?? null);
    if (json === this.#shown) return;
    this.#shown = json;
    const result = this.#place.querySelector('.result');
    this.#find('stop').hidden = !replay?.running;
    if (!replay) return result.replaceChildren();
    const text = document.createElement('p');
    text.textContent = replay.summary ?? (replay.address ? 'It is being replayed by a second camera: ' : 'A second camera starts.');
    if (replay.address && replay.running)
      text.append(Object.assign(document.createElement('a'), {href: replay.address, target: '_blank', rel: 'noopener', textContent: 'watch it'}));
    const list = document.createElement('ul');
    list.append(...(replay.differences ?? []).map((textContent) => Object.assign(document.createElement('li'), {textContent})));
    const pictures = (replay.pictures ?? []).flatMap(({expected, drawn}) => [expected && pictureOf(expected, 'As it was recorded, as far as that is known'), pictureOf(drawn, 'As it is now')]);
    result.replaceChildren(text, list, ...pictures.filter(Boolean));
  }
}
