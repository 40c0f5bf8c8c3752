// A picture of the driver's, which the LCD may show while it waits.

const LARGEST = 8 * 1024 * 1024;

async function put(file) {
  if (file.size > LARGEST) return 'The picture is larger than 8 MiB.';
  try {
    const answer = await fetch('api/picture', {method: 'POST', body: file});
    return answer.ok ? '' : (await answer.json()).error;
  } catch {
    return 'The bench does not answer.';
  }
}

export class OwnPicture {
  constructor(form) {
    form.onsubmit = async (event) => {
      event.preventDefault();
      const refusal = form.querySelector('.refusal');
      refusal.textContent = '';
      refusal.textContent = await put(form.elements.file.files[0]);
    };
  }
}
