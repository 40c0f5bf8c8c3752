// What the car and the recorder have to offer: one form for each action of the bench.

function inputOf(argument) {
  if (argument.choices) {
    const select = document.createElement('select');
    for (const choice of argument.choices) select.add(new Option(choice));
    select.name = argument.name;
    return select;
  }
  const input = document.createElement('input');
  return Object.assign(input, {type: 'number', name: argument.name, min: argument.min, max: argument.max,
                               step: argument.fraction ? 'any' : '1', value: argument.default,
                               required: !argument.optional});
}

// "minutesAgo" as a person writes it.
function wordsOf(name) {
  return name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);
}

function valueOf(field) {
  return field.type === 'number' ? field.valueAsNumber : field.value;
}

// Sends the form's members as `type`; what is refused is said beside it.
function sendBy(form, connection, type, members) {
  form.onsubmit = async (event) => {
    event.preventDefault();
    form.querySelector('.refusal').textContent = await connection.ask(type, members()) ?? '';
  };
}

function formOf(action, connection) {
  const form = document.createElement('form');
  form.className = 'action';
  form.dataset.action = action.name;
  const button = document.createElement('button');
  button.textContent = action.label;
  form.append(button);
  if (action.arguments.length > 0) {
    const inputs = document.createElement('div');
    for (const argument of action.arguments) {
      const label = document.createElement('label');
      label.append(`${wordsOf(argument.name)} `, inputOf(argument));
      inputs.append(label);
    }
    form.append(inputs);
  }
  const refusal = document.createElement('p');
  refusal.className = 'refusal';
  refusal.setAttribute('role', 'alert');
  form.append(refusal);
  sendBy(form, connection, 'action', () => {
    const given = action.arguments.map(({name}) => form.elements[name]).filter((field) => field.value !== '');
    return {...Object.fromEntries(given.map((field) => [field.name, valueOf(field)])), name: action.name};
  });
  return form;
}

function groupOf(name) {
  const group = document.createElement('details');
  group.open = matchMedia('(min-width: 561px)').matches;  // on a phone the names come first
  const summary = document.createElement('summary');
  summary.textContent = name;
  const actions = document.createElement('div');
  actions.className = 'actions';
  group.append(summary, actions);
  return group;
}

export class Controls {
  #connection;
  #work;
  #place;
  #eventForm;
  #known = '';  // what the bench offered the last time
  #focused = null;

  // `work` is disabled while the bench is away; `place` takes the actions, `eventForm` the status events.
  constructor(connection, work, place, eventForm) {
    this.#connection = connection;
    this.#work = work;
    this.#place = place;
    this.#eventForm = eventForm;
    connection.addEventListener('connection', ({detail}) => detail === 'open' ? this.#come() : this.#leave());
    const {event, value} = eventForm.elements;
    sendBy(eventForm, connection, 'event', () => ({event: Number(event.value), value: value.valueAsNumber}));
  }

  async #come() {
    try {
      const offered = await (await fetch('api/actions')).text();
      if (offered !== this.#known) this.#make(JSON.parse(offered));
      this.#known = offered;
    } catch {
      if (this.#known === '') this.#place.textContent = 'The bench does not say what it offers.';
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
    for (const action of actions) {
      if (!groups.has(action.group)) groups.set(action.group, groupOf(action.group));
      groups.get(action.group).lastElementChild.append(formOf(action, this.#connection));
    }
    this.#place.replaceChildren(...groups.values());
    this.#eventForm.elements.event.replaceChildren(
      ...events.map(({event, name}) => new Option(`${event}  ${name}`, event)));
  }
}
