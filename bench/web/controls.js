// What the car and the recorder have to offer: one form for each action of the bench.

function inputOf(argument) {
  if (argument.choices) {
    const select = document.createElement('select');
    for (const choice of argument.choices) select.add(new Option(choice));
    select.name = argument.name;
    return select;
  }
  const input = document.createElement('input');
  Object.assign(input, {type: 'number', name: argument.name, min: argument.min, max: argument.max,
                        step: argument.fraction ? 'any' : '1', value: argument.default, required: !argument.optional});
  return input;
}

// "minutesAgo" as a person writes it.
function wordsOf(name) {
  return name.replace(/[A-Z]/g, (letter) => ` ${letter.toLowerCase()}`);
}

function valueOf(field) {
  return field.type === 'number' ? field.valueAsNumber : field.value;
}

function formOf(action, connection) {
  const form = document.createElement('form');
  form.className = 'action';
  form.dataset.action = action.name;
  for (const argument of action.arguments) {
    const label = document.createElement('label');
    label.append(`${wordsOf(argument.name)} `, inputOf(argument));
    form.append(label);
  }
  const button = document.createElement('button');
  button.textContent = action.label;
  const refusal = document.createElement('p');
  refusal.className = 'refusal';
  refusal.setAttribute('role', 'alert');
  form.prepend(button);
  form.append(refusal);
  form.addEventListener('submit', async (event) => {
    event.preventDefault();
    const given = {};
    for (const {name} of action.arguments) {
      const field = form.elements[name];
      if (field.value !== '') given[name] = valueOf(field);
    }
    refusal.textContent = await connection.ask('action', {...given, name: action.name}) ?? '';
  });
  return form;
}

export async function makeControls(connection, place, eventForm) {
  const {actions, events} = await (await fetch('api/actions')).json();
  const groups = new Map();
  for (const action of actions) {
    if (!groups.has(action.group)) {
      const group = document.createElement('fieldset');
      const legend = document.createElement('legend');
      legend.textContent = action.group;
      group.append(legend);
      groups.set(action.group, group);
    }
    groups.get(action.group).append(formOf(action, connection));
  }
  place.replaceChildren(...groups.values());

  const {event, value} = eventForm.elements;
  event.replaceChildren(...events.map((row) => new Option(`${row.event}  ${row.name}`, row.event)));
  const refusal = eventForm.querySelector('.refusal');
  eventForm.onsubmit = async (submitted) => {
    submitted.preventDefault();
    refusal.textContent = await connection.ask('event', {event: Number(event.value), value: value.valueAsNumber}) ?? '';
  };
}
