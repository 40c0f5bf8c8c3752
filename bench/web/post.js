// A POST to the bench: one sentence when it is refused, else nothing.

export async function post(path, body) {
  try {
    const answer = await fetch(`api/${path}`, {method: 'POST', body: body instanceof Blob ? body : JSON.stringify(body)});
    return answer.ok ? '' : (await answer.json()).error;
  } catch {
    return 'The bench does not answer.';
  }
}
