// What a checker of accessibility finds on the page: nothing, in every tab, by day and by night, on every size of screen.
import assert from 'node:assert/strict';
import {createRequire} from 'node:module';
import {after, before, test} from 'node:test';
import {openPage, openTab, startBench, startBrowser} from './camera.mjs';

const AXE = createRequire(import.meta.url).resolve('axe-core/axe.min.js');

let bench, browser;

before(async () => { [bench, browser] = await Promise.all([startBench(), startBrowser()]); });
after(async () => {
  await browser?.close();
  await bench?.end();
});

for (const colorScheme of ['light', 'dark'])
  for (const [width, height] of [[390, 844], [1440, 900], [1920, 1080]])
    test(`no violation: ${width} pixels, ${colorScheme}`, async () => {
      const context = await browser.newContext({viewport: {width, height}, colorScheme, bypassCSP: true});
      const page = await openPage(context, bench);
      await page.addScriptTag({path: AXE});
      await openTab(page, 'All');
      await bench.post('action', {name: 'commandsFail', number: 900});
      await page.locator('#armed button').waitFor();
      for (const tool of ['#targets', '#latency']) await page.locator(tool).click();
      // The whole page at first; then what each of its tabs shows.
      for (const [view, part] of [['Log'], ['State', '#state-view'], ['Setup block', '#setup-view'], ['Settings', '#settings-view'],
                                  ['Scenarios', '.timeline'], ['Record and replay', '.timeline'], ['Saved states', '.timeline']]) {
        await openTab(page, view);
        const {violations, passes} = await page.evaluate((only) => axe.run(only ?? document), part);
        assert.ok(passes.length > (part ? 2 : 20), view);
        assert.deepEqual(violations.map(({id, nodes}) => [id, nodes.map(({html}) => html.slice(0, 100))]), []);
      }
      await context.close();
    });
