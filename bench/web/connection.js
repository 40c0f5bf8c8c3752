// The WebSocket to the bench. It comes back by itself. Its events: "connection" with "open" or "closed", "picture" with
// the bytes, and every message of the bench by its type.

const LONGEST_WAIT = 5000;  // ms

export class Connection extends EventTarget {
  #socket = null;
  #state = '';  // what was told last
  #wait = 250;
  #lastId = 0;
  #waiting = new Map();  // id → resolve
  #known = null;         // the newest state
  #offered = null;       // what it has to offer, as it is fetched once for each connection

  constructor() {
    super();
    this.#open();
  }

  get isOpen() { return this.#socket?.readyState === WebSocket.OPEN; }

  // What the bench says at api/actions.
  get offered() { return this.#offered ??= fetch('api/actions').then((answer) => answer.json()); }

  // `take` gets the state that is known, and each that comes.
  follow(take) {
    if (this.#known) take(this.#known);
    this.addEventListener('state', ({detail: {state}}) => take(state));
  }

  // Resolves with null when the bench did it, else with one sentence.
  ask(type, members = {}) {
    if (!this.isOpen) return Promise.resolve('The bench does not answer.');
    const id = ++this.#lastId;
    return new Promise((resolve) => {
      this.#waiting.set(id, resolve);
      this.#socket.send(JSON.stringify({...members, type, id}));
    });
  }

  #open() {
    const socket = this.#socket = new WebSocket(`ws://${location.host}/ws`);
    socket.binaryType = 'arraybuffer';
    socket.onopen = () => {
      this.#wait = 250;
      this.#offered = null;
      this.#tell('open');
    };
    socket.onmessage = ({data}) => {
      if (data instanceof ArrayBuffer) this.dispatchEvent(new CustomEvent('picture', {detail: data}));
      else this.#take(JSON.parse(data));
    };
    socket.onclose = () => this.#closed();
  }

  #take(message) {
    if (message.type !== 'answer') {
      if (message.type === 'state') this.#known = message.state;
      this.dispatchEvent(new CustomEvent(message.type, {detail: message}));
      return;
    }
    this.#waiting.get(message.id)?.(message.ok ? null : message.error);
    this.#waiting.delete(message.id);
  }

  #closed() {
    for (const resolve of this.#waiting.values()) resolve('The bench does not answer.');
    this.#waiting.clear();
    this.#tell('closed');
    setTimeout(() => this.#open(), this.#wait);
    this.#wait = Math.min(this.#wait * 2, LONGEST_WAIT);
  }

  // Each try that fails ends as closed, too: that is no news.
  #tell(state) {
    if (state === this.#state) return;
    this.#state = state;
    this.dispatchEvent(new CustomEvent('connection', {detail: state}));
  }
}
