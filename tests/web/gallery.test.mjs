// The gallery of every screen: asked for by its button, and then there.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {startBench, startBrowser} from './camera.mjs';

let bench, browser;
before(async () => { [bench, browser] = await Promise.all([startBench(), startBrowser()]); });
after(async () => {
  await browser?.close();
  await bench?.end();
});

test('the button has the pictures made, and the page shows the screen that its address names', async () => {
  const page = await browser.newPage();
  const complaints = [];
  page.on('console', (message) => { if (message.type() === 'error') complaints.push(message.text()); });
  page.on('pageerror', (error) => complaints.push(error.message));
  await page.goto(`${bench.url}gallery#PLAYER`);
  await page.getByRole('button').click();
  await page.getByText(/^\d+ pictures so far$/).waitFor();
  assert(await page.getByRole('button').isDisabled());
  const screen = page.locator('#PLAYER');
  await screen.waitFor({timeout: 240000});
  await page.waitForFunction(() => {
    const {top} = document.getElementById('PLAYER').getBoundingClientRect();
    return top > -1 && top < innerHeight;
  });
  const picture = page.locator('img[src="gallery/player.png"]');
  assert.equal(await picture.evaluate((image) => image.decode().then(() => image.naturalWidth)), 480);
  assert.deepEqual(complaints, []);
});
