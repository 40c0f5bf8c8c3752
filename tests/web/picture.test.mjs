// The driver's own picture, put on the card from the page.
import assert from 'node:assert/strict';
import {mkdtemp, readFile, rm, writeFile} from 'node:fs/promises';
import {tmpdir} from 'node:os';
import {after, before, test} from 'node:test';
import {openPage, openTab, startBench, startBrowser, until} from './camera.mjs';

let bench, browser, page, root, folder;

before(async () => {
  [bench, browser] = await Promise.all([startBench(), startBrowser()]);
  ({root} = await bench.state());
  folder = await mkdtemp(`${tmpdir()}/picture-`);
  page = await openPage(browser, bench);
  await openTab(page, 'Media');
});
after(async () => {
  await browser?.close();
  await bench?.end();
  if (folder) await rm(folder, {recursive: true});
});

const form = () => page.locator('#picture');
const choose = (file) => form().locator('input[type=file]').setInputFiles(file);
const send = () => form().locator('button').click();
const starts = async () => (await bench.state()).interface.starts;

test('a picture is put on the card, and the interface starts with it', async () => {
  // The page draws it: red on the left, blue on the right.
  const drawn = await page.evaluate(() => {
    const canvas = Object.assign(document.createElement('canvas'), {width: 240, height: 160});
    const context = canvas.getContext('2d');
    context.fillStyle = '#c00000';
    context.fillRect(0, 0, 120, 160);
    context.fillStyle = '#0000c0';
    context.fillRect(120, 0, 120, 160);
    return canvas.toDataURL('image/png').split(',')[1];
  });
  await writeFile(`${folder}/mine.png`, drawn, 'base64');
  await choose(`${folder}/mine.png`);
  await send();
  await until(async () => await starts() === 2, 'the restart');
  const card = await readFile(`${root}/mnt/mmc/Setup/picture.bmp`);
  assert.equal(card.toString('latin1', 0, 2), 'BM');
  assert.deepEqual([18, 22, 28].map((at) => card.readInt16LE(at)), [480, 320, 24]);
  const pixel = (x) => [...card.subarray(54 + 3 * x, 57 + 3 * x)];  // of the lowest row: blue, green, red
  assert.deepEqual([pixel(10), pixel(470)], [[0, 0, 192], [192, 0, 0]]);
  await until(async () => (await readFile(`${root}/tmp/picture.bmp`).catch(() => null))?.equals(card), 'the copy');
  assert.equal(await form().locator('.refusal').textContent(), '');
  await form().locator('button.done').waitFor();
  assert.deepEqual(page.complaints, []);
});

test('what is no picture is refused, and the page says why', async () => {
  const before = await starts();
  await writeFile(`${folder}/text.png`, 'no picture at all');
  await choose(`${folder}/text.png`);
  await send();
  await form().locator('.refusal', {hasText: 'no picture'}).waitFor();
  assert.equal(await starts(), before);
  page.complaints.length = 0;  // the browser notes the refusal, too
});

test('a picture that is too large is not even sent', async () => {
  await writeFile(`${folder}/large.png`, Buffer.alloc(8 * 1024 * 1024 + 1));
  await choose(`${folder}/large.png`);
  await send();
  await form().locator('.refusal', {hasText: 'larger than 8 MiB'}).waitFor();
  assert.deepEqual(page.complaints, []);
});

test('without a file nothing is asked', async () => {
  await choose([]);
  await send();
  assert.equal(await page.evaluate(() => document.activeElement.validity.valueMissing), true);
  assert.deepEqual(page.complaints, []);
});

test('during an update the page says so', async () => {
  await bench.post('action', {name: 'update', file: 'update.zel'});
  for (const phase of ['begins', 'runs', 'has ended'])
    await page.locator('#seen', {hasText: `The firmware update ${phase}`}).waitFor();
  await page.locator('#seen', {hasText: 'TOUCHCOMP'}).waitFor({timeout: 20000});
  assert.deepEqual(page.complaints, []);
});
