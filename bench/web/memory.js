// What the browser remembers for its reader. It may forbid to remember anything: then it is for this page alone.

export function recall(key) {
  try {
    return localStorage.getItem(key);
  } catch {
    return null;
  }
}

export function remember(key, value) {
  try {
    localStorage.setItem(key, value);
  } catch {}
}
