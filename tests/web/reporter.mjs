// What the page's tests say: a line for each that failed and why, and how many there were.
export default async function* (events) {
  let passed = 0;
  let failed = 0;
  for await (const {type, data} of events) {
    if (type === 'test:stderr') yield data.message;
    if (data.details?.type === 'suite') continue;
    if (type === 'test:pass') passed += 1;
    if (type !== 'test:fail') continue;
    failed += 1;
    const error = data.details.error;
    yield `FAIL ${data.name} (${data.file}:${data.line})\n${error.cause?.stack ?? error.cause ?? error.stack ?? error}\n`;
  }
  yield `${passed} passed, ${failed} failed\n`;
}
