import assert from 'node:assert/strict';
import {test} from 'node:test';
import {openPage, startBench, startBrowser, until} from './camera.mjs';

test('the page says that the bench has gone, and comes back with it', async () => {
  const [bench, browser] = await Promise.all([startBench(), startBrowser()]);
  try {
    const page = await openPage(browser, bench);
    const {port} = bench;
    const park = page.locator('form[data-action=parkIn] button');
    await park.focus();
    await bench.end();
    await page.locator('#connection[data-state=closed]').waitFor();
    assert.ok(await park.isDisabled());
    assert.match(await page.locator('#facts').evaluate((chips) => getComputedStyle(chips).filter), /grayscale/);  // what was last known
    await page.locator('#power').click();
    await page.locator('#fault', {hasText: 'does not answer'}).waitFor();
    const again = await startBench(port);
    try {
      await page.locator('#connection[data-state=open]').waitFor();
      await until(() => park.isEnabled(), 'the controls');
      await page.locator('#log li', {hasText: 'An interface has started'}).first().waitFor();
      await page.locator('#power').click();
      await page.waitForFunction(() => document.getElementById('fault').textContent === '');
      assert.equal((await again.state()).screen, 'PREVIEW');
    } finally {
      await again.end();
    }
  } finally {
    await browser.close();
    await bench.end();
  }
});
