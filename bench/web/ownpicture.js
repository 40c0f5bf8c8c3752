// A picture of the driver's, which the LCD may show while it waits.

import {post} from './post.js';

const LARGEST = 8 * 1024 * 1024;

export class OwnPicture {
  constructor(form) {
    form.onsubmit = async (event) => {
      event.preventDefault();
      const [file] = form.elements.file.files;
      const refusal = form.querySelector('.refusal');
      refusal.textContent = '';
      refusal.textContent = file.size > LARGEST ? 'The picture is larger than 8 MiB.' : await post('picture', file);
      form.querySelector('.act').classList.toggle('done', refusal.textContent === '');
    };
    form.oninput = () => form.querySelector('.act').classList.remove('done');
  }
}
