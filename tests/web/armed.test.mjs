// What is armed, and the work that goes on: chips at the top of the page, each with a cross that ends it.
import assert from 'node:assert/strict';
import {test} from 'node:test';
import {bench, openTab, page, until, useCamera} from './camera.mjs';

useCamera();

const chips = () => page.locator('#armed .chip').allTextContents();
const hasNoChip = () => until(async () => (await chips()).length === 0, 'nothing armed');

test('what is armed is told in words, and a cross disarms it', async () => {
  assert.deepEqual(await chips(), []);
  await openTab(page, 'Media');
  const form = page.locator('form[data-action=sdCheckFinds]');
  await form.locator('[name=fault]').selectOption('5: files deleted by someone');
  await form.locator('button').click();
  await bench.post('action', {name: 'sdFormatFails', number: 3});
  await until(async () => (await chips()).length === 2, 'two chips');
  assert.deepEqual((await chips()).sort(), ['armed: next 3 formats fail', 'armed: next check finds files deleted by someone']);
  assert.equal(await page.locator('form[data-action=sdFormatFails] [name=number]').inputValue(), '3');
  await page.getByRole('button', {name: 'Disarm: next 3 formats fail'}).click();
  const cross = page.getByRole('button', {name: 'Disarm: next check finds files deleted by someone'});
  await cross.focus();
  await page.keyboard.press('Enter');
  await hasNoChip();
  assert.deepEqual((await bench.state()).armed, []);
  assert.equal(await form.locator('[name=fault]').inputValue(), '0');  // the form shows what is
});

test('what has come is armed no more', async () => {
  await bench.post('action', {name: 'commandsFail', number: 5});
  await page.locator('#armed .chip', {hasText: 'commands fail'}).waitFor();
  const {x, y, width} = await page.locator('#lcd').boundingBox();
  await until(async () => {
    await page.mouse.click(x + 40 * width / 480, y + 33 * width / 480);  // the view key
    return (await chips()).length === 0;
  }, 'the commands that failed');
});

test('a card that is being filled says how far it is, and a cross ends it', async () => {
  await bench.post('action', {name: 'sdFull', recordings: 50000});
  await page.locator('#armed .chip', {hasText: /filling the card: \d+ %/}).waitFor();
  await page.getByRole('button', {name: 'Stop filling the card'}).click();
  await hasNoChip();
  await until(async () => (await bench.state()).recorder.cardWork === null, 'the end of it');
});

test('a bench that says nothing of all this is worked like any other', async () => {
  await page.routeWebSocket(/\/ws$/, (played) => {
    const server = played.connectToServer();
    server.onMessage((data) => {
      const message = typeof data === 'string' ? JSON.parse(data) : null;
      if (message?.type !== 'state') return played.send(data);
      const {armed, unavailable, ...state} = message.state;
      played.send(JSON.stringify({...message, state}));
    });
  });
  await page.reload();
  await page.locator('#facts .chip').first().waitFor();
  assert.deepEqual(await chips(), []);
  await page.locator('form[data-action=parkOut] button').click();
  await page.locator('form[data-action=parkOut] .refusal', {hasText: 'The car is not parked.'}).waitFor();
});
