// The icons of the page, outlines of Debian's icon font: they come as one file, once, and are used by their names there.

try {
  const text = await (await fetch('icons.svg')).text();
  const outlines = document.importNode(new DOMParser().parseFromString(text, 'image/svg+xml').documentElement, true);
  outlines.toggleAttribute('hidden', true);
  document.body.append(outlines);
} catch {}  // the bench has gone: the page has words as well

export function iconOf(name) {
  const [icon, use] = ['svg', 'use'].map((tag) => document.createElementNS('http://www.w3.org/2000/svg', tag));
  icon.setAttribute('class', 'icon');
  icon.setAttribute('aria-hidden', 'true');
  use.setAttribute('href', `#${name}`);
  icon.append(use);
  return icon;
}
